#pragma once

#include "platform/linux/atspi/GObjectHandle.h"

#include <QSet>

#include <atspi/atspi.h>
#include <map>

namespace tavrin {

/// Knows which element of a program has the focus. It follows the programs' own announcements, so
/// that asking costs no search; a program that has announced nothing yet is searched.
///
/// Worker thread only.
class AtspiFocus {
public:
    AtspiFocus();
    ~AtspiFocus();

    AtspiFocus(const AtspiFocus&) = delete;
    AtspiFocus& operator=(const AtspiFocus&) = delete;

    /// Null when the program exposes none, or does not answer in time.
    [[nodiscard]] GObjectHandle<AtspiAccessible> focusedElement(unsigned processIdentifier);

    /// The program that announced a focus last; 0 when there was none.
    [[nodiscard]] unsigned lastProcess() const { return m_lastProcess; }

    /// The program's active window; null when it has none.
    [[nodiscard]] static GObjectHandle<AtspiAccessible> activeWindow(unsigned processIdentifier);

    /// The programs that have joined the bus.
    [[nodiscard]] static QSet<qint64> processesOnBus();

private:
    static void onEvent(AtspiEvent* event, void* self);
    void remember(AtspiAccessible* element);

    std::map<unsigned, GObjectHandle<AtspiAccessible>> m_focused; // By process.
    unsigned m_lastProcess = 0;
    AtspiEventListener* m_listener = nullptr;
};

/// Whether the element has @p state now.
[[nodiscard]] bool hasState(AtspiAccessible* element, AtspiStateType state);

/// Whether the element can be read as text.
[[nodiscard]] bool hasText(AtspiAccessible* element);

} // namespace tavrin

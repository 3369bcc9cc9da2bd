#pragma once

#include "base/Seconds.h"
#include "platform/programs/Accessibility.h"

#include <memory>
#include <optional>

namespace tavrin {

class AtspiConnection;

/// Other programs' elements over AT-SPI2. Main thread; the work is done by a thread of its own, and
/// no call waits for it longer than half a second. A program that has let a call run into the
/// time-out is left alone for a while: everything about it reads as unknown at once.
///
/// Windows are brought to the front by the window manager (see Workspace), so setFocusedWindow()
/// has nothing to do here and answers false.
class AtspiAccessibility final : public Accessibility {
public:
    /// @param startPause how long it waits before it connects, unless it is asked something
    /// earlier: loading the bus's library would slow down the start of the program.
    explicit AtspiAccessibility(Seconds startPause = Seconds(0));
    ~AtspiAccessibility() override;

    AtspiAccessibility(const AtspiAccessibility&) = delete;
    AtspiAccessibility& operator=(const AtspiAccessibility&) = delete;

    [[nodiscard]] bool isProcessTrusted() const override;
    bool requestTrust() override;
    [[nodiscard]] std::optional<QSet<qint64>> exposedProcesses() override;
    [[nodiscard]] ElementHandle focusedElement(qint64 processIdentifier) override;
    [[nodiscard]] ElementHandle systemFocusedElement() override;
    [[nodiscard]] ElementHandle focusedWindow(qint64 processIdentifier) override;
    [[nodiscard]] ElementHandle retain(const AccessibleElement& element) override;
    [[nodiscard]] std::optional<qint64> processIdentifier(
        const AccessibleElement* element) override;
    [[nodiscard]] std::optional<QString> attribute(
        ElementAttribute name, const AccessibleElement* element) override;
    [[nodiscard]] bool isProtected(const AccessibleElement* element) override;
    [[nodiscard]] bool isTerminal(const AccessibleElement* element) override;
    [[nodiscard]] std::optional<QString> value(const AccessibleElement* element) override;
    [[nodiscard]] std::optional<TextRange> selectedTextRange(
        const AccessibleElement* element) override;
    [[nodiscard]] std::optional<qint64> numberOfCharacters(
        const AccessibleElement* element) override;
    [[nodiscard]] std::optional<QString> stringForRange(
        TextRange range, const AccessibleElement* element) override;
    [[nodiscard]] bool isSelectedTextSettable(const AccessibleElement* element) override;
    bool setSelectedText(const QString& text, const AccessibleElement* element) override;
    [[nodiscard]] bool isValueSettable(const AccessibleElement* element) override;
    bool setValue(const QString& text, const AccessibleElement* element) override;
    bool setSelectedTextRange(TextRange range, const AccessibleElement* element) override;
    bool setFocused(const AccessibleElement* element) override;
    bool setFocusedWindow(qint64 processIdentifier, const AccessibleElement* window) override;

private:
    std::unique_ptr<AtspiConnection> m_connection;
};

} // namespace tavrin

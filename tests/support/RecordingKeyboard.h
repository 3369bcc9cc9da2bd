#pragma once

#include "platform/SyntheticKeyboard.h"
#include "platform/Workspace.h"

#include <functional>

namespace tavrin::testing {

/// A keyboard that types nowhere by itself: the test says what a paste or typed text does.
class RecordingKeyboard final : public SyntheticKeyboard {
public:
    std::function<void()> onPaste;
    std::function<void(const QString&)> onTyping;

    QList<RunningApplication> pastes; ///< The targets of the paste shortcuts, in order.
    QList<QStringList> typed; ///< The chunks of each typed text, in order.
    int covers = 0;
    int cancellations = 0;

    void postPasteShortcut(const RunningApplication& target) override
    {
        pastes.append(target);
        if (onPaste)
            onPaste();
    }

    void postUnicodeText(const QStringList& chunks, const RunningApplication& target) override
    {
        Q_UNUSED(target)
        typed.append(chunks);
        if (onTyping)
            onTyping(chunks.join(QString()));
    }

    void coverModifierKey() override { ++covers; }

    void cancelTyping() override { ++cancellations; }
};

} // namespace tavrin::testing

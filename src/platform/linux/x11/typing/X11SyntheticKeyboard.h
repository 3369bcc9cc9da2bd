#pragma once

#include "base/Seconds.h"
#include "platform/keyboard/SyntheticKeyboard.h"
#include "platform/linux/x11/typing/Typist.h"

namespace tavrin {

class ClipboardPasteboard;
class MainQueue;

/// Types through the X server's test extension. Nothing is pressed while another window has the
/// keyboard, typing ends when another window becomes active, and the keyboard's map is put back in
/// every case, by the next start after a crash.
class X11SyntheticKeyboard final : public SyntheticKeyboard {
public:
    /// Connects to the X server @p pause from now, or when it is first needed.
    X11SyntheticKeyboard(
        ClipboardPasteboard& pasteboard, MainQueue& mainQueue, Seconds pause = Seconds(0));

    /// What the files begin with in which processes note the codes that they use; empty without a
    /// folder for run-time files.
    [[nodiscard]] static QString stateFile();

    void postPasteShortcut(const PasteTarget& target, Completion<KeyPosting> completion) override;
    void askForPasteReception(Completion<PasteReception> completion) override;
    void postUnicodeText(const QStringList& chunks, const RunningApplication& target,
        Completion<KeyPosting> completion) override;
    void coverModifierKey() override;
    void cancelTyping() override;

private:
    MainQueue& m_mainQueue;
    Typist m_typist;
};

} // namespace tavrin

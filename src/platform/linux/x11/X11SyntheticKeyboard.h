#pragma once

#include "platform/SyntheticKeyboard.h"
#include "platform/linux/x11/Typist.h"

namespace tavrin {

class ClipboardPasteboard;

/// Types through the X server's test extension. Nothing is pressed while another program has the
/// keyboard, typing ends when another window becomes active, and the keyboard's map is put back in
/// every case, by the next start after a crash.
class X11SyntheticKeyboard final : public SyntheticKeyboard {
public:
    explicit X11SyntheticKeyboard(ClipboardPasteboard& pasteboard);

    /// Where the codes in use are noted; empty without a folder for run-time files.
    [[nodiscard]] static QString stateFile();

    void postPasteShortcut(const RunningApplication& target) override;
    void postUnicodeText(const QStringList& chunks, const RunningApplication& target) override;
    void coverModifierKey() override;
    void cancelTyping() override;

private:
    ClipboardPasteboard& m_pasteboard;
    Typist m_typist;
};

} // namespace tavrin

#pragma once

#include <QString>
#include <QStringList>

namespace tavrin {

struct RunningApplication;

/// Types into other programs. Main thread only; returns at once: where typing takes its time
/// (Linux), it goes on in the background, in the order of the calls.
class SyntheticKeyboard {
public:
    virtual ~SyntheticKeyboard() = default;

    /// Presses and releases the paste shortcut of the program in front: Command-V on macOS; on
    /// Linux Ctrl+V, in terminals Ctrl+Shift+V. @p target tells what program it is. Linux: does
    /// nothing when another program has the keyboard, so that nothing gets into the wrong place.
    virtual void postPasteShortcut(const RunningApplication& target) = 0;

    /// Types @p chunks, one after another, as Unicode text into @p target. Each chunk has at most
    /// 16 UTF-16 units and splits no surrogate pair. Linux: stops when another window takes the
    /// keyboard, so that nothing is typed into the wrong place.
    virtual void postUnicodeText(const QStringList& chunks, const RunningApplication& target) = 0;

    /// Keeps the program in front from taking the modifier key that the user is pressing for one
    /// pressed alone: many of them open their menus then, and their text loses the keyboard. Linux:
    /// presses and releases a key without a meaning. macOS has no such menus: does nothing.
    virtual void coverModifierKey() = 0;

    /// Ends typing that still goes on; no key stays pressed or remapped afterwards.
    virtual void cancelTyping() = 0;
};

} // namespace tavrin

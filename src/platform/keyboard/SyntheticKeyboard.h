#pragma once

#include "base/Completion.h"
#include "platform/programs/RunningApplication.h"

#include <QString>
#include <QStringList>

namespace tavrin {

/// What the paste shortcut depends on.
struct PasteTarget {
    RunningApplication application;
    bool isTerminal = false; ///< The element with the keyboard, whatever it is part of.
};

/// How far the keys of one call got.
enum class KeyPosting {
    Done, ///< All are out; after typing, the program has taken them where it can tell.
    Unanswered, ///< All are out, but the program does not answer: they wait in its queue.
    Refused, ///< None is out, and none will be: another window has the keyboard, no key can do it.
    Broken, ///< Typing: some are out, the others never will be.
    Fetched, ///< Typing: none is out, because the program has fetched the pasteboard after all.
    Unsuitable, ///< Typing: none is out, as the program or an input method would mix them up.
};

/// What became of the last paste shortcut.
enum class PasteReception {
    Unknown, ///< The desktop cannot tell (always on macOS).
    Waiting, ///< The program has not got to it yet: it is busy or hangs.
    Fetched, ///< The program has fetched the text.
    FetchedElsewhere, ///< The program has got to it without; another program has fetched the text.
    Ignored, ///< The program has got to it, and nobody has fetched the text.
};

/// Types into other programs. Main thread only; returns at once: where keys take their time
/// (Linux), they go out in the background, in the order of the calls. Completions are called on
/// the main thread, and dropped when the keyboard goes.
class SyntheticKeyboard {
public:
    virtual ~SyntheticKeyboard() = default;

    /// Presses and releases the paste shortcut of the program in front: Command-V on macOS; on
    /// Linux Ctrl+V, or what pastes in programs to which that is something else. Linux: nothing
    /// is pressed when another window has the keyboard, so that nothing gets into the wrong place.
    virtual void postPasteShortcut(
        const PasteTarget& target, Completion<KeyPosting> completion) = 0;

    /// What the program did about the last paste shortcut.
    virtual void askForPasteReception(Completion<PasteReception> completion) = 0;

    /// Types @p chunks, one after another, as Unicode text into @p target. Each chunk has at most
    /// 16 UTF-16 units and splits no surrogate pair. Linux: stops when another window takes the
    /// keyboard, so that nothing is typed into the wrong place. From the first key until the
    /// program has taken the last one it is not given the pasteboard, so that a paste that it gets
    /// to late does not bring the text a second time.
    virtual void postUnicodeText(const QStringList& chunks, const RunningApplication& target,
        Completion<KeyPosting> completion) = 0;

    /// Keeps the program in front from taking the modifier key that the user is pressing for one
    /// pressed alone: many of them open their menus then, and their text loses the keyboard. Linux:
    /// presses and releases a key without a meaning. macOS has no such menus: does nothing.
    virtual void coverModifierKey() = 0;

    /// Ends typing that still goes on; no key stays pressed or remapped afterwards.
    virtual void cancelTyping() = 0;
};

} // namespace tavrin

#pragma once

#include "platform/linux/inputmethod/AsideNote.h"
#include "platform/linux/inputmethod/InputMethod.h"

#include <memory>
#include <optional>
#include <vector>

namespace tavrin {

/// Keeps the session's input method out of what this program types and pastes: of typed letters it
/// would make Chinese, and while something is being composed it may swallow the paste shortcut.
///
/// Used by one thread, while the program that gets the keys is in front. No call waits longer than
/// its patience for an input method, however it hangs.
class InputMethods {
public:
    /// Those this program knows, with a patience of a second. @p noteFile in the session's folder
    /// for run-time files; empty: after a crash the engine stays off until the user switches it on.
    explicit InputMethods(const QString& noteFile);
    InputMethods(std::vector<std::unique_ptr<InputMethod>> known, const QString& noteFile,
        std::chrono::milliseconds patience);

    /// The note of this display; empty without a folder for run-time files.
    [[nodiscard]] static QString noteFile();

    /// Puts back what a process that has ended had set aside.
    void recover();

    /// Ends what the user is composing. The input method stays on.
    void endComposition();

    /// Lets keys pass as they are, until putBack(). False when they may not: the input method runs
    /// and has not answered, or stays on. What it was asked for may still come about: putBack().
    [[nodiscard]] bool setAside();

    /// Whether something was set aside and not put back yet.
    [[nodiscard]] bool isAside() const { return m_aside.has_value(); }

    /// Waits until the input method has dealt with the keys that the program in front has handed to
    /// it. False when there was none at the last call of setAside().
    [[nodiscard]] bool waitForKeys();

    /// To be called once the program in front has taken the keys: what it has not is composed. What
    /// cannot be put back now is by the next call of any of these.
    void putBack();

private:
    [[nodiscard]] Deadline fromNow() const;
    bool putBack(const AsideEngine& aside);

    std::vector<std::unique_ptr<InputMethod>> m_known;
    AsideNote m_note;
    std::chrono::milliseconds m_patience;
    std::optional<AsideEngine> m_aside;
    InputMethod* m_inUse = nullptr; // The one that keys pass through, also when it lets them.
};

} // namespace tavrin

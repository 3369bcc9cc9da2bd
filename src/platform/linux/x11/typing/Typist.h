#pragma once

#include "platform/keyboard/SyntheticKeyboard.h"
#include "platform/linux/inputmethod/InputMethods.h"
#include "platform/linux/x11/X11Thread.h"
#include "platform/linux/x11/X11Windows.h"
#include "platform/linux/x11/typing/PastePlan.h"
#include "platform/linux/x11/typing/SpareCodes.h"
#include "platform/programs/RunningApplication.h"

namespace tavrin {

class ClipboardServer;

/// Presses keys for other programs, on a thread of its own. Every stroke is pressed and released in
/// one breath, so that no key can be left down, whatever ends this process.
class Typist final : public X11Thread {
public:
    /// Both are called on the thread, exactly once.
    using Posted = std::function<void(KeyPosting)>;
    using Received = std::function<void(PasteReception)>;

    /// @p clipboard knows who has fetched the text; it must outlive the typist. What a crash has
    /// left is put back @p pause from now, or before the first keys.
    Typist(const QString& stateFile, ClipboardServer& clipboard, Seconds pause = Seconds(0));
    ~Typist() override;

    Typist(const Typist&) = delete;
    Typist& operator=(const Typist&) = delete;

    /// From the main thread; each returns at once and takes its turn.
    void paste(const PasteShortcut& shortcut, const RunningApplication& target, Posted posted);
    void askForReception(Received received);
    void type(const QString& text, const RunningApplication& target, Posted posted);
    /// Presses a key code that has no symbol, whatever program is in front.
    void tapEmptyCode();

    /// Ends what is being typed, and drops what waits to be.
    void cancel();

protected:
    void connected() override;
    void handleEvent(const xcb_generic_event_t& event) override;

private:
    /// Pings that tell whether a program has got to the keys before them. It answers in the order
    /// of its events, but some toolkits do so when they read them and act on keys a little later:
    /// only the answer to a ping that was sent after the first answer comes from behind the keys.
    struct PingSeries {
        xcb_window_t window = XCB_WINDOW_NONE;
        quint32 ping = 0; ///< The one that is out; 0 for none.
        int answers = 0;

        [[nodiscard]] bool isBehindKeys() const { return answers >= 2; }
    };

    [[nodiscard]] KeyPosting pressPaste(
        const PasteShortcut& shortcut, const RunningApplication& target);
    [[nodiscard]] KeyPosting typeText(
        const QString& text, const RunningApplication& target, quint64 turn);
    /// The same while the input method is set aside.
    [[nodiscard]] KeyPosting typePlain(const QString& text, xcb_window_t window, quint64 turn);
    [[nodiscard]] KeyPosting typeBatches(
        const std::vector<TypingBatch>& batches, xcb_window_t window, quint64 turn);
    [[nodiscard]] PasteReception reception();
    /// Waits until the target's window has the keyboard, and notes which part of it has.
    /// XCB_WINDOW_NONE when another window, be it of the same program, has it.
    [[nodiscard]] xcb_window_t waitForFocus(const RunningApplication& target);
    [[nodiscard]] bool isInFront(xcb_window_t window, const RunningApplication& target) const;
    /// False when typing has to end.
    [[nodiscard]] bool typeBatch(const TypingBatch& batch, const std::vector<xcb_keycode_t>& shift,
        xcb_window_t window, quint64 turn);
    [[nodiscard]] std::vector<xcb_keycode_t> spareCodes() const;
    /// Gives spare codes their symbols. False, and nothing lent, when the program does not answer.
    [[nodiscard]] bool lend(const std::vector<CodeAssignment>& assignments, xcb_window_t window);
    /// Puts back what was borrowed, at once or when the program has taken the keys.
    void settleAfter(bool keysAreTaken);
    void settle();
    /// False when somebody keeps holding one.
    [[nodiscard]] bool releaseHeldModifiers(const KeyboardLayouts& layouts, int group);
    /// The chords in one breath. False, and nothing pressed, when the keyboard is no longer in the
    /// window that waitForFocus() found.
    bool press(const std::vector<Chord>& chords);
    /// The same, when the keyboard is no longer exactly where it was found.
    bool pressAtFocus(const std::vector<Chord>& chords);
    /// Waits until the program has taken every key so far, or should have where it cannot tell.
    /// False when it does not answer.
    [[nodiscard]] bool waitForProgram(xcb_window_t window);
    /// The same, and until it has back what its input method does not want.
    [[nodiscard]] bool waitForKeys(xcb_window_t window);
    [[nodiscard]] bool answersPings(xcb_window_t window) const;
    /// Begins anew; without a ping where the program answers none.
    void startSeries(PingSeries& series, xcb_window_t window);
    void continueSeries(PingSeries& series);
    /// The number that the answer will carry.
    quint32 ping(xcb_window_t window);
    [[nodiscard]] bool mayGoOn(xcb_window_t window, quint64 turn) const;
    [[nodiscard]] xcb_window_t focus() const;
    void fakeKey(xcb_keycode_t code, bool down);

    X11Windows m_windows;
    SpareCodes m_spareCodes;
    InputMethods m_inputMethods{InputMethods::noteFile()};
    std::atomic<quint64> m_turn = 0; // Changed by cancel(): older turns end.
    xcb_window_t m_focus = XCB_WINDOW_NONE; // The focus that the keys of this turn are meant for.
    xcb_window_t m_targetWindow = XCB_WINDOW_NONE; // The top-level window of the same.
    quint32 m_lastPing = 0;
    quint32 m_answeredPing = 0;
    PingSeries m_pasteWatch;
    PingSeries m_typingWatch;
    bool m_settlesLater = false; // Once the typed keys are taken.
    bool m_anyKeyOut = false; // Of the text that is being typed.
    ClipboardServer& m_clipboard;
};

} // namespace tavrin

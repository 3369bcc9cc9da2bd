#pragma once

#include "platform/Workspace.h"
#include "platform/linux/x11/SpareCodes.h"
#include "platform/linux/x11/TerminalPrograms.h"
#include "platform/linux/x11/X11Thread.h"
#include "platform/linux/x11/X11Windows.h"

namespace tavrin {

/// Presses keys for other programs, on a thread of its own. Every stroke is pressed and released in
/// one breath, so that no key can be left down, whatever ends this process.
class Typist final : public X11Thread {
public:
    explicit Typist(const QString& stateFile);
    ~Typist() override;

    Typist(const Typist&) = delete;
    Typist& operator=(const Typist&) = delete;

    /// From the main thread; each returns at once and takes its turn.
    void paste(PasteShortcut shortcut, const RunningApplication& target);
    void type(const QString& text, const RunningApplication& target);
    /// Presses a key code that has no symbol, whatever program is in front.
    void tapEmptyCode();

    /// Ends what is being typed, and drops what waits to be.
    void cancel();

protected:
    void handleEvent(const xcb_generic_event_t& event) override;

private:
    void pressPaste(PasteShortcut shortcut, const RunningApplication& target);
    void typeText(const QString& text, const RunningApplication& target, quint64 turn);
    /// Takes aim at the target's window that has the keyboard, and gives it; XCB_WINDOW_NONE when
    /// another program has the keyboard.
    xcb_window_t takeAim(const RunningApplication& target);
    [[nodiscard]] bool isInFront(xcb_window_t window, const RunningApplication& target) const;
    /// False when typing has to end.
    bool typeBatch(const TypingBatch& batch, xcb_window_t window, quint64 turn);
    void releaseHeldModifiers(const KeyboardMap& map);
    [[nodiscard]] std::vector<xcb_keycode_t> heldModifiers(const KeyboardMap& map) const;
    [[nodiscard]] KeyboardState keyboardState();
    /// False, and nothing pressed, when the keyboard is no longer where takeAim() found it.
    bool press(const std::vector<xcb_keycode_t>& chord);
    /// Waits until the program has taken every key so far, or should have.
    void waitForProgram(xcb_window_t window);
    [[nodiscard]] bool mayGoOn(xcb_window_t window, quint64 turn) const;
    [[nodiscard]] xcb_window_t focus() const;
    void fakeKey(xcb_keycode_t code, bool down);

    X11Windows m_windows;
    SpareCodes m_spareCodes;
    std::atomic<quint64> m_turn = 0; // Changed by cancel(): older turns end.
    xcb_window_t m_aim = XCB_WINDOW_NONE; // The focus that the keys of this turn are meant for.
    quint32 m_lastPing = 0;
    quint32 m_answeredPing = 0;
};

} // namespace tavrin

#pragma once

#include "platform/linux/x11/keyboard/KeyboardMap.h"

#include <QByteArray>
#include <QString>
#include <QTemporaryDir>

#include <chrono>
#include <functional>
#include <optional>

namespace tavrin::testing {

/// Another program of the X session: presses keys, owns windows, asks for the clipboard.
class TestClient {
public:
    [[nodiscard]] const X11Connection& connection() const { return m_connection; }

    void pressKey(xcb_keycode_t code) { fakeKey(code, true); }

    void releaseKey(xcb_keycode_t code) { fakeKey(code, false); }

    /// Presses and releases a button of the mouse.
    void click(quint8 button);

    /// Presses and releases the key with @p symbol.
    void tap(xcb_keysym_t symbol);

    /// A top-level window of the program @p processIdentifier; mapped, and waited for.
    [[nodiscard]] xcb_window_t createWindow(
        const QByteArray& instance, const QByteArray& className, quint32 processIdentifier);

    void destroyWindow(xcb_window_t window);

    /// Has the keys reported that reach @p window, one of its own.
    void listenToKeys(xcb_window_t window);
    /// The next key that is pressed in such a window; none when none comes.
    [[nodiscard]] std::optional<xcb_keycode_t> nextKey();

    void setProperty(xcb_window_t window, const char* name, quint32 number);
    void minimize(xcb_window_t window);

    /// What the owner of @p selection gives for @p target; empty type when it refuses.
    struct Selection {
        xcb_atom_t type = XCB_ATOM_NONE;
        QByteArray bytes;
        bool incremental = false;
    };

    [[nodiscard]] Selection convert(const char* selection, const char* target);

    /// The same step by step: a place that a selection is to be put into, and what has come so far.
    struct Request {
        xcb_window_t window = XCB_WINDOW_NONE;
        xcb_atom_t property = XCB_ATOM_NONE;
        QByteArray bytes;
    };

    /// Asks, and waits until the owner has announced that the text comes in pieces.
    [[nodiscard]] Request request(const char* selection, const char* target);
    void requestAgain(Request& request, const char* selection, const char* target);
    /// False when none comes.
    bool takePiece(Request& request);
    /// What has come once the owner says that this was all.
    [[nodiscard]] QByteArray takeAll(Request& request);

    /// A window that is never shown.
    [[nodiscard]] xcb_window_t createHiddenWindow();

    /// Puts a layout of the keyboard into use, and waits until it is.
    void useLayout(int group);

    [[nodiscard]] xcb_window_t activeWindow() const;
    /// Where keys go.
    [[nodiscard]] xcb_window_t focus() const;

    /// Waits until @p condition holds; false when that takes longer than @p patience, which is far
    /// more than anything needs on a quiet machine.
    static bool eventually(const std::function<bool()>& condition,
        std::chrono::milliseconds patience = std::chrono::seconds(10));

private:
    void fakeInput(quint8 type, quint8 detail);
    void fakeKey(xcb_keycode_t code, bool down);
    /// False when the owner refuses.
    [[nodiscard]] bool ask(const Request& request, const char* selection, const char* target);
    [[nodiscard]] XcbPointer<xcb_get_property_reply_t> takeProperty(const Request& request) const;
    [[nodiscard]] static QByteArray valueOf(const XcbPointer<xcb_get_property_reply_t>& reply);
    [[nodiscard]] XcbPointer<xcb_generic_event_t> nextEvent(int type);
    X11Connection m_connection;
};

/// Keyboard layouts for as long as this lives, by the arguments of setxkbmap.
class TestLayouts {
public:
    explicit TestLayouts(const QStringList& arguments);
    ~TestLayouts();

    TestLayouts(const TestLayouts&) = delete;
    TestLayouts& operator=(const TestLayouts&) = delete;

private:
    QTemporaryDir m_folder;
};

} // namespace tavrin::testing

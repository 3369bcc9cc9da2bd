#include "platform/linux/x11/Typist.h"

#include "platform/linux/x11/KeyTracker.h"

#include <algorithm>
#include <xcb/xtest.h>

namespace tavrin {
namespace {

using namespace std::chrono_literals;

// A program that has not answered by then is given up on: the keys are in its queue.
constexpr auto programPatience = 400ms;

// For programs that do not answer at all.
constexpr auto silentProgramPause = 80ms;

// The server takes a key for held as long as a finger is on it; the finger is on its way up.
constexpr auto fingerPatience = 600ms;
constexpr auto fingerPause = 5ms;

// A window manager that just made the target active may not have said so yet.
constexpr auto managerPatience = 200ms;

// Faster, and editors drop keys.
constexpr auto strokePause = 1ms;

} // namespace

Typist::Typist(const QString& stateFile)
    : m_spareCodes(connection(), stateFile)
{
    if (!isAvailable())
        return;
    // Answers to pings go to the root: by the rules to the first kind of listener, by Qt 6 to the
    // second.
    const quint32 events = XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_STRUCTURE_NOTIFY;
    xcb_change_window_attributes(
        connection().get(), connection().root(), XCB_CW_EVENT_MASK, &events);
    start();
    post([this] { m_spareCodes.recover(); });
}

Typist::~Typist()
{
    ++m_turn;
    post([this] { m_spareCodes.restore(); });
    stop();
}

void Typist::paste(PasteShortcut shortcut, const RunningApplication& target)
{
    post([this, shortcut, target] { pressPaste(shortcut, target); });
}

void Typist::type(const QString& text, const RunningApplication& target)
{
    post([this, text, target, turn = m_turn.load()] { typeText(text, target, turn); });
}

void Typist::tapEmptyCode()
{
    post([this] {
        const auto codes = KeyboardMap::read(connection()).emptyCodes();
        if (codes.empty())
            return;
        fakeKey(codes.back(), true);
        fakeKey(codes.back(), false);
        xcb_flush(connection().get());
    });
}

void Typist::cancel()
{
    ++m_turn;
}

void Typist::handleEvent(const xcb_generic_event_t& event)
{
    if ((event.response_type & 0x7f) != XCB_CLIENT_MESSAGE)
        return;
    const auto& message = reinterpret_cast<const xcb_client_message_event_t&>(event);
    if (message.type == connection().atom("WM_PROTOCOLS") && message.format == 32
        && message.data.data32[0] == connection().atom("_NET_WM_PING"))
        m_answeredPing = message.data.data32[1];
}

void Typist::pressPaste(PasteShortcut shortcut, const RunningApplication& target)
{
    if (takeAim(target) == XCB_WINDOW_NONE)
        return;
    const KeyboardMap map = KeyboardMap::read(connection());
    const auto control = map.codeOf(keysyms::leftControl);
    const auto shift = map.codeOf(keysyms::leftShift);
    const auto key =
        map.codeOf(shortcut == PasteShortcut::ShiftInsert ? keysyms::insert : keysyms::v);
    if (!control || !shift || !key)
        return;
    releaseHeldModifiers(map);
    switch (shortcut) {
    case PasteShortcut::ControlV:
        press({*control, *key});
        break;
    case PasteShortcut::ControlShiftV:
        press({*control, *shift, *key});
        break;
    case PasteShortcut::ShiftInsert:
        press({*shift, *key});
        break;
    }
}

void Typist::typeText(const QString& text, const RunningApplication& target, quint64 turn)
{
    const xcb_window_t window = takeAim(target);
    if (window == XCB_WINDOW_NONE)
        return;
    const KeyboardMap map = KeyboardMap::read(connection());
    releaseHeldModifiers(map);
    const auto batches = planTyping(text, map, m_spareCodes.codes(map), keyboardState());
    for (const TypingBatch& batch : batches) {
        if (!typeBatch(batch, window, turn))
            break;
    }
    m_spareCodes.restore();
}

xcb_window_t Typist::takeAim(const RunningApplication& target)
{
    const auto end = Clock::now() + managerPatience;
    for (;;) {
        const xcb_window_t window = m_windows.active();
        m_aim = focus();
        // The window manager moves the focus first and tells of it afterwards: ask both.
        const qint64 owner = m_windows.processAround(m_aim);
        if (isInFront(window, target) && (owner == 0 || owner == target.processIdentifier))
            return window;
        if (Clock::now() >= end)
            return XCB_WINDOW_NONE;
        std::this_thread::sleep_for(fingerPause);
    }
}

bool Typist::isInFront(xcb_window_t window, const RunningApplication& target) const
{
    if (window == XCB_WINDOW_NONE)
        return false;
    return window == target.window
        || (target.processIdentifier > 0
            && m_windows.owner(window).processIdentifier == target.processIdentifier);
}

bool Typist::typeBatch(const TypingBatch& batch, xcb_window_t window, quint64 turn)
{
    const auto shift = KeyboardMap::read(connection()).codeOf(keysyms::leftShift);
    if (!shift || !mayGoOn(window, turn))
        return false;
    m_spareCodes.assign(batch.assignments);
    if (!batch.assignments.empty())
        waitForProgram(window); // So that it knows the map before the first key.
    for (const KeyStroke& stroke : batch.strokes) {
        if (!mayGoOn(window, turn))
            return false;
        if (!press(stroke.shift ? std::vector<xcb_keycode_t>{*shift, stroke.code}
                                : std::vector<xcb_keycode_t>{stroke.code}))
            return false;
        std::this_thread::sleep_for(strokePause);
    }
    waitForProgram(window); // It looks the symbols up when it gets to the keys.
    return true;
}

void Typist::releaseHeldModifiers(const KeyboardMap& map)
{
    const auto end = Clock::now() + fingerPatience;
    for (auto held = heldModifiers(map); !held.empty(); held = heldModifiers(map)) {
        for (const xcb_keycode_t code : held)
            fakeKey(code, false);
        xcb_flush(connection().get());
        if (Clock::now() >= end)
            return;
        std::this_thread::sleep_for(fingerPause);
    }
}

std::vector<xcb_keycode_t> Typist::heldModifiers(const KeyboardMap& map) const
{
    xcb_connection_t* server = connection().get();
    const XcbPointer<xcb_query_keymap_reply_t> keys(
        xcb_query_keymap_reply(server, xcb_query_keymap(server), nullptr));
    std::vector<xcb_keycode_t> held;
    for (int row = 0; keys && row < map.codeCount(); ++row) {
        const auto code = static_cast<xcb_keycode_t>(map.firstCode() + row);
        const bool isDown = (keys->keys[code / 8U] >> (code % 8U) & 1U) != 0;
        if (isDown && keyRole(map, code).modifier)
            held.push_back(code);
    }
    return held;
}

KeyboardState Typist::keyboardState()
{
    xcb_connection_t* server = connection().get();
    const XcbPointer<xcb_query_pointer_reply_t> pointer(
        xcb_query_pointer_reply(server, xcb_query_pointer(server, connection().root()), nullptr));
    if (!pointer)
        return {};
    constexpr int groupShift = 13; // The layout in use stands above the buttons.
    return {pointer->mask >> groupShift & 3, (pointer->mask & XCB_MOD_MASK_LOCK) != 0};
}

bool Typist::press(const std::vector<xcb_keycode_t>& chord)
{
    // Between the look at the focus and the keys nobody else gets a word in.
    xcb_grab_server(connection().get());
    const bool isAimRight = focus() == m_aim;
    if (isAimRight) {
        for (const xcb_keycode_t code : chord)
            fakeKey(code, true);
        std::for_each(
            chord.rbegin(), chord.rend(), [this](xcb_keycode_t code) { fakeKey(code, false); });
    }
    xcb_ungrab_server(connection().get());
    xcb_flush(connection().get());
    return isAimRight;
}

void Typist::waitForProgram(xcb_window_t window)
{
    const X11Connection& server = connection();
    const auto protocols = server.numbers(window, server.atom("WM_PROTOCOLS"));
    if (!protocols.contains(server.atom("_NET_WM_PING"))) {
        std::this_thread::sleep_for(silentProgramPause);
        return;
    }
    xcb_client_message_event_t ping{};
    ping.response_type = XCB_CLIENT_MESSAGE;
    ping.format = 32;
    ping.window = window;
    ping.type = server.atom("WM_PROTOCOLS");
    ping.data.data32[0] = server.atom("_NET_WM_PING");
    ping.data.data32[1] = ++m_lastPing;
    ping.data.data32[2] = window;
    xcb_send_event(
        server.get(), 0, window, XCB_EVENT_MASK_NO_EVENT, reinterpret_cast<const char*>(&ping));
    xcb_flush(server.get());
    const auto end = Clock::now() + programPatience;
    while (m_answeredPing != m_lastPing && handleEventsUntil(end)) { }
}

bool Typist::mayGoOn(xcb_window_t window, quint64 turn) const
{
    return turn == m_turn.load() && m_windows.active() == window;
}

xcb_window_t Typist::focus() const
{
    xcb_connection_t* server = connection().get();
    const XcbPointer<xcb_get_input_focus_reply_t> focus(
        xcb_get_input_focus_reply(server, xcb_get_input_focus(server), nullptr));
    return focus ? focus->focus : xcb_window_t{XCB_WINDOW_NONE};
}

void Typist::fakeKey(xcb_keycode_t code, bool down)
{
    xcb_test_fake_input(connection().get(), down ? XCB_KEY_PRESS : XCB_KEY_RELEASE, code,
        XCB_CURRENT_TIME, XCB_WINDOW_NONE, 0, 0, 0);
}

} // namespace tavrin

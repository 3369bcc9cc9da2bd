#include "platform/linux/x11/typing/Typist.h"

#include "base/Log.h"
#include "platform/linux/inputmethod/KeyOrder.h"
#include "platform/linux/x11/ClipboardServer.h"

#include <algorithm>
#include <xcb/xtest.h>

namespace tavrin {
namespace {

using namespace std::chrono_literals;

// It looks symbols up when it gets to the keys: the map must stay until it has. A program that has
// not answered by then hangs.
constexpr auto programPatience = 4s;

// For programs that do not answer at all.
constexpr auto silentProgramPause = 80ms;

// For programs that share their keys with an input method; a machine under load needs half of it.
constexpr auto inputMethodPause = 150ms;

// The server takes a key for held as long as a finger is on it; the finger is on its way up.
constexpr auto fingerPatience = 600ms;
constexpr auto fingerPause = 5ms;

// A window manager that just made the target active may not have said so yet.
constexpr auto managerPatience = 500ms;

// Faster, and editors drop keys.
constexpr auto strokePause = 1ms;

} // namespace

Typist::Typist(const QString& stateFile, ClipboardServer& clipboard, Seconds pause)
    : m_spareCodes(connection(), stateFile)
    , m_clipboard(clipboard)
{
    start(pause);
}

Typist::~Typist()
{
    ++m_turn;
    post([this] { settle(); });
    stop();
}

void Typist::connected()
{
    // Answers to pings go to the root: by the rules to the first kind of listener, by Qt 6 to the
    // second.
    const quint32 events = XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_STRUCTURE_NOTIFY;
    xcb_change_window_attributes(
        connection().get(), connection().root(), XCB_CW_EVENT_MASK, &events);
    m_spareCodes.recover();
    m_inputMethods.recover();
}

void Typist::paste(const PasteShortcut& shortcut, const RunningApplication& target, Posted posted)
{
    post([this, shortcut, target, posted = std::move(posted)] {
        posted(pressPaste(shortcut, target));
    });
}

void Typist::askForReception(Received received)
{
    post([this, received = std::move(received)] { received(reception()); });
}

void Typist::type(const QString& text, const RunningApplication& target, Posted posted)
{
    post([this, text, target, posted = std::move(posted), turn = m_turn.load()] {
        posted(typeText(text, target, turn));
    });
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
    if (message.type != connection().atom("WM_PROTOCOLS") || message.format != 32
        || message.data.data32[0] != connection().atom("_NET_WM_PING"))
        return;
    m_answeredPing = message.data.data32[1];
    continueSeries(m_pasteWatch);
    continueSeries(m_typingWatch);
    if (m_settlesLater && m_typingWatch.isBehindKeys())
        settle();
}

KeyPosting Typist::pressPaste(const PasteShortcut& shortcut, const RunningApplication& target)
{
    const auto refuse = [](const char* reason) {
        qCWarning(log::platform) << "The paste shortcut is not pressed:" << reason;
        return KeyPosting::Refused;
    };
    m_pasteWatch = {};
    const xcb_window_t window = waitForFocus(target);
    if (window == XCB_WINDOW_NONE)
        return refuse("another window has the keyboard");
    m_inputMethods.endComposition(); // It would swallow the shortcut.
    const auto layouts = KeyboardLayouts::read(connection());
    const auto state = KeyboardState::read(connection());
    const auto plan =
        planPaste(shortcut.chordsFor(m_windows.title(window)), layouts, spareCodes(), state);
    if (!plan)
        return refuse("the keyboard has no keys for it");
    if (!releaseHeldModifiers(layouts, state.group))
        return refuse("a modifier key is held");
    if (!m_clipboard.watch(window, shortcut.pastesPrimary))
        return refuse("the clipboard cannot be had");
    const ModifiersAside aside(connection(), layouts.modifiersOf(keysyms::numLock));
    if (!lend(plan->assignments, window))
        return refuse("the program does not answer");
    const bool isPressed = press(plan->chords);
    static_cast<void>(focus()); // Once this is answered, the keys are out.
    startSeries(m_pasteWatch, window);
    if (!plan->assignments.empty())
        settleAfter(!isPressed || waitForProgram(window));
    return isPressed ? KeyPosting::Done : refuse("another window took the keyboard");
}

PasteReception Typist::reception()
{
    // In this order: what the program has asked for, it has asked for before it answers.
    const bool hasGotToIt = m_pasteWatch.isBehindKeys();
    switch (m_clipboard.fetching()) {
    case ClipboardServer::Fetching::ByProgram:
        return PasteReception::Fetched;
    case ClipboardServer::Fetching::Unknown:
        return PasteReception::Unknown;
    case ClipboardServer::Fetching::ByOthers:
    case ClipboardServer::Fetching::None:
        break;
    }
    if (m_pasteWatch.ping == 0)
        return PasteReception::Unknown;
    if (!hasGotToIt)
        return PasteReception::Waiting;
    return m_clipboard.fetching() == ClipboardServer::Fetching::None
        ? PasteReception::Ignored
        : PasteReception::FetchedElsewhere;
}

KeyPosting Typist::typeText(const QString& text, const RunningApplication& target, quint64 turn)
{
    const xcb_window_t window = waitForFocus(target);
    if (window == XCB_WINDOW_NONE) {
        qCWarning(log::platform) << "Nothing is typed: another window has the keyboard";
        return KeyPosting::Refused;
    }
    if (mixesTypedKeys(target.processIdentifier)) {
        qCInfo(log::platform) << "Nothing is typed: the program would mix the keys up";
        m_inputMethods.endComposition();
        return KeyPosting::Unsuitable;
    }
    if (!m_inputMethods.setAside()) {
        qCInfo(log::platform) << "Nothing is typed: the input method would take the keys";
        m_inputMethods.putBack();
        return KeyPosting::Unsuitable;
    }
    // What was being composed reaches the program as text of its own: let it be there before the
    // first key.
    if (m_inputMethods.isAside() && !waitForKeys(window)) {
        qCWarning(log::platform) << "Nothing is typed: the program does not answer";
        settle();
        return KeyPosting::Refused;
    }
    const KeyPosting posting = typePlain(text, window, turn);
    settleAfter(posting != KeyPosting::Unanswered);
    return posting;
}

KeyPosting Typist::typePlain(const QString& text, xcb_window_t window, quint64 turn)
{
    // Read now: an input method may have changed the map when it was set aside.
    const auto layouts = KeyboardLayouts::read(connection());
    if (!releaseHeldModifiers(layouts, KeyboardState::read(connection()).group)) {
        qCWarning(log::platform) << "Nothing is typed: a modifier key is held";
        return KeyPosting::Refused;
    }
    if (!m_clipboard.withholdFrom(window)) {
        return m_clipboard.fetching() == ClipboardServer::Fetching::ByProgram ? KeyPosting::Fetched
                                                                              : KeyPosting::Refused;
    }
    const ModifiersAside aside(connection(), layouts.modifiersOf(keysyms::numLock));
    const auto batches = planTyping(text, layouts, spareCodes(), KeyboardState::read(connection()));
    return typeBatches(batches, window, turn);
}

KeyPosting Typist::typeBatches(
    const std::vector<TypingBatch>& batches, xcb_window_t window, quint64 turn)
{
    const int group = KeyboardState::read(connection()).group;
    const auto shift = KeyboardLayouts::read(connection()).keysHolding(XCB_MOD_MASK_SHIFT, group);
    if (!shift)
        return KeyPosting::Refused;
    m_anyKeyOut = false;
    bool answered = true;
    for (const TypingBatch& batch : batches) {
        if (!answered || !typeBatch(batch, *shift, window, turn))
            return m_anyKeyOut ? KeyPosting::Broken : KeyPosting::Refused;
        answered = waitForKeys(window);
    }
    return answered ? KeyPosting::Done : KeyPosting::Unanswered;
}

std::vector<xcb_keycode_t> Typist::spareCodes() const
{
    return m_spareCodes.codes(KeyboardMap::read(connection()));
}

bool Typist::lend(const std::vector<CodeAssignment>& assignments, xcb_window_t window)
{
    if (assignments.empty())
        return true;
    m_spareCodes.assign(assignments);
    if (waitForProgram(window)) // So that it knows the map before the first key.
        return true;
    settle();
    return false;
}

void Typist::settleAfter(bool keysAreTaken)
{
    // What a program that hangs has in its queue means something only while the map stays.
    m_settlesLater = !keysAreTaken;
    if (keysAreTaken)
        settle();
}

void Typist::settle()
{
    m_settlesLater = false;
    m_spareCodes.restore();
    m_clipboard.release();
    m_inputMethods.putBack();
}

xcb_window_t Typist::waitForFocus(const RunningApplication& target)
{
    const auto end = Clock::now() + managerPatience;
    while (connection().isOpen()) {
        const xcb_window_t window = m_windows.active();
        m_focus = focus();
        // The window manager moves the focus first and tells of it afterwards: ask both.
        if (isInFront(window, target)
            && (m_focus == XCB_INPUT_FOCUS_POINTER_ROOT || m_windows.isWithin(m_focus, window))) {
            m_targetWindow = window;
            return window;
        }
        if (Clock::now() >= end)
            break;
        std::this_thread::sleep_for(fingerPause);
    }
    return XCB_WINDOW_NONE;
}

bool Typist::isInFront(xcb_window_t window, const RunningApplication& target) const
{
    if (window == XCB_WINDOW_NONE)
        return false;
    if (target.window != XCB_WINDOW_NONE)
        return window == target.window;
    return target.processIdentifier > 0 && m_windows.processOf(window) == target.processIdentifier;
}

bool Typist::typeBatch(const TypingBatch& batch, const std::vector<xcb_keycode_t>& shift,
    xcb_window_t window, quint64 turn)
{
    if (!mayGoOn(window, turn) || !lend(batch.assignments, window))
        return false;
    for (const KeyStroke& stroke : batch.strokes) {
        if (!mayGoOn(window, turn))
            return false;
        Chord chord{stroke.shift ? shift : std::vector<xcb_keycode_t>{}, {}};
        chord.codes.push_back(stroke.code);
        if (!press({chord}))
            return false;
        m_anyKeyOut = true;
        std::this_thread::sleep_for(strokePause);
    }
    return true;
}

bool Typist::releaseHeldModifiers(const KeyboardLayouts& layouts, int group)
{
    const auto end = Clock::now() + fingerPatience;
    for (;;) {
        const auto held = heldModifiers(connection(), layouts, group);
        if (held.empty())
            return true;
        for (const xcb_keycode_t code : held)
            fakeKey(code, false);
        xcb_flush(connection().get());
        if (Clock::now() >= end)
            return false;
        std::this_thread::sleep_for(fingerPause);
    }
}

bool Typist::press(const std::vector<Chord>& chords)
{
    if (pressAtFocus(chords))
        return true;
    // A part of the same window may have taken the keyboard, or the window itself from its manager.
    m_focus = focus();
    return m_windows.isWithin(m_focus, m_targetWindow) && pressAtFocus(chords);
}

bool Typist::pressAtFocus(const std::vector<Chord>& chords)
{
    // Between the look at the focus and the keys nobody else gets a word in.
    xcb_grab_server(connection().get());
    const bool isFocusKept = focus() == m_focus;
    const int usualGroup = KeyboardState::read(connection()).lockedGroup;
    for (const Chord& chord : chords) {
        if (!isFocusKept)
            break;
        if (chord.group)
            lockGroup(connection(), *chord.group);
        for (const xcb_keycode_t code : chord.codes)
            fakeKey(code, true);
        std::for_each(chord.codes.rbegin(), chord.codes.rend(),
            [this](xcb_keycode_t code) { fakeKey(code, false); });
        if (chord.group)
            lockGroup(connection(), usualGroup);
    }
    xcb_ungrab_server(connection().get());
    xcb_flush(connection().get());
    return isFocusKept;
}

bool Typist::waitForProgram(xcb_window_t window)
{
    startSeries(m_typingWatch, window);
    if (m_typingWatch.ping == 0) {
        std::this_thread::sleep_for(silentProgramPause);
        return true;
    }
    const auto end = Clock::now() + programPatience;
    while (!m_typingWatch.isBehindKeys() && handleEventsUntil(end)) { }
    return m_typingWatch.isBehindKeys();
}

void Typist::startSeries(PingSeries& series, xcb_window_t window)
{
    series = {window, answersPings(window) ? ping(window) : 0, 0};
}

void Typist::continueSeries(PingSeries& series)
{
    if (series.ping == 0 || series.ping != m_answeredPing || series.isBehindKeys())
        return;
    ++series.answers;
    if (!series.isBehindKeys())
        series.ping = ping(series.window);
}

bool Typist::answersPings(xcb_window_t window) const
{
    const X11Connection& server = connection();
    return server.numbers(window, server.atom("WM_PROTOCOLS"))
        .contains(server.atom("_NET_WM_PING"));
}

quint32 Typist::ping(xcb_window_t window)
{
    const X11Connection& server = connection();
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = window;
    message.type = server.atom("WM_PROTOCOLS");
    message.data.data32[0] = server.atom("_NET_WM_PING");
    message.data.data32[1] = ++m_lastPing;
    message.data.data32[2] = window;
    xcb_send_event(
        server.get(), 0, window, XCB_EVENT_MASK_NO_EVENT, reinterpret_cast<const char*>(&message));
    xcb_flush(server.get());
    return m_lastPing;
}

bool Typist::waitForKeys(xcb_window_t window)
{
    if (!waitForProgram(window))
        return false;
    if (!m_inputMethods.waitForKeys())
        return true;
    // Keys on their way to the input method and back go by another road than pings, from a thread
    // of its own in many programs: nobody tells when the last is through.
    std::this_thread::sleep_for(inputMethodPause);
    return waitForProgram(window);
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

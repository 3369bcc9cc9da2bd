#include "platform/linux/x11/ClipboardServer.h"

#include "platform/linux/x11/X11Programs.h"

#include <algorithm>
#include <cstring>
#include <future>

namespace tavrin {
namespace {

using namespace std::chrono_literals;

constexpr auto patience = 450ms;

// Whoever takes no piece for so long has gone.
constexpr auto transferPatience = 10s;

constexpr qsizetype pieceSize = qsizetype{192} * 1024; // Below every server's largest request.

} // namespace

ClipboardServer::ClipboardServer(Seconds pause)
{
    start(pause);
}

ClipboardServer::~ClipboardServer()
{
    post([this] { handOver(); });
    stop();
}

void ClipboardServer::connected()
{
    xcb_connection_t* server = connection().get();
    m_window = xcb_generate_id(server);
    const quint32 events = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_create_window(server, XCB_COPY_FROM_PARENT, m_window, connection().root(), -1, -1, 1, 1, 0,
        XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK, &events);
}

template <class Answer>
Answer ClipboardServer::ask(std::function<Answer()> question, Answer otherwise)
{
    auto promise = std::make_shared<std::promise<Answer>>();
    auto answer = promise->get_future();
    post([this, promise, question = std::move(question), otherwise] {
        promise->set_value(m_window == XCB_WINDOW_NONE ? otherwise : question());
    });
    return answer.wait_for(patience) == std::future_status::ready ? answer.get() : otherwise;
}

bool ClipboardServer::offer(const QString& text)
{
    return ask<bool>([this, bytes = text.toUtf8()] { return take(bytes); }, false);
}

bool ClipboardServer::watch(xcb_window_t window, bool asPrimary)
{
    return ask<bool>(
        [this, window, asPrimary] {
            m_watched = window;
            m_fetchedByProgram = m_fetchedByOthers = false;
            // The server is asked: the news of a loss may still be under way.
            return (isOwner(atom("CLIPBOARD")) || own(atom("CLIPBOARD"), m_clipboard))
                && (!asPrimary || own(XCB_ATOM_PRIMARY, m_primary));
        },
        false);
}

ClipboardServer::Fetching ClipboardServer::fetching()
{
    return ask<Fetching>(
        [this] {
            if (m_fetchedByProgram)
                return Fetching::ByProgram;
            if (!m_clipboard.isOurs)
                return Fetching::Unknown;
            return m_fetchedByOthers ? Fetching::ByOthers : Fetching::None;
        },
        Fetching::Unknown);
}

bool ClipboardServer::withholdFrom(xcb_window_t window)
{
    return ask<bool>(
        [this, window] {
            if (m_fetchedByProgram && isOfProgram(m_watched, window))
                return false;
            m_refused = window;
            return true;
        },
        false);
}

void ClipboardServer::release()
{
    // Waited for: what the program asks for after this is answered.
    static_cast<void>(ask<bool>(
        [this] {
            m_refused = XCB_WINDOW_NONE;
            return true;
        },
        false));
}

void ClipboardServer::handleEvent(const xcb_generic_event_t& event)
{
    switch (event.response_type & 0x7f) {
    case XCB_SELECTION_REQUEST:
        answer(reinterpret_cast<const xcb_selection_request_event_t&>(event));
        break;
    case XCB_SELECTION_CLEAR: {
        const auto& lost = reinterpret_cast<const xcb_selection_clear_event_t&>(event);
        Ownership& ownership = lost.selection == XCB_ATOM_PRIMARY ? m_primary : m_clipboard;
        if (lost.time >= ownership.since) // Not of an earlier ownership.
            ownership.isOurs = false;
        break;
    }
    case XCB_SELECTION_NOTIFY:
        m_handedOver = true;
        break;
    case XCB_PROPERTY_NOTIFY: {
        const auto& change = reinterpret_cast<const xcb_property_notify_event_t&>(event);
        if (change.window == m_window)
            m_lastServerTime = change.time;
        else if (change.state == XCB_PROPERTY_DELETE)
            continueTransfer(change);
        break;
    }
    default:
        break;
    }
}

void ClipboardServer::deadlinePassed()
{
    m_transfers.remove_if(
        [](const Transfer& transfer) { return transfer.deadline <= Clock::now(); });
    setNextDeadline();
}

bool ClipboardServer::take(const QByteArray& text)
{
    m_text = text;
    m_watched = m_refused = XCB_WINDOW_NONE;
    m_fetchedByProgram = m_fetchedByOthers = false;
    return own(atom("CLIPBOARD"), m_clipboard);
}

bool ClipboardServer::own(xcb_atom_t selection, Ownership& ownership)
{
    xcb_connection_t* server = connection().get();
    ownership.since = serverTime();
    xcb_set_selection_owner(server, m_window, selection, ownership.since);
    ownership.isOurs = isOwner(selection);
    return ownership.isOurs;
}

bool ClipboardServer::isOwner(xcb_atom_t selection) const
{
    xcb_connection_t* server = connection().get();
    const XcbPointer<xcb_get_selection_owner_reply_t> owner(
        xcb_get_selection_owner_reply(server, xcb_get_selection_owner(server, selection), nullptr));
    return owner && owner->owner == m_window;
}

bool ClipboardServer::isOfProgram(xcb_window_t requestor, xcb_window_t window) const
{
    return window != XCB_WINDOW_NONE && isSameProgram(connection(), requestor, window);
}

void ClipboardServer::noteFetch(xcb_window_t requestor)
{
    if (isOfProgram(requestor, m_watched))
        m_fetchedByProgram = true;
    else
        m_fetchedByOthers = true;
}

xcb_timestamp_t ClipboardServer::serverTime()
{
    // Only an event tells it: appending nothing to a property of our own window makes one.
    m_lastServerTime = XCB_CURRENT_TIME;
    xcb_change_property(connection().get(), XCB_PROP_MODE_APPEND, m_window, XCB_ATOM_WM_NAME,
        XCB_ATOM_STRING, 8, 0, nullptr);
    xcb_flush(connection().get());
    const auto end = Clock::now() + patience / 2;
    while (m_lastServerTime == XCB_CURRENT_TIME && handleEventsUntil(end)) { }
    return m_lastServerTime;
}

void ClipboardServer::answer(const xcb_selection_request_event_t& request)
{
    // Programs of old name no property; the target's name is meant then.
    const xcb_atom_t property =
        request.property == XCB_ATOM_NONE ? request.target : request.property;
    const bool known = (request.selection == atom("CLIPBOARD") && m_clipboard.isOurs)
        || (request.selection == XCB_ATOM_PRIMARY && m_primary.isOurs);
    const bool provided = known && provide(request.requestor, request.target, property);
    xcb_selection_notify_event_t reply{};
    reply.response_type = XCB_SELECTION_NOTIFY;
    reply.time = request.time;
    reply.requestor = request.requestor;
    reply.selection = request.selection;
    reply.target = request.target;
    reply.property = provided ? property : xcb_atom_t{XCB_ATOM_NONE};
    std::array<char, 32> bytes{};
    std::memcpy(bytes.data(), &reply, sizeof reply);
    xcb_send_event(connection().get(), 0, request.requestor, XCB_EVENT_MASK_NO_EVENT, bytes.data());
    xcb_flush(connection().get());
}

bool ClipboardServer::provide(xcb_window_t requestor, xcb_atom_t target, xcb_atom_t property)
{
    if (target == atom("TARGETS")) {
        setAtoms(requestor, property, XCB_ATOM_ATOM,
            {atom("TARGETS"), atom("TIMESTAMP"), atom("MULTIPLE"), atom("SAVE_TARGETS"),
                atom("UTF8_STRING"), atom("text/plain;charset=utf-8"), atom("text/plain"),
                atom("TEXT"), XCB_ATOM_STRING});
        return true;
    }
    if (target == atom("TIMESTAMP")) {
        setAtoms(requestor, property, XCB_ATOM_INTEGER, {m_clipboard.since});
        return true;
    }
    if (target == atom("SAVE_TARGETS")) {
        setAtoms(requestor, property, atom("NULL"), {});
        return true;
    }
    if (target == atom("MULTIPLE"))
        return provideMany(requestor, property);
    return provideText(requestor, target, property);
}

bool ClipboardServer::provideMany(xcb_window_t requestor, xcb_atom_t property)
{
    QList<quint32> pairs = connection().numbers(requestor, property);
    for (qsizetype i = 0; i + 1 < pairs.size(); i += 2) {
        const bool nested = pairs[i] == atom("MULTIPLE");
        if (nested || !provide(requestor, pairs[i], pairs[i + 1]))
            pairs[i + 1] = XCB_ATOM_NONE;
    }
    setAtoms(requestor, property, atom("ATOM_PAIR"), {pairs.begin(), pairs.end()});
    return !pairs.isEmpty();
}

bool ClipboardServer::isText(xcb_atom_t target) const
{
    return target == XCB_ATOM_STRING || target == atom("TEXT") || target == atom("UTF8_STRING")
        || target == atom("text/plain;charset=utf-8") || target == atom("text/plain");
}

bool ClipboardServer::provideText(xcb_window_t requestor, xcb_atom_t target, xcb_atom_t property)
{
    if (!isText(target) || isOfProgram(requestor, m_refused))
        return false;
    noteFetch(requestor);
    const QByteArray text =
        target == XCB_ATOM_STRING ? QString::fromUtf8(m_text).toLatin1() : m_text;
    const xcb_atom_t type = target == atom("TEXT") ? atom("UTF8_STRING") : target;
    if (text.size() > pieceSize) {
        beginTransfer(requestor, property, type, text);
        return true;
    }
    xcb_change_property(connection().get(), XCB_PROP_MODE_REPLACE, requestor, property, type, 8,
        static_cast<quint32>(text.size()), text.constData());
    return true;
}

void ClipboardServer::beginTransfer(
    xcb_window_t requestor, xcb_atom_t property, xcb_atom_t type, const QByteArray& text)
{
    const quint32 events = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_change_window_attributes(connection().get(), requestor, XCB_CW_EVENT_MASK, &events);
    // Who asks again for the same place has given up what was on its way there.
    m_transfers.remove_if([&](const Transfer& transfer) {
        return transfer.requestor == requestor && transfer.property == property;
    });
    setAtoms(requestor, property, atom("INCR"), {static_cast<quint32>(text.size())});
    m_transfers.push_back({requestor, property, type, text, 0, Clock::now() + transferPatience});
    setNextDeadline();
}

void ClipboardServer::continueTransfer(const xcb_property_notify_event_t& event)
{
    const auto transfer =
        std::find_if(m_transfers.begin(), m_transfers.end(), [&event](const Transfer& candidate) {
            return candidate.requestor == event.window && candidate.property == event.atom;
        });
    if (transfer == m_transfers.end())
        return;
    // An empty piece says that this was all.
    const QByteArray piece = transfer->text.mid(transfer->position, pieceSize);
    xcb_change_property(connection().get(), XCB_PROP_MODE_REPLACE, transfer->requestor,
        transfer->property, transfer->type, 8, static_cast<quint32>(piece.size()),
        piece.constData());
    xcb_flush(connection().get());
    transfer->position += piece.size();
    transfer->deadline = Clock::now() + transferPatience;
    if (piece.isEmpty())
        m_transfers.erase(transfer);
    setNextDeadline();
}

void ClipboardServer::setNextDeadline()
{
    const auto next = std::min_element(m_transfers.begin(), m_transfers.end(),
        [](const Transfer& one, const Transfer& other) { return one.deadline < other.deadline; });
    setDeadline(next == m_transfers.end() ? std::nullopt : std::optional(next->deadline));
}

void ClipboardServer::handOver()
{
    if (!m_clipboard.isOurs)
        return;
    xcb_connection_t* server = connection().get();
    const xcb_atom_t manager = atom("CLIPBOARD_MANAGER");
    const XcbPointer<xcb_get_selection_owner_reply_t> owner(
        xcb_get_selection_owner_reply(server, xcb_get_selection_owner(server, manager), nullptr));
    if (!owner || owner->owner == XCB_WINDOW_NONE)
        return;
    const xcb_atom_t property = atom("TAVRIN_SAVE");
    setAtoms(m_window, property, XCB_ATOM_ATOM, {atom("UTF8_STRING")});
    xcb_convert_selection(
        server, m_window, manager, atom("SAVE_TARGETS"), property, m_clipboard.since);
    xcb_flush(server);
    m_handedOver = false;
    const auto end = Clock::now() + patience;
    while (!m_handedOver && handleEventsUntil(end)) { }
}

void ClipboardServer::setAtoms(xcb_window_t requestor, xcb_atom_t property, xcb_atom_t type,
    const std::vector<xcb_atom_t>& atoms) const
{
    xcb_change_property(connection().get(), XCB_PROP_MODE_REPLACE, requestor, property, type, 32,
        static_cast<quint32>(atoms.size()), atoms.data());
}

} // namespace tavrin

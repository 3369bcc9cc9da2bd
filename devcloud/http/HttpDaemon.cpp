#include "devcloud/http/HttpDaemon.h"

#include "devcloud/api/Messages.h"
#include "devcloud/http/ClientAddress.h"
#include "devcloud/http/RequestHandler.h"
#include "devcloud/http/Sockets.h"
#include "devcloud/text/Ascii.h"

#include <algorithm>
#include <array>
#include <microhttpd.h>
#include <new>
#include <sys/epoll.h>
#include <sys/eventfd.h>
#include <sys/socket.h>

using namespace std::chrono_literals;

namespace tavrin::devcloud {
namespace {

using Phase = Connection::Phase;

constexpr auto cutInterval = 50ms;
constexpr auto longestFarewell = 2s;
constexpr unsigned int connectionsToSpare = 64; // While those that were cut are going.
constexpr auto jsonType = "application/json; charset=utf-8";
constexpr auto tlsPriorities = "NORMAL:-VERS-ALL:+VERS-TLS1.3:+VERS-TLS1.2";

/// What of the head of a request matters.
struct Headers {
    RequestHead head;
    std::string authorization;
    bool hasAuthorization = false;
    std::vector<std::string> forwarded;
};

MHD_Result readHeader(void* context, MHD_ValueKind /*kind*/, const char* key, const char* value)
{
    auto& headers = *static_cast<Headers*>(context);
    const std::string name = lowerAscii(key);
    const std::string text = value ? value : "";
    if (name == "content-length") {
        headers.head.contentLengths.push_back(text);
    } else if (name == "content-type") {
        headers.head.contentTypes.push_back(text);
    } else if (name == "transfer-encoding") {
        headers.head.hasTransferEncoding = true;
    } else if (name == "content-encoding") {
        headers.head.hasContentEncoding = true;
    } else if (name == "x-forwarded-for") {
        headers.forwarded.push_back(text);
    } else if (name == "authorization" && !headers.hasAuthorization) {
        headers.authorization = text;
        headers.hasAuthorization = true;
    }
    return MHD_YES;
}

Problem busy()
{
    return {503, messages::busy, 1s};
}

unsigned int wholeSeconds(std::chrono::milliseconds time)
{
    return static_cast<unsigned int>(std::chrono::ceil<std::chrono::seconds>(time).count());
}

} // namespace

/// What the library calls, all on the thread of HttpDaemon::run. Nothing may be thrown through it.
struct HttpDaemon::Callbacks {
    static void onConnection(void* self, MHD_Connection* handle, void** socketContext,
        MHD_ConnectionNotificationCode code)
    {
        auto& daemon = *static_cast<HttpDaemon*>(self);
        if (code == MHD_CONNECTION_NOTIFY_STARTED) {
            const int socket =
                MHD_get_connection_info(handle, MHD_CONNECTION_INFO_CONNECTION_FD)->connect_fd;
            const sockaddr* address =
                MHD_get_connection_info(handle, MHD_CONNECTION_INFO_CLIENT_ADDRESS)->client_addr;
            *socketContext = &daemon.m_connections.add(socket, numericAddress(address));
            return;
        }
        auto& connection = *static_cast<Connection*>(*socketContext);
        if (!connection.isCut && connection.closesEarly)
            daemon.m_lingering.adopt(connection.socket);
        daemon.forgetRequest(connection);
        daemon.m_connections.remove(connection);
    }

    static void* onRequestLine(void* self, const char* /*uri*/, MHD_Connection* handle)
    {
        auto* connection = static_cast<Connection*>(
            MHD_get_connection_info(handle, MHD_CONNECTION_INFO_SOCKET_CONTEXT)->socket_context);
        static_cast<HttpDaemon*>(self)->m_connections.enter(*connection, Phase::Reading);
        return connection;
    }

    static MHD_Result onRequest(void* self, MHD_Connection* handle, const char* path,
        const char* method, const char* /*version*/, const char* bytes, size_t* size,
        void** context)
    {
        auto& daemon = *static_cast<HttpDaemon*>(self);
        auto& connection = *static_cast<Connection*>(*context);
        try {
            if (connection.answer) {
                daemon.respond(handle, connection, *connection.answer);
            } else if (!connection.hasHead) {
                daemon.beginRequest(handle, connection, path, method);
            } else if (*size > 0) {
                daemon.keepBody(connection, bytes, *size);
                *size = 0;
            } else {
                daemon.submit(handle, connection);
            }
        } catch (const std::bad_alloc&) {
            return MHD_NO;
        }
        return MHD_YES;
    }

    static void onCompleted(
        void* self, MHD_Connection* /*handle*/, void** context, MHD_RequestTerminationCode /*code*/)
    {
        auto& daemon = *static_cast<HttpDaemon*>(self);
        auto* connection = static_cast<Connection*>(*context);
        if (!connection)
            return;
        daemon.forgetRequest(*connection);
        // A request that was still arriving has been refused by the library.
        if (connection->phase == Phase::Reading)
            connection->closesEarly = true;
        if (!connection->closesEarly)
            daemon.m_connections.enter(*connection, Phase::Waiting);
    }
};

void HttpDaemon::DaemonEnd::operator()(MHD_Daemon* daemon) const
{
    MHD_stop_daemon(daemon);
}

HttpDaemon::HttpDaemon(
    RequestHandler& handler, const HttpServerSettings& settings, Descriptor listening)
    : m_handler(handler)
    , m_settings(settings)
    , m_listening(std::move(listening))
    , m_poller(epoll_create1(EPOLL_CLOEXEC))
    , m_wake(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK))
    , m_connections(settings.limits, settings.trustedProxies)
    , m_lingering(m_poller.value())
    , m_quick(settings.workers.quick, settings.workers.mostWaiting)
    , m_passwords(settings.workers.passwords, settings.workers.mostWaiting)
    , m_models(settings.workers.models, settings.workers.mostWaiting)
{
    startDaemon();
}

HttpDaemon::~HttpDaemon() = default;

void HttpDaemon::startDaemon()
{
    const auto& limits = m_settings.limits;
    std::vector<MHD_OptionItem> tls{{MHD_OPTION_END, 0, nullptr}};
    unsigned int flags = MHD_USE_EPOLL | MHD_ALLOW_SUSPEND_RESUME;
    if (m_settings.tls) {
        flags |= MHD_USE_TLS;
        const auto text = [](const std::string& value) { return const_cast<char*>(value.c_str()); };
        tls = {{MHD_OPTION_HTTPS_MEM_CERT, 0, text(m_settings.tls->certificate)},
            {MHD_OPTION_HTTPS_MEM_KEY, 0, text(m_settings.tls->key)},
            {MHD_OPTION_HTTPS_PRIORITIES, 0, const_cast<char*>(tlsPriorities)},
            {MHD_OPTION_END, 0, nullptr}};
    }
    m_daemon.reset(MHD_start_daemon(flags, 0, nullptr, nullptr, &Callbacks::onRequest, this,
        MHD_OPTION_LISTEN_SOCKET, m_listening.value(), MHD_OPTION_CONNECTION_LIMIT,
        static_cast<unsigned int>(limits.connections) + connectionsToSpare,
        MHD_OPTION_CONNECTION_TIMEOUT,
        wholeSeconds(std::max({limits.idle, limits.wholeRequest, limits.wholeAnswer})),
        MHD_OPTION_CONNECTION_MEMORY_LIMIT, limits.headBytes, MHD_OPTION_NOTIFY_CONNECTION,
        &Callbacks::onConnection, this, MHD_OPTION_URI_LOG_CALLBACK, &Callbacks::onRequestLine,
        this, MHD_OPTION_NOTIFY_COMPLETED, &Callbacks::onCompleted, this, MHD_OPTION_ARRAY,
        tls.data(), MHD_OPTION_END));
    if (!m_daemon)
        return;
    const int events = MHD_get_daemon_info(m_daemon.get(), MHD_DAEMON_INFO_EPOLL_FD)->epoll_fd;
    // The library waits for connections by `events` too. Here each one that arrives wakes: what is
    // left waiting at a limit is looked for while there are connections.
    if (!watch(events, EPOLLIN) || !watch(m_wake.value(), EPOLLIN)
        || !watch(m_listening.value(), EPOLLIN | EPOLLET))
        m_daemon.reset();
}

bool HttpDaemon::watch(int descriptor, std::uint32_t kinds) const
{
    epoll_event event{};
    event.events = kinds;
    event.data.fd = descriptor;
    return epoll_ctl(m_poller.value(), EPOLL_CTL_ADD, descriptor, &event) == 0;
}

void HttpDaemon::run()
{
    while (!m_isEnding)
        step();
    finishServing();
}

void HttpDaemon::end()
{
    m_isEnding = true;
    eventfd_write(m_wake.value(), 1);
}

void HttpDaemon::step()
{
    std::array<epoll_event, 64> events{};
    const int count = epoll_wait(
        m_poller.value(), events.data(), static_cast<int>(events.size()), waitMilliseconds());
    for (int at = 0; at < count; ++at)
        m_lingering.read(events.at(static_cast<std::size_t>(at)).data.fd);
    takeFinished();
    MHD_run(m_daemon.get());
    const auto now = Connection::Clock::now();
    if (now - m_lastCut >= cutInterval) {
        m_connections.cutOverdue(now);
        m_lingering.closeOverdue(now);
        m_lastCut = now;
    }
}

int HttpDaemon::waitMilliseconds() const
{
    const bool mustLookAgain = m_connections.size() > 0 || !m_lingering.isEmpty() || m_isEnding;
    const int own = mustLookAgain ? static_cast<int>(cutInterval.count()) : -1;
    MHD_UNSIGNED_LONG_LONG libraries = 0;
    if (MHD_get_timeout(m_daemon.get(), &libraries) != MHD_YES)
        return own;
    const int bounded = static_cast<int>(std::min<MHD_UNSIGNED_LONG_LONG>(libraries, 60'000));
    return own < 0 ? bounded : std::min(own, bounded);
}

void HttpDaemon::takeFinished()
{
    eventfd_t ignored = 0;
    eventfd_read(m_wake.value(), &ignored);
    std::vector<Finished> finished;
    {
        const std::lock_guard lock(m_mutex);
        finished.swap(m_finished);
    }
    for (Finished& each : finished) {
        each.connection->answer = std::move(each.answer);
        m_connections.enter(*each.connection, Phase::Answering);
        MHD_resume_connection(each.handle);
    }
}

/// The library must not be stopped while a connection is suspended.
void HttpDaemon::finishServing()
{
    MHD_quiesce_daemon(m_daemon.get());
    m_listening.reset();
    m_connections.cutUnserved();
    m_quick.finish();
    m_passwords.finish();
    m_models.finish();
    const auto deadline = Connection::Clock::now() + longestFarewell;
    while (m_connections.isServing() && Connection::Clock::now() < deadline)
        step();
    m_daemon.reset();
}

void HttpDaemon::beginRequest(
    MHD_Connection* handle, Connection& connection, const char* path, const char* method)
{
    Headers headers;
    MHD_get_connection_values(handle, MHD_HEADER_KIND, &readHeader, &headers);
    headers.head.method = method;
    headers.head.path = path;
    if (const auto refused = refusalBeforeBody(headers.head)) {
        connection.closesEarly = true;
        respond(handle, connection, answerFor(*refused));
        return;
    }
    connection.hasHead = true;
    connection.endpoint = endpointFor(method, path).value();
    connection.authorization = std::move(headers.authorization);
    connection.address =
        clientAddress(connection.peer, headers.forwarded, m_settings.trustedProxies);
}

void HttpDaemon::keepBody(Connection& connection, const char* bytes, std::size_t size)
{
    if (m_bodyBytes + size > m_settings.limits.bodyBytes)
        connection.isBodyTooMuch = true;
    if (connection.isBodyTooMuch)
        return;
    connection.body.append(bytes, size);
    m_bodyBytes += size;
}

void HttpDaemon::submit(MHD_Connection* handle, Connection& connection)
{
    if (connection.isBodyTooMuch) {
        respond(handle, connection, answerFor(busy()));
        return;
    }
    // The connection outlives the work: the library does not end it while it is suspended.
    auto task = [this, handle, &connection] {
        const Call call{
            connection.endpoint, connection.authorization, connection.body, connection.address};
        finish({handle, &connection, answerFor(m_handler.answer(call))});
    };
    m_connections.enter(connection, Phase::Working);
    MHD_suspend_connection(handle);
    if (!poolFor(connection.endpoint).enqueue(std::move(task)))
        finish({handle, &connection, answerFor(busy())});
}

void HttpDaemon::finish(Finished finished)
{
    {
        const std::lock_guard lock(m_mutex);
        m_finished.push_back(std::move(finished));
    }
    eventfd_write(m_wake.value(), 1);
}

void HttpDaemon::respond(MHD_Connection* handle, Connection& connection, const Answer& answer)
{
    m_connections.enter(connection, Phase::Answering);
    MHD_Response* response = MHD_create_response_from_buffer(
        answer.body.size(), const_cast<char*>(answer.body.data()), MHD_RESPMEM_MUST_COPY);
    if (!response)
        throw std::bad_alloc();
    MHD_add_response_header(response, MHD_HTTP_HEADER_CONTENT_TYPE, jsonType);
    MHD_add_response_header(response, MHD_HTTP_HEADER_CACHE_CONTROL, "no-store");
    if (answer.retryAfter.count() > 0)
        MHD_add_response_header(response, MHD_HTTP_HEADER_RETRY_AFTER,
            std::to_string(answer.retryAfter.count()).c_str());
    if (connection.closesEarly || m_isEnding)
        MHD_add_response_header(response, MHD_HTTP_HEADER_CONNECTION, "close");
    const bool isQueued =
        MHD_queue_response(handle, static_cast<unsigned int>(answer.status), response) == MHD_YES;
    MHD_destroy_response(response);
    if (!isQueued)
        throw std::bad_alloc();
}

void HttpDaemon::forgetRequest(Connection& connection)
{
    m_bodyBytes -= connection.body.size();
    connection.body = {};
    connection.authorization.clear();
    connection.address.clear();
    connection.answer.reset();
    connection.hasHead = false;
    connection.isBodyTooMuch = false;
}

WorkerPool& HttpDaemon::poolFor(Endpoint endpoint)
{
    switch (m_handler.effortOf(endpoint)) {
    case Effort::Quick:
        return m_quick;
    case Effort::Password:
        return m_passwords;
    case Effort::Model:
        return m_models;
    }
    return m_quick;
}

} // namespace tavrin::devcloud

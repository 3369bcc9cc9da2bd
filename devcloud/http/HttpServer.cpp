#include "devcloud/http/HttpServer.h"

#include "devcloud/Messages.h"
#include "devcloud/Service.h"
#include "devcloud/http/Routes.h"
#include "devcloud/http/WorkerPool.h"

#include <algorithm>
#include <atomic>
#include <sys/socket.h>
#include <unistd.h>

using namespace std::chrono_literals;

namespace tavrin::devcloud {
namespace {

constexpr int backlog = 128;
constexpr std::size_t maxRequestsPerConnection = 100'000;
constexpr auto idleSlice = 50ms; // How soon an idle connection notices that it should give way.
constexpr auto jsonType = "application/json; charset=utf-8";

void write(httplib::Response& response, int status, const Json& body)
{
    response.status = status;
    response.set_content(body.dump(-1, ' ', false, Json::error_handler_t::replace), jsonType);
    response.set_header("Cache-Control", "no-store");
}

void write(httplib::Response& response, const Problem& problem)
{
    write(response, problem.status, Json{{"error", {{"message", problem.message}}}});
    if (problem.retryAfter.count() > 0)
        response.set_header("Retry-After", std::to_string(problem.retryAfter.count()));
}

std::vector<std::string> headerValues(const httplib::Request& request, const char* name)
{
    std::vector<std::string> values;
    const auto [first, last] = request.headers.equal_range(name);
    std::transform(
        first, last, std::back_inserter(values), [](const auto& header) { return header.second; });
    return values;
}

std::optional<Problem> refusalBeforeBody(const httplib::Request& request)
{
    return refusalBeforeBody(RequestHead{request.method, request.path,
        headerValues(request, "Content-Length"), headerValues(request, "Content-Type"),
        request.has_header("Transfer-Encoding"), request.has_header("Content-Encoding")});
}

/// Looks at the head of a request before the library goes on with it; false when its body will not
/// be read.
bool admit(httplib::Request& request)
{
    request.ranges.clear(); // Answers are whole.
    if (refusalBeforeBody(request)) {
        request.headers.erase("Connection");
        request.set_header("Connection", "close");
        return false;
    }
    // Without a length the library would read until the connection ends.
    if (request.method == "POST" && !request.has_header("Content-Length"))
        request.set_header("Content-Length", "0");
    return true;
}

/// The library's own options let two servers share a port.
void reuseAddress(socket_t socket)
{
    const int yes = 1;
    setsockopt(socket, SOL_SOCKET, SO_REUSEADDR, &yes, sizeof yes);
}

/// What the protocol itself refuses, such as a malformed request line: the library gives the
/// status.
void describeProtocolError(const httplib::Request& /*request*/, httplib::Response& response)
{
    if (response.body.empty())
        write(response, {response.status, messages::headersInvalid, {}});
}

} // namespace

/// The library's server with connections of our own: bounded in time, and giving way when idle.
class HttpServer::Listener : public httplib::Server {
public:
    Listener(Service& service, HttpServerSettings settings)
        : m_service(service)
        , m_settings(std::move(settings))
    {
        new_task_queue = [this] {
            auto pool = std::make_unique<WorkerPool>(m_settings.threads);
            m_pool = pool.get();
            return pool.release();
        };
        set_socket_options(reuseAddress);
        set_tcp_nodelay(true);
        set_keep_alive_max_count(maxRequestsPerConnection);
        set_keep_alive_timeout(
            std::chrono::duration_cast<std::chrono::seconds>(m_settings.idleConnection).count());
        set_pre_routing_handler([](const auto& request, auto& response) {
            const auto problem = refusalBeforeBody(request);
            if (problem)
                write(response, *problem);
            return problem ? HandlerResponse::Handled : HandlerResponse::Unhandled;
        });
        set_error_handler(Handler(describeProtocolError));
        addRoutes();
    }

    /// Lets more connections wait to be accepted than the library does.
    void lengthenBacklog() { ::listen(svr_sock_, backlog); }

    void end()
    {
        m_ended = true;
        stop();
    }

private:
    void addRoutes()
    {
        for (const Route& route : routes()) {
            const auto handler = [this, endpoint = route.endpoint](
                                     const auto& request, auto& response) {
                const Outcome outcome = m_service.answer({endpoint,
                    request.get_header_value("Authorization"), request.body, request.remote_addr});
                if (outcome)
                    write(response, 200, *outcome);
                else
                    write(response, outcome.error());
            };
            if (route.method == "GET")
                Get(std::string(route.path), handler);
            else
                Post(std::string(route.path), handler);
        }
    }

    bool process_and_close_socket(socket_t socket) override
    {
        ClientStream stream(socket, m_settings.limits);
        bool isOpen = true;
        bool isRefused = false;
        std::size_t left = maxRequestsPerConnection;
        while (isOpen && hasNextRequest(stream, left == maxRequestsPerConnection)) {
            --left;
            stream.beginRequest();
            isRefused = true; // Until its head has been read and found good.
            bool closedByClient = false;
            const bool isServed = process_request(stream, left == 0 || m_ended, closedByClient,
                [&isRefused](httplib::Request& request) { isRefused = !admit(request); });
            isRefused = isRefused || stream.isBroken();
            isOpen = isServed && !isRefused && !closedByClient && left > 0 && !m_ended;
        }
        if (isRefused)
            stream.finish();
        close(socket);
        return true;
    }

    /// Whether the next request begins. A connection that had its turn gives way when others wait;
    /// a fresh one gets the time of a whole request to begin its first.
    bool hasNextRequest(ClientStream& stream, bool isFresh) const
    {
        const auto patience = isFresh ? m_settings.limits.wholeRequest : m_settings.idleConnection;
        const auto deadline = std::chrono::steady_clock::now() + patience;
        while (!m_ended && std::chrono::steady_clock::now() < deadline) {
            if (stream.waitForBytes(idleSlice))
                return true;
            if (!isFresh && m_pool.load()->isCrowded())
                return false;
        }
        return false;
    }

    Service& m_service;
    const HttpServerSettings m_settings;
    std::atomic<WorkerPool*> m_pool = nullptr;
    std::atomic<bool> m_ended = false;
};

HttpServer::HttpServer(Service& service, const HttpServerSettings& settings)
    : m_listener(std::make_unique<Listener>(service, settings))
    , m_settings(settings)
{
}

HttpServer::~HttpServer()
{
    stop();
}

bool HttpServer::start()
{
    if (m_settings.port == 0)
        m_port = m_listener->bind_to_any_port(m_settings.host);
    else if (m_listener->bind_to_port(m_settings.host, m_settings.port))
        m_port = m_settings.port;
    if (m_port <= 0)
        return false;
    m_listener->lengthenBacklog();
    m_thread = std::thread([this] { m_listener->listen_after_bind(); });
    while (!m_listener->is_running())
        std::this_thread::yield();
    return true;
}

void HttpServer::stop()
{
    if (!m_thread.joinable())
        return;
    m_listener->end();
    m_thread.join();
}

} // namespace tavrin::devcloud

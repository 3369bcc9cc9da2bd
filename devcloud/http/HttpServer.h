#pragma once

#include "devcloud/http/ConnectionTable.h"
#include "devcloud/http/TlsIdentity.h"

#include <memory>
#include <optional>
#include <set>
#include <string>
#include <thread>

namespace tavrin::devcloud {

class HttpDaemon;
class RequestHandler;

/// How many threads work on requests. Each kind of effort has its own, so that neither sign-ins nor
/// a slow model make a quick request wait.
struct WorkerCounts {
    std::size_t quick = 12;
    std::size_t passwords = 4;
    std::size_t models = 16;
    std::size_t mostWaiting = 512; ///< Before each kind; more are refused with 503.
};

struct HttpServerSettings {
    std::string host = "127.0.0.1";
    int port = 8787; ///< 0 takes any free one.
    WorkerCounts workers;
    ConnectionLimits limits;
    std::optional<TlsIdentity> tls; ///< Without one it speaks plain HTTP.
    /// Numeric addresses whose `X-Forwarded-For` is believed, in canonical form.
    std::set<std::string> trustedProxies;
};

/// Speaks HTTP/1.1 for a RequestHandler. One thread waits for events of all connections, however
/// many are silent; what takes time is done by other threads.
///
/// Every answer is a JSON object, but for a head that is no HTTP at all or too long: the library
/// refuses it in words of its own.
class HttpServer {
public:
    /// @param handler must outlive the server.
    HttpServer(RequestHandler& handler, HttpServerSettings settings);
    ~HttpServer();
    HttpServer(const HttpServer&) = delete;
    HttpServer& operator=(const HttpServer&) = delete;

    /// Takes the port and begins to answer on threads of its own; false when the port is taken or
    /// the identity is of no use.
    bool start();
    /// Finishes the requests under way and returns when all threads have ended.
    void stop();

    [[nodiscard]] int port() const { return m_port; }

private:
    RequestHandler& m_handler;
    HttpServerSettings m_settings;
    int m_port = 0;
    std::unique_ptr<HttpDaemon> m_daemon;
    std::thread m_thread;
};

} // namespace tavrin::devcloud

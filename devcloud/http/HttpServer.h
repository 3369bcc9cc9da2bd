#pragma once

#include "devcloud/http/ClientStream.h"

#include <memory>
#include <string>
#include <thread>

namespace tavrin::devcloud {

class Service;

struct HttpServerSettings {
    std::string host = "127.0.0.1";
    int port = 8787; ///< 0 takes any free one.
    std::size_t threads = 16;
    std::chrono::milliseconds idleConnection{std::chrono::seconds(30)};
    RequestLimits limits;
};

/// Speaks HTTP/1.1 for a Service. Every answer, errors of the protocol included, is a JSON object.
class HttpServer {
public:
    /// @param service must outlive the server.
    HttpServer(Service& service, const HttpServerSettings& settings);
    ~HttpServer();
    HttpServer(const HttpServer&) = delete;
    HttpServer& operator=(const HttpServer&) = delete;

    /// Takes the port and begins to answer on threads of its own; false when the port is taken.
    bool start();
    /// Finishes the requests under way and returns when all threads have ended.
    void stop();

    [[nodiscard]] int port() const { return m_port; }

private:
    class Listener;

    std::unique_ptr<Listener> m_listener;
    HttpServerSettings m_settings;
    int m_port = 0;
    std::thread m_thread;
};

} // namespace tavrin::devcloud

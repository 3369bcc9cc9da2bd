#pragma once

#include "devcloud/http/ConnectionTable.h"
#include "devcloud/http/Descriptor.h"
#include "devcloud/http/HttpServer.h"
#include "devcloud/http/Lingering.h"
#include "devcloud/http/WorkerPool.h"

#include <atomic>
#include <cstdint>
#include <memory>
#include <mutex>
#include <vector>

struct MHD_Connection;
struct MHD_Daemon;

namespace tavrin::devcloud {

/// The HTTP library's daemon, driven by one thread, and the threads that work on requests. While a
/// request is worked on, its connection is suspended: the library does not look at it.
class HttpDaemon {
public:
    /// @param handler must outlive the daemon.
    /// @param listening where connections come in.
    HttpDaemon(RequestHandler& handler, const HttpServerSettings& settings, Descriptor listening);
    ~HttpDaemon();
    HttpDaemon(const HttpDaemon&) = delete;
    HttpDaemon& operator=(const HttpDaemon&) = delete;

    /// False when the library or the system refused to start.
    [[nodiscard]] bool isReady() const { return m_daemon != nullptr; }

    /// Serves until end(), and then until what was under way is answered.
    void run();
    /// Any thread.
    void end();

private:
    struct Callbacks;

    struct Finished {
        MHD_Connection* handle;
        Connection* connection;
        Answer answer;
    };

    struct DaemonEnd {
        void operator()(MHD_Daemon* daemon) const;
    };

    void startDaemon();
    bool watch(int descriptor, std::uint32_t kinds) const;
    void step();
    [[nodiscard]] int waitMilliseconds() const;
    void takeFinished();
    void finishServing();

    void beginRequest(
        MHD_Connection* handle, Connection& connection, const char* path, const char* method);
    void keepBody(Connection& connection, const char* bytes, std::size_t size);
    void submit(MHD_Connection* handle, Connection& connection);
    void finish(Finished finished);
    void respond(MHD_Connection* handle, Connection& connection, const Answer& answer);
    void forgetRequest(Connection& connection);
    WorkerPool& poolFor(Endpoint endpoint);

    RequestHandler& m_handler;
    const HttpServerSettings m_settings;
    Descriptor m_listening;
    Descriptor m_poller;
    Descriptor m_wake; ///< Readable when a request is finished or the end has come.
    ConnectionTable m_connections;
    Lingering m_lingering;
    std::size_t m_bodyBytes = 0; ///< Of all requests, kept now.
    Connection::Clock::time_point m_lastCut{};
    std::atomic<bool> m_isEnding = false;

    std::mutex m_mutex;
    std::vector<Finished> m_finished;

    std::unique_ptr<MHD_Daemon, DaemonEnd> m_daemon;
    WorkerPool m_quick;
    WorkerPool m_passwords;
    WorkerPool m_models;
};

} // namespace tavrin::devcloud

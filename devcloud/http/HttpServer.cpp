#include "devcloud/http/HttpServer.h"

#include "devcloud/http/HttpDaemon.h"
#include "devcloud/http/Sockets.h"

namespace tavrin::devcloud {

HttpServer::HttpServer(RequestHandler& handler, HttpServerSettings settings)
    : m_handler(handler)
    , m_settings(std::move(settings))
{
}

HttpServer::~HttpServer()
{
    stop();
}

bool HttpServer::start()
{
    ListeningSocket listening = listenOn(m_settings.host, m_settings.port);
    if (!listening.descriptor.isOpen())
        return false;
    m_port = listening.port;
    m_daemon = std::make_unique<HttpDaemon>(m_handler, m_settings, std::move(listening.descriptor));
    if (!m_daemon->isReady())
        return false;
    m_thread = std::thread([this] { m_daemon->run(); });
    return true;
}

void HttpServer::stop()
{
    if (!m_thread.joinable())
        return;
    m_daemon->end();
    m_thread.join();
    m_daemon.reset();
}

} // namespace tavrin::devcloud

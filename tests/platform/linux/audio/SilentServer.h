#pragma once

#include <QByteArray>
#include <QFile>
#include <QString>
#include <QTemporaryDir>

#include <algorithm>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace tavrin::testing {

/// Leads the sound clients made while it lives to a server of the test's own.
class SoundServerAddress {
public:
    explicit SoundServerAddress(const QString& socketPath)
        : m_before(qgetenv("PULSE_SERVER"))
    {
        qputenv("PULSE_SERVER", "unix:" + QFile::encodeName(socketPath));
    }

    ~SoundServerAddress()
    {
        if (m_before.isEmpty())
            qunsetenv("PULSE_SERVER");
        else
            qputenv("PULSE_SERVER", m_before);
    }

    SoundServerAddress(const SoundServerAddress&) = delete;
    SoundServerAddress& operator=(const SoundServerAddress&) = delete;

private:
    QByteArray m_before;
};

/// Takes connections and never says a word: what a hung sound server looks like.
class SilentServer {
public:
    explicit SilentServer(const QString& socketPath)
        : m_socket(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0))
    {
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        const QByteArray path = QFile::encodeName(socketPath);
        std::copy_n(path.constData(), path.size(), address.sun_path);
        listening = bind(m_socket, reinterpret_cast<sockaddr*>(&address), sizeof address) == 0
            && listen(m_socket, 8) == 0;
    }

    ~SilentServer() { close(m_socket); }

    SilentServer(const SilentServer&) = delete;
    SilentServer& operator=(const SilentServer&) = delete;

    bool listening = false;

private:
    int m_socket;
};

} // namespace tavrin::testing

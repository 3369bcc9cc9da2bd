#pragma once

#include "platform/linux/audio/SilentServer.h"
#include "support/ChildProcess.h"

#include <QTemporaryDir>

#include <memory>
#include <thread>

namespace tavrin::testing {

/// A PulseAudio of the test's own, which may be killed, stopped and taken apart. Sound clients made
/// while it lives find it. It has one microphone, "mic", and no output.
class PrivateSoundServer {
public:
    PrivateSoundServer() { start(); }

    void start()
    {
        m_process = std::make_unique<ChildProcess>("env",
            QStringList{"-u", "DISPLAY",
                "DBUS_SESSION_BUS_ADDRESS=disabled:", "HOME=" + m_folder.path(),
                "XDG_RUNTIME_DIR=" + m_folder.path(), "PULSE_RUNTIME_PATH=" + m_folder.path(),
                "pulseaudio", "-n", "--daemonize=no", "--exit-idle-time=-1", "--log-level=error",
                "-L", "module-native-protocol-unix auth-anonymous=1 socket=" + m_socket, "-L",
                "module-null-source source_name=mic"});
        ready = runs("info");
        for (int i = 0; i < 100 && !ready; ++i) {
            std::this_thread::sleep_for(std::chrono::milliseconds(50));
            ready = runs("info");
        }
    }

    void kill() { m_process->kill(); }

    void suspend() { m_process->suspend(); }

    void resume() { m_process->resume(); }

    /// Runs pactl; whether it succeeded.
    [[nodiscard]] bool runs(const QString& command, const QStringList& arguments = {}) const
    {
        const QStringList call{"pactl", "-s", "unix:" + m_socket, command};
        return ChildProcess(
                   "sh", QStringList{"-c", "exec \"$@\" >/dev/null 2>&1", "sh"} + call + arguments)
                   .wait()
            == 0;
    }

    bool ready = false;

private:
    QTemporaryDir m_folder;
    QString m_socket = m_folder.filePath("socket");
    SoundServerAddress m_address{m_socket};
    std::unique_ptr<ChildProcess> m_process;
};

} // namespace tavrin::testing

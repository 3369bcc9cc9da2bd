#pragma once

#include "platform/linux/audio/SilentServer.h"
#include "support/ChildProcess.h"

#include <QTemporaryDir>

#include <functional>
#include <thread>

namespace tavrin::testing {

/// A sound server of the test's own, which may be killed, stopped and taken apart. Sound clients
/// made while it lives find it. It has one microphone, "mic".
class PrivateSoundServer {
public:
    virtual ~PrivateSoundServer() = default;

    PrivateSoundServer(const PrivateSoundServer&) = delete;
    PrivateSoundServer& operator=(const PrivateSoundServer&) = delete;

    /// Whether the microphone is there within the time that this may take.
    virtual bool start() = 0;

    virtual void kill() = 0;

    virtual void suspend() = 0;

    virtual void resume() = 0;

    virtual bool addMicrophone(const QString& name, const QString& description) = 0;

    /// As if all were unplugged.
    virtual bool removeMicrophones() = 0;

    virtual bool addOutput(const QString& name) = 0;

    bool mute(const QString& source, bool muted)
    {
        return runs({"set-source-mute", source, muted ? "1" : "0"});
    }

    bool setVolume(const QString& source, const QString& volume)
    {
        return runs({"set-source-volume", source, volume});
    }

    /// Makes this source, which may be any, the default one.
    virtual bool makeDefault(const QString& source) = 0;

protected:
    PrivateSoundServer() = default;

    [[nodiscard]] QString folder() const { return m_folder.path(); }

    [[nodiscard]] QString socket() const { return m_socket; }

    /// A part of the server, with no way to the sound of the desktop that the test runs on.
    [[nodiscard]] std::unique_ptr<ChildProcess> launch(const QStringList& command) const
    {
        return std::make_unique<ChildProcess>("env",
            QStringList{"-u", "DISPLAY", "-u", "PIPEWIRE_RUNTIME_DIR",
                "DBUS_SESSION_BUS_ADDRESS=unix:path=" + m_folder.filePath("bus"),
                "HOME=" + m_folder.path(), "XDG_RUNTIME_DIR=" + m_folder.path(),
                "XDG_CONFIG_HOME=" + m_folder.filePath("config"),
                "XDG_STATE_HOME=" + m_folder.filePath("state"),
                "PULSE_RUNTIME_PATH=" + QFileInfo(m_socket).path()}
                + command);
    }

    /// Runs pactl; whether it succeeded.
    [[nodiscard]] bool runs(const QStringList& arguments) const
    {
        const QStringList call{"pactl", "-s", "unix:" + m_socket};
        return ChildProcess(
                   "sh", QStringList{"-c", "exec \"$@\" >/dev/null 2>&1", "sh"} + call + arguments)
                   .wait()
            == 0;
    }

    /// Whether the condition holds within twenty seconds.
    static bool comesTrue(const std::function<bool()>& condition)
    {
        const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(20);
        while (!condition() && std::chrono::steady_clock::now() < deadline)
            std::this_thread::sleep_for(std::chrono::milliseconds(20));
        return condition();
    }

private:
    QTemporaryDir m_folder;
    QString m_socket = m_folder.filePath("pulse/native");
    SoundServerAddress m_address{m_socket};
};

} // namespace tavrin::testing

#pragma once

#include "platform/linux/audio/PrivateSoundServer.h"

namespace tavrin::testing {

/// PipeWire, its session manager, and the server in PulseAudio's place, which is the one that sound
/// clients talk to. It has an output of its own while there is no other.
class PrivatePipeWire final : public PrivateSoundServer {
public:
    bool start() override
    {
        startDaemon();
        startFront();
        return addMicrophone("mic", "Microphone") && makeDefault("mic");
    }

    void kill() override
    {
        killDaemon();
        m_front->kill();
    }

    /// PipeWire and its session manager, which cannot live without it.
    void startDaemon()
    {
        if (!m_bus) {
            m_bus = launch(quietly("dbus-daemon",
                {"--session", "--nofork", "--nopidfile",
                    "--address=unix:path=" + folder() + "/bus"}));
            comesTrue([this] { return QFile::exists(folder() + "/bus"); });
        }
        QFile::remove(folder() + "/pipewire-0"); // Of one that was killed.
        m_daemon = launch(quietly("pipewire"));
        comesTrue([this] { return QFile::exists(folder() + "/pipewire-0"); });
        startManager();
    }

    void killDaemon()
    {
        m_daemon->kill();
        m_manager->kill();
    }

    void startManager() { m_manager = launch(quietly("wireplumber")); }

    void killManager() { m_manager->kill(); }

    void suspendManager() { m_manager->suspend(); }

    void resumeManager() { m_manager->resume(); }

    void startFront() { m_front = launch(quietly("pipewire-pulse")); }

    void killFront() { m_front->kill(); }

    void suspend() override { m_front->suspend(); }

    void resume() override { m_front->resume(); }

    void suspendDaemon() { m_daemon->suspend(); }

    void resumeDaemon() { m_daemon->resume(); }

    bool addMicrophone(const QString& name, const QString& description) override
    {
        return addDevice("Audio/Source/Virtual", name, description) && comesTrue([&] {
            return runs({"get-source-volume", name});
        });
    }

    bool removeMicrophones() override { return runs({"unload-module", "module-null-sink"}); }

    bool addOutput(const QString& name) override
    {
        return addDevice("Audio/Sink", name, name) && comesTrue([&] {
            return runs({"get-sink-volume", name});
        });
    }

    bool makeDefault(const QString& source) override
    {
        // The session manager may not be there yet.
        return comesTrue([&] { return runs({"set-default-source", source}); });
    }

private:
    bool addDevice(const QString& kind, const QString& name, const QString& description)
    {
        // The server may just have been started.
        return comesTrue([this] { return runs({"info"}); })
            && runs({"load-module", "module-null-sink", "media.class=" + kind, "sink_name=" + name,
                "channels=1", "rate=16000",
                QStringLiteral(R"(sink_properties=device.description="%1")").arg(description)});
    }

    /// For those that complain about whatever this machine has not.
    static QStringList quietly(const QString& program, const QStringList& arguments = {})
    {
        return QStringList{"sh", "-c", R"(exec "$0" "$@" >/dev/null 2>&1)", program} + arguments;
    }

    std::unique_ptr<ChildProcess> m_bus;
    std::unique_ptr<ChildProcess> m_daemon;
    std::unique_ptr<ChildProcess> m_manager;
    std::unique_ptr<ChildProcess> m_front;
};

} // namespace tavrin::testing

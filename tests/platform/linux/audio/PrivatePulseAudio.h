#pragma once

#include "platform/linux/audio/PrivateSoundServer.h"

#include <QDir>

namespace tavrin::testing {

/// PulseAudio, without an output until one is added.
class PrivatePulseAudio final : public PrivateSoundServer {
public:
    bool start() override
    {
        QDir().mkpath(folder() + "/pulse");
        m_process = launch(
            {"pulseaudio", "-n", "--daemonize=no", "--exit-idle-time=-1", "--log-level=error", "-L",
                "module-native-protocol-unix auth-anonymous=1 socket=" + socket(), "-L",
                "module-null-source source_name=mic"});
        return comesTrue([this] { return runs({"info"}); });
    }

    void kill() override { m_process->kill(); }

    void suspend() override { m_process->suspend(); }

    void resume() override { m_process->resume(); }

    bool addMicrophone(const QString& name, const QString& description) override
    {
        return runs({"load-module", "module-null-source", "source_name=" + name,
            "description=\"" + description + '"'});
    }

    bool removeMicrophones() override { return runs({"unload-module", "module-null-source"}); }

    bool addOutput(const QString& name) override
    {
        return runs({"load-module", "module-null-sink", "sink_name=" + name});
    }

    bool makeDefault(const QString& source) override
    {
        return runs({"set-default-source", source});
    }

private:
    std::unique_ptr<ChildProcess> m_process;
};

} // namespace tavrin::testing

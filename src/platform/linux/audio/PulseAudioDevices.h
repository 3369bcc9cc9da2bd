#pragma once

#include "platform/audio/AudioDevices.h"
#include "platform/linux/audio/PulseConnection.h"

#include <QByteArray>
#include <QHash>

#include <map>
#include <utility>

namespace tavrin {

/// The sources and sinks of the sound server. Ids stay the same while the program runs, also when
/// the device or the server goes and comes back.
class PulseAudioDevices final : public AudioDevices {
public:
    explicit PulseAudioDevices(std::shared_ptr<PulseConnection> connection);

    [[nodiscard]] QList<AudioDeviceId> devices() override;
    [[nodiscard]] std::optional<int> inputChannels(AudioDeviceId device) override;
    [[nodiscard]] std::optional<QString> name(AudioDeviceId device) override;
    [[nodiscard]] std::optional<QString> uid(AudioDeviceId device) override;

    [[nodiscard]] std::optional<bool> isInputSilent(AudioDeviceId device) override;

    [[nodiscard]] std::optional<AudioDeviceId> defaultInputDevice() override;
    bool setDefaultInputDevice(AudioDeviceId device) override;
    [[nodiscard]] std::optional<AudioDeviceId> defaultOutputDevice() override;

    [[nodiscard]] std::optional<quint32> outputMute(AudioDeviceId device) override;
    [[nodiscard]] bool isOutputMuteSettable(AudioDeviceId device) override;
    bool setOutputMute(AudioDeviceId device, quint32 mute) override;

    /// Above 1.0 where the user amplifies.
    [[nodiscard]] std::optional<float> outputVolume(AudioDeviceId device) override;
    [[nodiscard]] bool isOutputVolumeSettable(AudioDeviceId device) override;
    bool setOutputVolume(AudioDeviceId device, float volume) override;

    /// What the server says about one device.
    struct Description {
        QByteArray name; ///< The server's: unique among sources, and among sinks.
        QString title;
        int channels = 0;
        bool isMonitor = false;
        bool isSilent = false; ///< Of a source: nothing but silence can come from it.
    };

private:
    enum class Kind { Source, Sink };
    using Deadline = PulseConnection::Deadline;

    [[nodiscard]] AudioDeviceId idOf(Kind kind, const QByteArray& name);
    [[nodiscard]] const Description* find(AudioDeviceId device);
    bool refresh(Deadline deadline);
    /// The server's name of a sink; empty when the id is not one.
    [[nodiscard]] QByteArray sinkName(AudioDeviceId device) const;
    [[nodiscard]] std::optional<QByteArray> defaultName(Kind kind, Deadline deadline);
    void waitForDefaultSource(const QByteArray& name, Deadline deadline);

    std::shared_ptr<PulseConnection> m_connection;

    std::map<std::pair<Kind, QByteArray>, AudioDeviceId> m_ids; ///< Ever seen; never reused.
    QHash<AudioDeviceId, std::pair<Kind, QByteArray>> m_names;

    QList<AudioDeviceId> m_order; ///< The server's, monitors left out.
    QHash<AudioDeviceId, Description> m_present;
    std::optional<quint64> m_seen; ///< changes() when the two were read.
};

} // namespace tavrin

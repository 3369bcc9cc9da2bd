#pragma once

#include "platform/audio/AudioRecorder.h"
#include "platform/linux/audio/PcmCapture.h"

#include <future>
#include <mutex>
#include <span>

namespace tavrin {

class AacFile;

/// Records the default source into an .m4a file. Blocks are measured, encoded and written on the
/// thread of the capture.
class PulseAudioRecorder final : public AudioRecorder {
public:
    PulseAudioRecorder(std::shared_ptr<PulseConnection> connection, QString path,
        const AudioRecorderSettings& settings);
    ~PulseAudioRecorder() override;

    PulseAudioRecorder(const PulseAudioRecorder&) = delete;
    PulseAudioRecorder& operator=(const PulseAudioRecorder&) = delete;

    void setMeteringEnabled(bool enabled) override { m_metering = enabled; }

    bool prepareToRecord() override;
    bool record() override;
    void pause() override;
    void stop() override;
    [[nodiscard]] Seconds currentTime() const override;
    void updateMeters() override;
    [[nodiscard]] float averagePower(int channel) const override;
    [[nodiscard]] Error failure() const override;

private:
    /// On the capture's thread.
    void add(std::span<const qint16> block);
    void fail(const Error& error);

    std::shared_ptr<PulseConnection> m_connection;
    QString m_path;
    AudioRecorderSettings m_settings;
    bool m_metering = false;
    bool m_stopped = false;
    float m_averagePower;

    std::unique_ptr<AacFile> m_file; ///< While capturing, the capture's thread writes it.

    /// Guards what both threads use.
    mutable std::mutex m_mutex;
    qint64 m_samples = 0; ///< In the file.
    double m_energy = 0; ///< Sum of squares since the last updateMeters().
    qint64 m_measured = 0; ///< Samples in that sum.
    Error m_failure;

    std::unique_ptr<PcmCapture> m_capture; // Last: its thread uses all of the above.
};

class PulseAudioRecorders final : public AudioRecorders {
public:
    explicit PulseAudioRecorders(std::shared_ptr<PulseConnection> connection)
        : m_connection(std::move(connection))
    {
    }

    void warmUp() override;

    /// Only AAC of 16 kHz in mono can be recorded.
    [[nodiscard]] Result<std::unique_ptr<AudioRecorder>> createRecorder(
        const QString& path, const AudioRecorderSettings& settings) override;

private:
    std::shared_ptr<PulseConnection> m_connection;
    std::future<bool> m_encoder; ///< Being loaded; waits for that when it is destroyed.
};

} // namespace tavrin

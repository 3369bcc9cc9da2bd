#include "platform/linux/audio/PulseAudioRecorder.h"

#include "base/Log.h"
#include "platform/linux/audio/AacFile.h"
#include "platform/linux/audio/AudioErrors.h"
#include "platform/linux/audio/Libav.h"
#include "platform/linux/audio/RecordingTexts.h"

#include <QFileInfo>

#include <algorithm>
#include <cmath>
#include <numeric>

namespace tavrin {
namespace {

constexpr quint32 aac = 1633772320; // 'aac '
constexpr int highestQuality = 127;
constexpr float silence = -160; // dBFS
constexpr double fullScale = 32'768;

enum ErrorCode { ImpossibleSettings = 31, ImpossiblePath = 32 };

double energyOf(std::span<const qint16> block)
{
    // Whole numbers: a block of a minute stays far below their limit.
    const auto sum = std::transform_reduce(block.begin(), block.end(), qint64{0}, std::plus<>(),
        [](qint16 sample) { return qint64{sample} * sample; });
    return static_cast<double>(sum);
}

float decibels(double meanEnergy)
{
    if (meanEnergy <= 0)
        return silence;
    const double level = 10 * std::log10(meanEnergy / (fullScale * fullScale));
    return std::clamp(static_cast<float>(level), silence, 0.0F);
}

} // namespace

PulseAudioRecorder::PulseAudioRecorder(std::shared_ptr<PulseConnection> connection, QString path,
    const AudioRecorderSettings& settings)
    : m_connection(std::move(connection))
    , m_path(std::move(path))
    , m_settings(settings)
    , m_averagePower(silence)
{
}

PulseAudioRecorder::~PulseAudioRecorder()
{
    stop();
}

bool PulseAudioRecorder::prepareToRecord()
{
    if (m_stopped)
        return false;
    if (m_capture)
        return true;
    auto capture = PcmCapture::open(*m_connection,
        {[this](std::span<const qint16> block) { add(block); },
            [this](const Error& error) { fail(error); }});
    if (!capture) {
        fail(capture.error());
        return false;
    }
    // The device comes to life while the encoder is made.
    auto file = AacFile::create(m_path, m_settings.encoderAudioQuality);
    if (!file) {
        fail(file.error());
        return false;
    }
    m_file = std::move(*file);
    m_capture = std::move(*capture);
    return true;
}

bool PulseAudioRecorder::record()
{
    if (!prepareToRecord() || failure() != Error{})
        return false;
    const Error error = m_capture->start();
    if (error != Error{})
        fail(error);
    return error == Error{};
}

void PulseAudioRecorder::pause()
{
    if (m_capture)
        m_capture->pause();
}

void PulseAudioRecorder::stop()
{
    m_stopped = true;
    m_capture.reset(); // Everything captured is in the file's hands when this returns.
    m_file.reset();
}

Seconds PulseAudioRecorder::currentTime() const
{
    const std::lock_guard lock(m_mutex);
    return m_stopped ? Seconds{0} : Seconds{static_cast<double>(m_samples) / AacFile::sampleRate};
}

void PulseAudioRecorder::updateMeters()
{
    if (!m_metering)
        return;
    const std::lock_guard lock(m_mutex);
    m_averagePower =
        m_measured > 0 ? decibels(m_energy / static_cast<double>(m_measured)) : silence;
    m_energy = 0;
    m_measured = 0;
}

float PulseAudioRecorder::averagePower(int channel) const
{
    return channel == 0 ? m_averagePower : silence;
}

Error PulseAudioRecorder::failure() const
{
    const std::lock_guard lock(m_mutex);
    return m_failure;
}

void PulseAudioRecorder::add(std::span<const qint16> block)
{
    if (failure() != Error{})
        return;
    const Error error = m_file->add(block);
    if (error != Error{}) {
        fail(error);
        return;
    }
    const std::lock_guard lock(m_mutex);
    m_samples += static_cast<qint64>(block.size());
    m_energy += energyOf(block);
    m_measured += static_cast<qint64>(block.size());
}

void PulseAudioRecorder::fail(const Error& error)
{
    qCWarning(log::platform) << "recording failed, code" << error.code;
    const std::lock_guard lock(m_mutex);
    if (m_failure == Error{})
        m_failure = error;
}

void PulseAudioRecorders::warmUp()
{
    m_connection->warmUp();
    m_encoder = std::async(std::launch::async, libav::load);
}

Result<std::unique_ptr<AudioRecorder>> PulseAudioRecorders::createRecorder(
    const QString& path, const AudioRecorderSettings& settings)
{
    if (settings.formatId != aac || settings.sampleRate != AacFile::sampleRate
        || settings.numberOfChannels != 1 || settings.encoderAudioQuality < 0
        || settings.encoderAudioQuality > highestQuality)
        return tavrin::failure(audioError(ImpossibleSettings, texts::recordingFormatUnknown));
    if (path.isEmpty() || !QFileInfo(QFileInfo(path).absolutePath()).isDir())
        return tavrin::failure(audioError(ImpossiblePath, texts::cannotCreateRecording));
    return std::make_unique<PulseAudioRecorder>(m_connection, path, settings);
}

} // namespace tavrin

#include "platform/linux/audio/PulseSoundPlayer.h"

#include "base/Log.h"
#include "platform/linux/audio/PulsePlayback.h"

#include <QFile>

#include <algorithm>
#include <cmath>

namespace tavrin {
namespace {

constexpr qint64 largestFile = qint64{16} * 1024 * 1024;

class PulseSound final : public Sound {
public:
    PulseSound(std::shared_ptr<PulsePlayback> playback, PcmSound sound)
        : m_playback(std::move(playback))
        , m_sound(std::move(sound))
    {
    }

    ~PulseSound() override { m_playback->stop(m_stream); }

    PulseSound(const PulseSound&) = delete;
    PulseSound& operator=(const PulseSound&) = delete;

    void stop() override { m_playback->stop(m_stream); }

    void setCurrentTime(Seconds position) override
    {
        const double frames =
            std::clamp(position.count(), 0.0, 3600.0) * static_cast<double>(m_sound.sampleRate);
        m_start = static_cast<std::size_t>(frames) * static_cast<std::size_t>(m_sound.channels);
    }

    void setVolume(float volume) override { m_volume = std::clamp(volume, 0.0F, 1.0F); }

    void play() override
    {
        m_playback->stop(m_stream);
        PcmSound shaped{m_sound.sampleRate, m_sound.channels, {}};
        const std::size_t start = std::min(m_start, m_sound.samples.size());
        shaped.samples.reserve(m_sound.samples.size() - start);
        for (std::size_t i = start; i < m_sound.samples.size(); ++i)
            shaped.samples.push_back(static_cast<qint16>(
                std::lround(static_cast<float>(m_sound.samples[i]) * m_volume)));
        if (!shaped.samples.empty())
            m_stream = m_playback->play(std::move(shaped));
    }

private:
    std::shared_ptr<PulsePlayback> m_playback;
    PcmSound m_sound;
    std::size_t m_start = 0; // Index of the first sample to play.
    float m_volume = 1;
    PulsePlayback::StreamId m_stream = 0;
};

} // namespace

PulseSoundPlayer::PulseSoundPlayer(QString folder)
    : m_folder(std::move(folder))
{
}

PulseSoundPlayer::~PulseSoundPlayer() = default;

std::unique_ptr<Sound> PulseSoundPlayer::soundNamed(const QString& name)
{
    QFile file(m_folder + u'/' + name + QStringLiteral(".wav"));
    if (!file.open(QIODevice::ReadOnly) || file.size() > largestFile) {
        qCWarning(log::platform) << "There is no sound" << name;
        return nullptr;
    }
    auto sound = parseWav(file.readAll());
    if (!sound) {
        qCWarning(log::platform) << "The file of the sound" << name << "is damaged";
        return nullptr;
    }
    if (!m_playback)
        m_playback = std::make_shared<PulsePlayback>();
    return std::make_unique<PulseSound>(m_playback, std::move(*sound));
}

} // namespace tavrin

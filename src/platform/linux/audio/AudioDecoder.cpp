#include "platform/linux/audio/AudioDecoder.h"

#include "platform/linux/audio/AudioErrors.h"
#include "platform/linux/audio/Libav.h"
#include "platform/linux/audio/RecordingTexts.h"

#include <QByteArrayView>
#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <vector>

namespace tavrin {

using namespace libav;

namespace {

constexpr int lowestRate = 4'000; // Below it the resampled block would outgrow its source too far.
constexpr int highestRate = 768'000;
constexpr int mostChannels = 64;
constexpr unsigned mostStreams = 32;
constexpr int mostErrorsInARow = 64; // Damaged packets are skipped; a file of nothing else is not.

// Containers of sound only: none that refers to other files.
constexpr const char* containers = "mov,wav,w64,flac,ogg,mp3,aac,matroska,aiff,caf";

Error error(AudioDecoder::ErrorCode code)
{
    switch (code) {
    case AudioDecoder::CannotOpen:
        return audioError(code, texts::cannotOpenRecording);
    case AudioDecoder::Empty:
        return audioError(code, texts::emptyRecording);
    case AudioDecoder::Damaged:
        return audioError(code, texts::damagedRecording);
    case AudioDecoder::TooLong:
        return audioError(code, texts::recordingTooLong);
    }
    return {};
}

int readFile(void* file, std::uint8_t* buffer, int size)
{
    const qint64 count = static_cast<QFile*>(file)->read(reinterpret_cast<char*>(buffer), size);
    if (count < 0)
        return AVERROR(EIO);
    return count == 0 ? AVERROR_EOF : static_cast<int>(count);
}

std::int64_t seekFile(void* opaque, std::int64_t offset, int whence)
{
    auto* file = static_cast<QFile*>(opaque);
    if ((whence & ~AVSEEK_FORCE) == AVSEEK_SIZE)
        return file->size();
    const std::int64_t target = soughtPosition(offset, whence, file->pos(), file->size());
    return target >= 0 && file->seek(target) ? target : AVERROR(EINVAL);
}

} // namespace

class AudioDecoder::Implementation {
public:
    explicit Implementation(Seconds longest)
        : m_longest(longest)
    {
    }

    [[nodiscard]] bool open(const QString& path);
    [[nodiscard]] bool findSound();
    [[nodiscard]] Result<std::span<const qint16>> read();

    [[nodiscard]] qint64 fileSize() const { return m_file.size(); }

private:
    enum class Step { Decoded, EndOfSound, Failed };

    [[nodiscard]] Step decodeFrame();
    [[nodiscard]] int feedDecoder();
    void cutPadding();
    [[nodiscard]] bool prepareResampler();
    [[nodiscard]] bool resample(const AVFrame* frame);

    Seconds m_longest;
    QFile m_file;
    libav::Io m_io;
    libav::InputFormat m_format; // After m_io: it reads through it until it is closed.
    libav::Codec m_codec;
    libav::Resampler m_resampler;
    libav::Packet m_packet{av_packet_alloc()};
    libav::Frame m_frame{av_frame_alloc()};
    int m_stream = -1;
    bool m_isMpeg4 = false;

    // What the resampler was made for; a stream may change in the middle.
    AVSampleFormat m_sampleFormat = AV_SAMPLE_FMT_NONE;
    int m_rate = 0;
    int m_channels = 0;

    std::vector<qint16> m_samples;
    qint64 m_total = 0;
    bool m_atEnd = false;
    bool m_sawDamage = false;
};

bool AudioDecoder::Implementation::open(const QString& path)
{
    // A named pipe would block, a device might never end.
    if (!QFileInfo(path).isFile())
        return false;
    m_file.setFileName(path);
    return m_file.open(QIODevice::ReadOnly);
}

bool AudioDecoder::Implementation::findSound()
{
    if (!libav::load())
        return false;
    libav::silenceLog();
    auto* buffer = static_cast<std::uint8_t*>(av_malloc(libav::ioBufferSize));
    m_io.reset(
        avio_alloc_context(buffer, libav::ioBufferSize, 0, &m_file, readFile, nullptr, seekFile));
    AVFormatContext* format = avformat_alloc_context();
    if (!m_io || !format)
        return false;
    format->pb = m_io.get();
    format->format_whitelist = av_strdup(containers);
    format->protocol_whitelist = av_strdup("none"); // A container cannot open anything further.
    format->max_streams = mostStreams;
    if (avformat_open_input(&format, nullptr, nullptr, nullptr) < 0)
        return false; // The library freed the context.
    m_format.reset(format);
    if (avformat_find_stream_info(format, nullptr) < 0)
        return false;

    m_isMpeg4 = QByteArrayView(format->iformat->name).startsWith("mov");
    const AVCodec* codec = nullptr;
    m_stream = av_find_best_stream(format, AVMEDIA_TYPE_AUDIO, -1, -1, &codec, 0);
    if (m_stream < 0 || !codec)
        return false;
    const AVStream* stream = format->streams[m_stream];
    m_codec.reset(avcodec_alloc_context3(codec));
    if (avcodec_parameters_to_context(m_codec.get(), stream->codecpar) < 0)
        return false;
    m_codec->pkt_timebase = stream->time_base;
    return avcodec_open2(m_codec.get(), codec, nullptr) >= 0;
}

Result<std::span<const qint16>> AudioDecoder::Implementation::read()
{
    m_samples.clear();
    while (m_samples.empty() && !m_atEnd) {
        switch (decodeFrame()) {
        case Step::Decoded:
            if (!resample(m_frame.get()))
                return failure(error(Damaged));
            break;
        case Step::EndOfSound:
            m_atEnd = true;
            if (m_resampler && !resample(nullptr))
                return failure(error(Damaged));
            break;
        case Step::Failed:
            return failure(error(Damaged));
        }
    }
    m_total += static_cast<qint64>(m_samples.size());
    if (m_total == 0 && m_sawDamage)
        return failure(error(Damaged));
    if (Seconds(static_cast<double>(m_total) / sampleRate) > m_longest)
        return failure(error(TooLong));
    return std::span<const qint16>(m_samples);
}

AudioDecoder::Implementation::Step AudioDecoder::Implementation::decodeFrame()
{
    for (int errors = 0; errors < mostErrorsInARow;) {
        const int received = avcodec_receive_frame(m_codec.get(), m_frame.get());
        if (received == 0) {
            cutPadding();
            return Step::Decoded;
        }
        if (received == AVERROR_EOF)
            return Step::EndOfSound;
        if (received != AVERROR(EAGAIN) || feedDecoder() < 0) {
            m_sawDamage = true;
            ++errors;
        }
    }
    // Nothing but damage from here on: the sound before it counts.
    return m_total > 0 ? Step::EndOfSound : Step::Failed;
}

/// Gives the decoder the next packet, or the end.
int AudioDecoder::Implementation::feedDecoder()
{
    while (true) {
        const int got = av_read_frame(m_format.get(), m_packet.get());
        if (got < 0) {
            m_sawDamage |= got != AVERROR_EOF;
            return avcodec_send_packet(m_codec.get(), nullptr);
        }
        const bool ours = m_packet->stream_index == m_stream;
        const int sent = ours ? avcodec_send_packet(m_codec.get(), m_packet.get()) : 0;
        av_packet_unref(m_packet.get());
        if (ours)
            return sent;
    }
}

/// The last frame of an MPEG-4 file is filled up to its full length; only its duration tells.
void AudioDecoder::Implementation::cutPadding()
{
    if (!m_isMpeg4 || m_frame->pkt_duration <= 0 || m_frame->sample_rate <= 0)
        return;
    const std::int64_t samples = av_rescale_q(
        m_frame->pkt_duration, m_codec->pkt_timebase, AVRational{1, m_frame->sample_rate});
    if (samples > 0 && samples < m_frame->nb_samples)
        m_frame->nb_samples = static_cast<int>(samples);
}

bool AudioDecoder::Implementation::prepareResampler()
{
    const auto format = static_cast<AVSampleFormat>(m_frame->format);
    const int channels = m_frame->ch_layout.nb_channels;
    if (m_resampler && format == m_sampleFormat && m_frame->sample_rate == m_rate
        && channels == m_channels)
        return true;
    if (m_frame->sample_rate < lowestRate || m_frame->sample_rate > highestRate || channels < 1
        || channels > mostChannels)
        return false;
    m_sampleFormat = format;
    m_rate = m_frame->sample_rate;
    m_channels = channels;

    AVChannelLayout mono = AV_CHANNEL_LAYOUT_MONO;
    SwrContext* resampler = nullptr;
    const int allocated = swr_alloc_set_opts2(&resampler, &mono, AV_SAMPLE_FMT_S16, sampleRate,
        &m_frame->ch_layout, format, m_rate, 0, nullptr);
    m_resampler.reset(resampler);
    return allocated >= 0 && swr_init(resampler) >= 0;
}

/// Appends the frame, or what the resampler still holds when there is none.
bool AudioDecoder::Implementation::resample(const AVFrame* frame)
{
    if (frame && !prepareResampler())
        return false;
    const int count = frame ? frame->nb_samples : 0;
    const int capacity = swr_get_out_samples(m_resampler.get(), count);
    if (capacity <= 0)
        return capacity == 0;
    m_samples.resize(static_cast<std::size_t>(capacity));
    auto* output = reinterpret_cast<std::uint8_t*>(m_samples.data());
    const int converted = swr_convert(m_resampler.get(), &output, capacity,
        frame ? const_cast<const std::uint8_t**>(frame->extended_data) : nullptr, count);
    m_samples.resize(static_cast<std::size_t>(std::max(converted, 0)));
    return converted >= 0;
}

AudioDecoder::AudioDecoder(std::unique_ptr<Implementation> implementation)
    : m_implementation(std::move(implementation))
{
}

AudioDecoder::~AudioDecoder() = default;
AudioDecoder::AudioDecoder(AudioDecoder&&) noexcept = default;
AudioDecoder& AudioDecoder::operator=(AudioDecoder&&) noexcept = default;

bool AudioDecoder::warmUp()
{
    return libav::load();
}

Result<AudioDecoder> AudioDecoder::open(const QString& path, Seconds longest)
{
    auto implementation = std::make_unique<Implementation>(longest);
    if (!implementation->open(path))
        return failure(error(CannotOpen));
    if (implementation->fileSize() == 0)
        return failure(error(Empty));
    if (!implementation->findSound())
        return failure(error(Damaged));
    return AudioDecoder(std::move(implementation));
}

Result<std::span<const qint16>> AudioDecoder::read()
{
    return m_implementation->read();
}

} // namespace tavrin

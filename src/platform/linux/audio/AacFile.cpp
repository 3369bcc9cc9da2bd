#include "platform/linux/audio/AacFile.h"

#include "platform/linux/audio/AudioErrors.h"
#include "platform/linux/audio/Libav.h"
#include "platform/linux/audio/RecordingTexts.h"
#include "platform/linux/audio/ReservedFile.h"

#include <algorithm>

namespace tavrin {

using namespace libav;

namespace {

// The index that ends the file: its fixed parts, and what each frame of 64 ms adds at most.
constexpr std::int64_t indexBytes = 8'192;
constexpr std::int64_t indexBytesPerFrame = 24;

Error error(AacFile::ErrorCode code)
{
    switch (code) {
    case AacFile::CannotCreate:
        return audioError(code, texts::cannotCreateRecording);
    case AacFile::DiskFull:
        return audioError(code, texts::diskFull);
    case AacFile::EncodingFailed:
        return audioError(code, texts::encodingFailed);
    }
    return {};
}

/// Bits per second for an `AVEncoderAudioQualityKey`; speech at 16 kHz gains nothing above.
std::int64_t bitRate(int quality)
{
    constexpr int low = 32;
    constexpr int medium = 64;
    if (quality <= low)
        return 24'000;
    return quality <= medium ? 32'000 : 48'000;
}

int writeFile(void* file, std::uint8_t* bytes, int count)
{
    return static_cast<ReservedFile*>(file)->write(bytes, count) ? count : AVERROR(ENOSPC);
}

std::int64_t seekFile(void* opaque, std::int64_t offset, int whence)
{
    auto* file = static_cast<ReservedFile*>(opaque);
    if ((whence & ~AVSEEK_FORCE) == AVSEEK_SIZE)
        return file->size();
    const std::int64_t target = soughtPosition(offset, whence, file->position(), file->size());
    if (target < 0)
        return AVERROR(EINVAL);
    file->seek(target);
    return target;
}

} // namespace

class AacFile::Implementation {
public:
    explicit Implementation(const QString& path)
        : m_file(path)
    {
    }

    [[nodiscard]] bool open(int quality);
    Error add(std::span<const qint16> samples);
    void finish();

private:
    [[nodiscard]] bool openEncoder(int quality);
    [[nodiscard]] bool openContainer();
    Error encodeFrame();
    Error writePackets();
    [[nodiscard]] bool hasRoomFor(int bytes);

    ReservedFile m_file;
    libav::Io m_io;
    libav::OutputFormat m_format;
    libav::Codec m_codec;
    libav::Frame m_frame{av_frame_alloc()};
    libav::Packet m_packet{av_packet_alloc()};
    AVStream* m_stream = nullptr; ///< Of m_format.

    int m_filled = 0; ///< Samples in m_frame so far.
    std::int64_t m_encoded = 0; ///< Samples given to the encoder.
    std::int64_t m_packets = 0;
    Error m_error;
    bool m_finished = false;
};

bool AacFile::Implementation::open(int quality)
{
    if (!libav::load())
        return false;
    libav::silenceLog();
    return m_file.isOpen() && openEncoder(quality) && openContainer();
}

bool AacFile::Implementation::openEncoder(int quality)
{
    const AVCodec* codec = avcodec_find_encoder(AV_CODEC_ID_AAC);
    if (!codec)
        return false;
    m_codec.reset(avcodec_alloc_context3(codec));
    m_codec->sample_rate = sampleRate;
    m_codec->sample_fmt = AV_SAMPLE_FMT_FLTP;
    m_codec->bit_rate = bitRate(quality);
    m_codec->profile = FF_PROFILE_AAC_LOW;
    m_codec->ch_layout = AV_CHANNEL_LAYOUT_MONO;
    m_codec->time_base = {1, sampleRate};
    m_codec->flags |= AV_CODEC_FLAG_GLOBAL_HEADER;
    if (avcodec_open2(m_codec.get(), codec, nullptr) < 0)
        return false;
    m_frame->nb_samples = m_codec->frame_size;
    m_frame->format = m_codec->sample_fmt;
    m_frame->sample_rate = sampleRate;
    m_frame->ch_layout = AV_CHANNEL_LAYOUT_MONO;
    return av_frame_get_buffer(m_frame.get(), 0) >= 0;
}

bool AacFile::Implementation::openContainer()
{
    auto* buffer = static_cast<std::uint8_t*>(av_malloc(libav::ioBufferSize));
    m_io.reset(
        avio_alloc_context(buffer, libav::ioBufferSize, 1, &m_file, nullptr, writeFile, seekFile));
    AVFormatContext* format = nullptr;
    avformat_alloc_output_context2(&format, nullptr, "ipod", nullptr);
    m_format.reset(format);
    if (!m_io || !format)
        return false;
    format->pb = m_io.get();
    m_stream = avformat_new_stream(format, nullptr);
    if (!m_stream || avcodec_parameters_from_context(m_stream->codecpar, m_codec.get()) < 0)
        return false;
    m_stream->time_base = m_codec->time_base;
    // Lengths are rounded to this; the default would be milliseconds.
    AVDictionary* options = nullptr;
    av_dict_set_int(&options, "movie_timescale", sampleRate, 0);
    const bool written = hasRoomFor(0) && avformat_write_header(format, &options) >= 0;
    av_dict_free(&options);
    return written;
}

Error AacFile::Implementation::add(std::span<const qint16> samples)
{
    constexpr float fullScale = 32'768;
    while (!samples.empty() && m_error == Error{}) {
        // The encoder may still read the last frame: then this one gets memory of its own.
        if (m_filled == 0 && av_frame_make_writable(m_frame.get()) < 0)
            return m_error = error(EncodingFailed);
        const auto count =
            std::min(samples.size(), static_cast<std::size_t>(m_codec->frame_size - m_filled));
        float* target = reinterpret_cast<float*>(m_frame->data[0]) + m_filled;
        std::ranges::transform(samples.first(count), target,
            [](qint16 sample) { return static_cast<float>(sample) / fullScale; });
        m_filled += static_cast<int>(count);
        samples = samples.subspan(count);
        if (m_filled == m_codec->frame_size)
            m_error = encodeFrame();
    }
    return m_error;
}

Error AacFile::Implementation::encodeFrame()
{
    m_frame->nb_samples = m_filled;
    m_frame->pts = m_encoded;
    m_encoded += m_filled;
    m_filled = 0;
    if (avcodec_send_frame(m_codec.get(), m_frame.get()) < 0)
        return error(EncodingFailed);
    return writePackets();
}

Error AacFile::Implementation::writePackets()
{
    while (avcodec_receive_packet(m_codec.get(), m_packet.get()) == 0) {
        // Without room even the attempt would spoil the file: the library keeps half a packet.
        if (!hasRoomFor(m_packet->size)) {
            av_packet_unref(m_packet.get());
            return error(DiskFull);
        }
        // The encoder fills its last frame up; the file says how much of it is sound.
        m_packet->duration = std::min(m_packet->duration, m_encoded - m_packet->pts);
        if (m_packet->duration <= 0) {
            av_packet_unref(m_packet.get());
            continue;
        }
        ++m_packets;
        m_packet->stream_index = m_stream->index;
        av_packet_rescale_ts(m_packet.get(), m_codec->time_base, m_stream->time_base);
        if (av_write_frame(m_format.get(), m_packet.get()) < 0 || m_io->error < 0)
            return error(DiskFull);
        av_packet_unref(m_packet.get());
    }
    return {};
}

bool AacFile::Implementation::hasRoomFor(int bytes)
{
    return m_file.reserve(avio_seek(m_io.get(), 0, SEEK_CUR) + bytes + indexBytes
        + indexBytesPerFrame * (m_packets + 1));
}

void AacFile::Implementation::finish()
{
    if (std::exchange(m_finished, true))
        return;
    if (m_error == Error{} && m_filled > 0)
        m_error = encodeFrame();
    if (m_error == Error{} && avcodec_send_frame(m_codec.get(), nullptr) >= 0)
        m_error = writePackets();
    m_io->error = 0; // The library would not write the index after a failed write.
    av_write_trailer(m_format.get());
    avio_flush(m_io.get());
}

AacFile::AacFile(std::unique_ptr<Implementation> implementation)
    : m_implementation(std::move(implementation))
{
}

AacFile::~AacFile()
{
    finish();
}

Result<std::unique_ptr<AacFile>> AacFile::create(const QString& path, int quality)
{
    auto implementation = std::make_unique<Implementation>(path);
    if (!implementation->open(quality))
        return failure(error(CannotCreate));
    return std::unique_ptr<AacFile>(new AacFile(std::move(implementation)));
}

Error AacFile::add(std::span<const qint16> samples)
{
    return m_implementation->add(samples);
}

void AacFile::finish()
{
    m_implementation->finish();
}

} // namespace tavrin

#pragma once

#include "platform/linux/libraries/SharedLibrary.h"

#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <memory>

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libswresample/swresample.h>
}

/// libavcodec, libavformat and libswresample, and owners for their objects.
///
/// The libraries are loaded at the first call: they bring a hundred others along, which would cost
/// every start of the program more than all the rest of it. Their functions stand here under their
/// own names; `using namespace libav` puts them before those that would have to be linked.
namespace tavrin::libav {

// The number is that of the binary interface that the headers describe.
#define TAVRIN_TEXT(number) #number
#define TAVRIN_LIBAV_FILE(stem, version) stem ".so." TAVRIN_TEXT(version)
inline constinit const SharedLibrary avcodec{
    TAVRIN_LIBAV_FILE("libavcodec", LIBAVCODEC_VERSION_MAJOR), AVERROR(ENOSYS)};
inline constinit const SharedLibrary avformat{
    TAVRIN_LIBAV_FILE("libavformat", LIBAVFORMAT_VERSION_MAJOR), AVERROR(ENOSYS)};
inline constinit const SharedLibrary avutil{
    TAVRIN_LIBAV_FILE("libavutil", LIBAVUTIL_VERSION_MAJOR), AVERROR(ENOSYS)};
inline constinit const SharedLibrary swresample{
    TAVRIN_LIBAV_FILE("libswresample", LIBSWRESAMPLE_VERSION_MAJOR), AVERROR(ENOSYS)};
#undef TAVRIN_LIBAV_FILE
#undef TAVRIN_TEXT

/// Whether all of them are there. Loads them, which takes some 50 ms once. Any thread.
[[nodiscard]] inline bool load()
{
    return avcodec.load() && avformat.load() && avutil.load() && swresample.load();
}

// NOLINTBEGIN(readability-identifier-naming): the libraries' own names
TAVRIN_LIBRARY_FUNCTION(avcodec, av_packet_alloc)
TAVRIN_LIBRARY_FUNCTION(avcodec, av_packet_free)
TAVRIN_LIBRARY_FUNCTION(avcodec, av_packet_rescale_ts)
TAVRIN_LIBRARY_FUNCTION(avcodec, av_packet_unref)
TAVRIN_LIBRARY_FUNCTION(avcodec, avcodec_alloc_context3)
TAVRIN_LIBRARY_FUNCTION(avcodec, avcodec_find_encoder)
TAVRIN_LIBRARY_FUNCTION(avcodec, avcodec_free_context)
TAVRIN_LIBRARY_FUNCTION(avcodec, avcodec_open2)
TAVRIN_LIBRARY_FUNCTION(avcodec, avcodec_parameters_from_context)
TAVRIN_LIBRARY_FUNCTION(avcodec, avcodec_parameters_to_context)
TAVRIN_LIBRARY_FUNCTION(avcodec, avcodec_receive_frame)
TAVRIN_LIBRARY_FUNCTION(avcodec, avcodec_receive_packet)
TAVRIN_LIBRARY_FUNCTION(avcodec, avcodec_send_frame)
TAVRIN_LIBRARY_FUNCTION(avcodec, avcodec_send_packet)
TAVRIN_LIBRARY_FUNCTION(avformat, av_find_best_stream)
TAVRIN_LIBRARY_FUNCTION(avformat, av_read_frame)
TAVRIN_LIBRARY_FUNCTION(avformat, av_write_frame)
TAVRIN_LIBRARY_FUNCTION(avformat, av_write_trailer)
TAVRIN_LIBRARY_FUNCTION(avformat, avformat_alloc_context)
TAVRIN_LIBRARY_FUNCTION(avformat, avformat_alloc_output_context2)
TAVRIN_LIBRARY_FUNCTION(avformat, avformat_close_input)
TAVRIN_LIBRARY_FUNCTION(avformat, avformat_find_stream_info)
TAVRIN_LIBRARY_FUNCTION(avformat, avformat_free_context)
TAVRIN_LIBRARY_FUNCTION(avformat, avformat_new_stream)
TAVRIN_LIBRARY_FUNCTION(avformat, avformat_open_input)
TAVRIN_LIBRARY_FUNCTION(avformat, avformat_write_header)
TAVRIN_LIBRARY_FUNCTION(avformat, avio_alloc_context)
TAVRIN_LIBRARY_FUNCTION(avformat, avio_context_free)
TAVRIN_LIBRARY_FUNCTION(avformat, avio_flush)
TAVRIN_LIBRARY_FUNCTION(avformat, avio_seek)
TAVRIN_LIBRARY_FUNCTION(avutil, av_dict_free)
TAVRIN_LIBRARY_FUNCTION(avutil, av_dict_set_int)
TAVRIN_LIBRARY_FUNCTION(avutil, av_frame_alloc)
TAVRIN_LIBRARY_FUNCTION(avutil, av_frame_free)
TAVRIN_LIBRARY_FUNCTION(avutil, av_frame_get_buffer)
TAVRIN_LIBRARY_FUNCTION(avutil, av_frame_make_writable)
TAVRIN_LIBRARY_FUNCTION(avutil, av_freep)
TAVRIN_LIBRARY_FUNCTION(avutil, av_log_set_level)
TAVRIN_LIBRARY_FUNCTION(avutil, av_malloc)
TAVRIN_LIBRARY_FUNCTION(avutil, av_rescale_q)
TAVRIN_LIBRARY_FUNCTION(avutil, av_strdup)
TAVRIN_LIBRARY_FUNCTION(swresample, swr_alloc_set_opts2)
TAVRIN_LIBRARY_FUNCTION(swresample, swr_convert)
TAVRIN_LIBRARY_FUNCTION(swresample, swr_free)
TAVRIN_LIBRARY_FUNCTION(swresample, swr_get_out_samples)
TAVRIN_LIBRARY_FUNCTION(swresample, swr_init)

// NOLINTEND(readability-identifier-naming)

template <const auto& release>
struct ReleaseThroughPointer {
    template <class Object>
    void operator()(Object* object) const
    {
        release(&object);
    }
};

struct ReleaseIo {
    void operator()(AVIOContext* io) const
    {
        av_freep(&io->buffer); // The library may have replaced the buffer it was given.
        avio_context_free(&io);
    }
};

using InputFormat = std::unique_ptr<AVFormatContext, ReleaseThroughPointer<avformat_close_input>>;
using Codec = std::unique_ptr<AVCodecContext, ReleaseThroughPointer<avcodec_free_context>>;
using Frame = std::unique_ptr<AVFrame, ReleaseThroughPointer<av_frame_free>>;
using Packet = std::unique_ptr<AVPacket, ReleaseThroughPointer<av_packet_free>>;
using Resampler = std::unique_ptr<SwrContext, ReleaseThroughPointer<swr_free>>;
using Io = std::unique_ptr<AVIOContext, ReleaseIo>;

struct ReleaseOutputFormat {
    void operator()(AVFormatContext* format) const { avformat_free_context(format); }
};

using OutputFormat = std::unique_ptr<AVFormatContext, ReleaseOutputFormat>;

/// Bytes between the library and a file.
inline constexpr int ioBufferSize = 32'768;

/// Where a callback of an AVIOContext is asked to go in a file of this size, from this position;
/// may be negative. Not for AVSEEK_SIZE, which asks for the size.
[[nodiscard]] inline std::int64_t soughtPosition(
    std::int64_t offset, int whence, std::int64_t position, std::int64_t size)
{
    switch (whence & ~AVSEEK_FORCE) {
    case SEEK_CUR:
        return position + offset;
    case SEEK_END:
        return size + offset;
    default:
        return offset;
    }
}

/// The libraries write their complaints to stderr otherwise, file names included.
inline void silenceLog()
{
    av_log_set_level(AV_LOG_QUIET);
}

} // namespace tavrin::libav

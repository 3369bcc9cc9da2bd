#pragma once

#include <QString>

#include <memory>
#include <span>

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libswresample/swresample.h>
}

/// The objects of libavcodec, libavformat and libswresample with owners.
namespace tavrin::libav {

template <auto release>
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

/// The libraries write their complaints to stderr otherwise, file names included.
inline void silenceLog()
{
    av_log_set_level(AV_LOG_QUIET);
}

} // namespace tavrin::libav

#pragma once

#include <atomic>
#include <memory>
#include <type_traits>

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

enum class Library { AvCodec, AvFormat, AvUtil, SwResample };

/// The address of the function; null when the library, in the version this was built for, is not
/// there. Any thread.
void* resolve(Library library, const char* name);

/// Whether all libraries are there. Loads them, which takes some 50 ms once. Any thread.
[[nodiscard]] bool load();

template <class Signature>
class Function;

/// A function of a library. Without the library it returns null, nothing or AVERROR(ENOSYS).
template <class Return, class... Arguments>
class Function<Return(Arguments...)> {
public:
    constexpr Function(Library library, const char* name)
        : m_library(library)
        , m_name(name)
    {
    }

    Return operator()(Arguments... arguments) const
    {
        auto* function = m_function.load(std::memory_order_acquire);
        if (!function) {
            function = reinterpret_cast<Pointer>(resolve(m_library, m_name));
            m_function.store(function, std::memory_order_release);
        }
        if (function)
            return function(arguments...);
        if constexpr (std::is_same_v<Return, int>)
            return AVERROR(ENOSYS);
        else
            return Return();
    }

private:
    using Pointer = Return (*)(Arguments...);

    Library m_library;
    const char* m_name;
    mutable std::atomic<Pointer> m_function = nullptr;
};

/// The type for a function of the header, without the attributes that no template argument carries.
template <class Return, class... Arguments>
Function<Return(Arguments...)> like(Return (*)(Arguments...));

// NOLINTBEGIN(readability-identifier-naming,bugprone-macro-parentheses): the libraries' own names,
// which no parentheses may enclose where they are declared
#define TAVRIN_LIBAV(library, name)                                                                \
    inline constinit const decltype(like(&::name)) name{Library::library, #name};
TAVRIN_LIBAV(AvCodec, av_packet_alloc)
TAVRIN_LIBAV(AvCodec, av_packet_free)
TAVRIN_LIBAV(AvCodec, av_packet_rescale_ts)
TAVRIN_LIBAV(AvCodec, av_packet_unref)
TAVRIN_LIBAV(AvCodec, avcodec_alloc_context3)
TAVRIN_LIBAV(AvCodec, avcodec_find_encoder)
TAVRIN_LIBAV(AvCodec, avcodec_free_context)
TAVRIN_LIBAV(AvCodec, avcodec_open2)
TAVRIN_LIBAV(AvCodec, avcodec_parameters_from_context)
TAVRIN_LIBAV(AvCodec, avcodec_parameters_to_context)
TAVRIN_LIBAV(AvCodec, avcodec_receive_frame)
TAVRIN_LIBAV(AvCodec, avcodec_receive_packet)
TAVRIN_LIBAV(AvCodec, avcodec_send_frame)
TAVRIN_LIBAV(AvCodec, avcodec_send_packet)
TAVRIN_LIBAV(AvFormat, av_find_best_stream)
TAVRIN_LIBAV(AvFormat, av_read_frame)
TAVRIN_LIBAV(AvFormat, av_write_frame)
TAVRIN_LIBAV(AvFormat, av_write_trailer)
TAVRIN_LIBAV(AvFormat, avformat_alloc_context)
TAVRIN_LIBAV(AvFormat, avformat_alloc_output_context2)
TAVRIN_LIBAV(AvFormat, avformat_close_input)
TAVRIN_LIBAV(AvFormat, avformat_find_stream_info)
TAVRIN_LIBAV(AvFormat, avformat_free_context)
TAVRIN_LIBAV(AvFormat, avformat_new_stream)
TAVRIN_LIBAV(AvFormat, avformat_open_input)
TAVRIN_LIBAV(AvFormat, avformat_write_header)
TAVRIN_LIBAV(AvFormat, avio_alloc_context)
TAVRIN_LIBAV(AvFormat, avio_context_free)
TAVRIN_LIBAV(AvFormat, avio_flush)
TAVRIN_LIBAV(AvFormat, avio_seek)
TAVRIN_LIBAV(AvUtil, av_dict_free)
TAVRIN_LIBAV(AvUtil, av_dict_set_int)
TAVRIN_LIBAV(AvUtil, av_frame_alloc)
TAVRIN_LIBAV(AvUtil, av_frame_free)
TAVRIN_LIBAV(AvUtil, av_frame_get_buffer)
TAVRIN_LIBAV(AvUtil, av_frame_make_writable)
TAVRIN_LIBAV(AvUtil, av_freep)
TAVRIN_LIBAV(AvUtil, av_log_set_level)
TAVRIN_LIBAV(AvUtil, av_malloc)
TAVRIN_LIBAV(AvUtil, av_rescale_q)
TAVRIN_LIBAV(AvUtil, av_strdup)
TAVRIN_LIBAV(SwResample, swr_alloc_set_opts2)
TAVRIN_LIBAV(SwResample, swr_convert)
TAVRIN_LIBAV(SwResample, swr_free)
TAVRIN_LIBAV(SwResample, swr_get_out_samples)
TAVRIN_LIBAV(SwResample, swr_init)
#undef TAVRIN_LIBAV

// NOLINTEND(readability-identifier-naming,bugprone-macro-parentheses)

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

/// The libraries write their complaints to stderr otherwise, file names included.
inline void silenceLog()
{
    av_log_set_level(AV_LOG_QUIET);
}

} // namespace tavrin::libav

#include "platform/linux/audio/PulsePlayback.h"

#include "platform/linux/libraries/Libpulse.h"

#include <algorithm>

namespace tavrin {

using namespace libpulse;

namespace {

/// Holds the lock of libpulse's thread.
class Lock {
public:
    explicit Lock(pa_threaded_mainloop* loop)
        : m_loop(loop)
    {
        pa_threaded_mainloop_lock(m_loop);
    }

    ~Lock() { pa_threaded_mainloop_unlock(m_loop); }

    Lock(const Lock&) = delete;
    Lock& operator=(const Lock&) = delete;

private:
    pa_threaded_mainloop* m_loop;
};

} // namespace

PulsePlayback::PulsePlayback()
    : m_loop(pa_threaded_mainloop_new())
{
    m_running = pa_threaded_mainloop_start(m_loop) == 0;
}

PulsePlayback::~PulsePlayback()
{
    if (m_running)
        pa_threaded_mainloop_stop(m_loop);
    dropConnection();
    pa_threaded_mainloop_free(m_loop);
}

PulsePlayback::StreamId PulsePlayback::play(PcmSound sound)
{
    if (!m_running)
        return 0;
    const Lock lock(m_loop);
    ensureConnection();
    const StreamId id = ++m_lastId;
    Playing& playing = m_playing[id];
    playing.sound = std::move(sound);
    if (m_context && pa_context_get_state(m_context) == PA_CONTEXT_READY)
        start(playing);
    return id;
}

void PulsePlayback::stop(StreamId id)
{
    if (!m_running)
        return;
    const Lock lock(m_loop);
    if (const auto playing = m_playing.find(id); playing != m_playing.end())
        end(playing);
}

void PulsePlayback::ensureConnection()
{
    if (m_context && PA_CONTEXT_IS_GOOD(pa_context_get_state(m_context)))
        return;
    dropConnection();
    m_context = pa_context_new(pa_threaded_mainloop_get_api(m_loop), "Tavrin");
    pa_context_set_state_callback(
        m_context,
        [](pa_context*, void* self) { static_cast<PulsePlayback*>(self)->onContextState(); }, this);
    // Starting a server would wait for it; that is the desktop's affair.
    pa_context_connect(m_context, nullptr, PA_CONTEXT_NOAUTOSPAWN, nullptr);
}

void PulsePlayback::dropConnection()
{
    while (!m_playing.empty())
        end(m_playing.begin());
    if (!m_context)
        return;
    pa_context_set_state_callback(m_context, nullptr, nullptr);
    pa_context_disconnect(m_context);
    pa_context_unref(m_context);
    m_context = nullptr;
}

void PulsePlayback::start(Playing& playing)
{
    const pa_sample_spec format{PA_SAMPLE_S16NE, static_cast<quint32>(playing.sound.sampleRate),
        static_cast<quint8>(playing.sound.channels)};
    pa_proplist* properties = pa_proplist_new();
    pa_proplist_sets(properties, PA_PROP_MEDIA_ROLE, "event");
    playing.stream = pa_stream_new_with_proplist(m_context, "Tavrin", &format, nullptr, properties);
    pa_proplist_free(properties);
    if (!playing.stream)
        return;
    pa_stream_set_state_callback(
        playing.stream,
        [](pa_stream* stream, void* self) {
            static_cast<PulsePlayback*>(self)->onStreamState(stream);
        },
        this);
    // The server takes the whole sound at once and starts as soon as it has any of it.
    const auto bytes = static_cast<quint32>(playing.sound.samples.size() * sizeof(qint16));
    constexpr auto serversChoice = static_cast<quint32>(-1);
    const pa_buffer_attr buffer{serversChoice, bytes, 0, serversChoice, serversChoice};
    pa_stream_connect_playback(
        playing.stream, nullptr, &buffer, PA_STREAM_NOFLAGS, nullptr, nullptr);
}

void PulsePlayback::end(std::map<StreamId, Playing>::iterator playing)
{
    if (pa_stream* stream = playing->second.stream) {
        pa_stream_set_state_callback(stream, nullptr, nullptr);
        pa_stream_disconnect(stream);
        pa_stream_unref(stream);
    }
    m_playing.erase(playing);
}

void PulsePlayback::onContextState()
{
    if (pa_context_get_state(m_context) != PA_CONTEXT_READY)
        return;
    for (auto& [id, playing] : m_playing) {
        if (!playing.stream)
            start(playing);
    }
}

void PulsePlayback::onStreamState(pa_stream* stream)
{
    if (pa_stream_get_state(stream) != PA_STREAM_READY)
        return;
    const auto found = std::find_if(m_playing.begin(), m_playing.end(),
        [stream](const auto& entry) { return entry.second.stream == stream; });
    if (found == m_playing.end())
        return;
    const auto& samples = found->second.sound.samples;
    pa_stream_write(
        stream, samples.data(), samples.size() * sizeof(qint16), nullptr, 0, PA_SEEK_RELATIVE);
    pa_operation* drain = pa_stream_drain(
        stream,
        [](pa_stream* drained, int, void* self) {
            static_cast<PulsePlayback*>(self)->onDrained(drained);
        },
        this);
    if (drain)
        pa_operation_unref(drain);
}

void PulsePlayback::onDrained(pa_stream* stream)
{
    const auto found = std::find_if(m_playing.begin(), m_playing.end(),
        [stream](const auto& entry) { return entry.second.stream == stream; });
    if (found != m_playing.end())
        end(found);
}

} // namespace tavrin

#pragma once

#include "platform/linux/audio/WavSound.h"

#include <map>
#include <pulse/pulseaudio.h>

namespace tavrin {

/// A connection to the sound server with the streams that play over it. Main thread; the server's
/// answers arrive on a thread of libpulse, under its lock.
class PulsePlayback {
public:
    using StreamId = quint64;

    PulsePlayback();
    ~PulsePlayback();

    PulsePlayback(const PulsePlayback&) = delete;
    PulsePlayback& operator=(const PulsePlayback&) = delete;

    /// Plays @p sound as soon as the server is ready for it.
    StreamId play(PcmSound sound);

    /// Silences it at once. What has ended already is no longer known, which is fine.
    void stop(StreamId id);

private:
    struct Playing {
        PcmSound sound;
        pa_stream* stream = nullptr; // None while the connection is being made.
    };

    void ensureConnection();
    void dropConnection();
    void start(Playing& playing);
    void end(std::map<StreamId, Playing>::iterator playing);
    void onContextState();
    void onStreamState(pa_stream* stream);
    void onDrained(pa_stream* stream);

    pa_threaded_mainloop* m_loop;
    pa_context* m_context = nullptr;
    bool m_running = false;
    std::map<StreamId, Playing> m_playing;
    StreamId m_lastId = 0;
};

} // namespace tavrin

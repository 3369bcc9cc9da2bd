#pragma once

#include "platform/linux/audio/PcmCapture.h"

#include <memory>
#include <mutex>
#include <vector>

namespace bench {

/// Seconds of the monotonic clock.
[[nodiscard]] double now();

/// Listens to the microphone all the time and knows when each sample was heard.
class Reference {
public:
    Reference();

    [[nodiscard]] bool isListening() const { return m_capture != nullptr; }

    /// What was heard, and the time of its first sample.
    struct Heard {
        std::vector<qint16> samples;
        double since = 0;
    };

    [[nodiscard]] Heard heard() const;

private:
    void add(std::span<const qint16> block);

    mutable std::mutex m_mutex;
    Heard m_heard;
    tavrin::PulseConnection m_connection;
    std::unique_ptr<tavrin::PcmCapture> m_capture;
};

} // namespace bench

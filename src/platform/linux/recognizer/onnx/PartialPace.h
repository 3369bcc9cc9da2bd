#pragma once

#include "platform/linux/speech/engine/SpeechLevels.h"

#include <chrono>

namespace tavrin {

/// When a model that hears whole utterances looks at one that still goes on: once there is new
/// speech, and no more than half of the time.
class PartialPace {
public:
    using Time = std::chrono::steady_clock::time_point;

    void hear(std::span<const qint16> samples);

    [[nodiscard]] bool isDue(Time now) const;

    /// The model has looked, from @p begin to @p end.
    void looked(Time begin, Time end);

private:
    SpeechLevels m_unseen;
    Time m_next;
};

} // namespace tavrin

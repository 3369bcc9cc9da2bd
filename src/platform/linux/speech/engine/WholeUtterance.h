#pragma once

#include "platform/linux/speech/engine/SpeechEngine.h"
#include "platform/linux/speech/engine/SpeechEngineErrors.h"

#include <functional>
#include <utility>
#include <vector>

namespace tavrin {

/// Speech that is recognised as a whole, once it has ended.
class WholeUtterance final : public Utterance {
public:
    using Recognise = std::function<Result<QString>(std::span<const qint16> samples)>;

    /// @param recognise what everything that was said comes to; not called once @p stop is
    /// requested.
    WholeUtterance(Recognise recognise, std::stop_token stop)
        : m_recognise(std::move(recognise))
        , m_stop(std::move(stop))
    {
    }

    Result<void> feed(std::span<const qint16> samples) override
    {
        m_samples.insert(m_samples.end(), samples.begin(), samples.end());
        return {};
    }

    [[nodiscard]] QString partialText() const override { return {}; }

    [[nodiscard]] Result<QString> finish() override
    {
        if (m_stop.stop_requested())
            return failure(speechEngineError(SpeechEngineError::Cancelled));
        return m_recognise(m_samples);
    }

private:
    Recognise m_recognise;
    std::stop_token m_stop;
    std::vector<qint16> m_samples;
};

} // namespace tavrin

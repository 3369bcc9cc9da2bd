#pragma once

#include "platform/speech/SpeechRecognizer.h"

#include <QStringList>

#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <vector>

namespace tavrin::testing {

/// Collects what a recogniser reports from its own thread.
class HeardResults {
public:
    /// May be called after this is gone.
    [[nodiscard]] SpeechResultHandler handler() const
    {
        return [state = m_state](Result<SpeechResult> result) {
            const std::lock_guard lock(state->mutex);
            state->results.push_back(std::move(result));
            state->changed.notify_all();
        };
    }

    [[nodiscard]] std::vector<Result<SpeechResult>> all() const
    {
        const std::lock_guard lock(m_state->mutex);
        return m_state->results;
    }

    /// Blocks until something was reported that is final, or an error.
    [[nodiscard]] Result<SpeechResult> outcome() const
    {
        std::unique_lock lock(m_state->mutex);
        const bool came = m_state->changed.wait_for(
            lock, std::chrono::seconds{100}, [this] { return decided(); });
        return came ? m_state->results.back() : failure({"HeardResults", 0, "nothing came"});
    }

    /// Whether outcome() would return at once. The caller holds no lock.
    [[nodiscard]] bool hasOutcome() const
    {
        const std::lock_guard lock(m_state->mutex);
        return decided();
    }

    /// The text of the outcome; of an error, its domain and code.
    [[nodiscard]] QString text() const
    {
        const Result<SpeechResult> result = outcome();
        if (result)
            return result->formattedString;
        return QStringLiteral("%1 %2").arg(result.error().domain).arg(result.error().code);
    }

    [[nodiscard]] QStringList partialTexts() const
    {
        QStringList texts;
        for (const auto& result : all()) {
            if (result && !result->isFinal)
                texts.append(result->formattedString);
        }
        return texts;
    }

private:
    struct State {
        std::mutex mutex;
        std::condition_variable changed;
        // No QList: an implicitly shared one is read by one thread while the other still looks
        // whether it is shared.
        std::vector<Result<SpeechResult>> results;
    };

    [[nodiscard]] bool decided() const
    {
        return !m_state->results.empty()
            && (!m_state->results.back() || m_state->results.back()->isFinal);
    }

    std::shared_ptr<State> m_state = std::make_shared<State>();
};

} // namespace tavrin::testing

#pragma once

#include "base/Result.h"
#include "base/Seconds.h"
#include "platform/speech/SpeechRecognizer.h"

#include <QString>

#include <memory>
#include <span>
#include <stop_token>

namespace tavrin {

/// Samples a second of everything that an engine hears: mono, 16 bits.
inline constexpr int speechSampleRate = 16'000;

/// One stretch of speech that an engine listens to. Lives on the engine's worker thread; destroying
/// it before finish() gives up.
class Utterance {
public:
    virtual ~Utterance() = default;

    virtual Result<void> feed(std::span<const qint16> samples) = 0;

    /// What was understood so far; always empty unless partial results were asked for.
    [[nodiscard]] virtual QString partialText() const = 0;

    /// Nothing more will be said: what was understood. Called once, at the end.
    [[nodiscard]] virtual Result<QString> finish() = 0;
};

/// A recogniser behind the ports. Everything but availability() belongs to one worker thread.
class SpeechEngine {
public:
    virtual ~SpeechEngine() = default;

    /// Loads what recognition needs; called once, before anything else. What fails shows in
    /// availability().
    virtual void open() = 0;

    /// Whether a request can be served, and in any case what there is to say about it. Any thread.
    [[nodiscard]] virtual SpeechAvailability availability() const = 0;

    /// Whether partial results can be had while somebody speaks. Any thread.
    [[nodiscard]] virtual bool hearsLive() const = 0;

    /// A recording is cut at pauses into stretches of at most this length.
    [[nodiscard]] virtual Seconds longestUtterance() const = 0;

    /// Starts to listen. Whatever blocks meanwhile returns soon after @p stop is requested.
    [[nodiscard]] virtual Result<std::unique_ptr<Utterance>> begin(
        const SpeechRequest& request, std::stop_token stop) = 0;

    /// Nothing was asked for some time: gives back what it can have again.
    virtual void rest() { }
};

} // namespace tavrin

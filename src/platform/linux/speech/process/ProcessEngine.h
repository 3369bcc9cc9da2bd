#pragma once

#include "platform/linux/speech/engine/SpeechEngine.h"
#include "platform/linux/speech/process/RecognizerProcess.h"
#include "platform/speech/SpeechAvailability.h"

#include <memory>
#include <mutex>

namespace tavrin {

/// An engine that works in a process of its own, which is started when it is needed and ended by
/// rest(): no model, library or sound can harm this program, and at rest it holds nothing of
/// theirs.
///
/// A process that ended, hangs or talks nonsense fails what was asked of it with RecognizerEnded or
/// RecognizerHung; whoever asks again gets a fresh one.
class ProcessEngine final : public SpeechEngine {
public:
    /// How long the process may take.
    struct Patience {
        Seconds load{60}; ///< Its start with the model, which may come from a slow disk.
        Seconds answer{20}; ///< To a second and a half of sound, or to a set of terms.
        Seconds finish{60}; ///< To the longest utterance.
    };

    struct Settings {
        recognizer::RecognizerCommand command{};
        SpeechAvailability availability{
            false, LocalizedText{u""}, {}}; ///< As far as is known before the first start.
        SpeechAvailability broken{false, LocalizedText{u""},
            {}}; ///< After two starts in a row at which the process ended.
        bool hearsLive = true;
        Seconds longestUtterance{20};
        Patience patience{};
    };

    explicit ProcessEngine(Settings settings);
    ~ProcessEngine() override;

    ProcessEngine(const ProcessEngine&) = delete;
    ProcessEngine& operator=(const ProcessEngine&) = delete;

    /// Starts the process, unless nothing can be recognised anyway.
    void open() override;
    [[nodiscard]] SpeechAvailability availability() const override;

    [[nodiscard]] bool hearsLive() const override { return m_settings.hearsLive; }

    [[nodiscard]] Seconds longestUtterance() const override { return m_settings.longestUtterance; }

    [[nodiscard]] Result<std::unique_ptr<Utterance>> begin(
        const SpeechRequest& request, std::stop_token stop) override;

    /// Ends the process when no utterance is under way.
    void rest() override;

private:
    [[nodiscard]] tl::expected<void, recognizer::ChannelFailure> ensureProcess(
        const std::stop_token& stop);
    void countFailedStart(recognizer::ChannelFailure failure);
    void setAvailability(SpeechAvailability availability);

    const Settings m_settings;
    std::shared_ptr<recognizer::RecognizerProcess> m_process; // Shared with the utterances.
    quint32 m_utterances = 0;
    int m_failedStarts = 0; // In a row.

    mutable std::mutex m_mutex; // Guards the next.
    SpeechAvailability m_availability;
};

} // namespace tavrin

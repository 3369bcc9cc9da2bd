#pragma once

#include "platform/linux/speech/engine/SpeechEngine.h"
#include "platform/linux/speech/engine/SpeechEngineErrors.h"
#include "platform/speech/SpeechAvailability.h"

#include <QStringList>

#include <mutex>
#include <optional>
#include <vector>

namespace tavrin::testing {

/// An engine that understands what the test tells it to, and remembers what it was given. Set it up
/// before its thread starts; look at it when an answer has come.
class ScriptedSpeechEngine final : public SpeechEngine {
public:
    struct Notes {
        int opened = 0;
        std::vector<SpeechRequest> requests;
        std::vector<std::vector<qint16>> utterances; ///< What was fed, also without finish().
        int givenUp = 0; ///< Utterances that were destroyed before finish().
        int rests = 0;
    };

    QStringList texts; ///< What the utterances say, in their order; "" for more.
    Seconds longest{30};
    std::optional<Error> failure; ///< Of begin().
    std::optional<Error> finishFailure;
    int finishFailures = 1'000'000; ///< So many times; then it succeeds.
    int lostFeeds = 0; ///< So many times the recogniser is lost while it hears.
    bool live = true;

    [[nodiscard]] Notes notes() const
    {
        const std::lock_guard lock(m_mutex);
        return m_notes;
    }

    void open() override
    {
        const std::lock_guard lock(m_mutex);
        ++m_notes.opened;
    }

    void rest() override
    {
        const std::lock_guard lock(m_mutex);
        ++m_notes.rests;
    }

    [[nodiscard]] SpeechAvailability availability() const override
    {
        return {!failure, LocalizedText{u"引擎", u"引擎", u"Engine"}, {}};
    }

    [[nodiscard]] bool hearsLive() const override { return live; }

    [[nodiscard]] Seconds longestUtterance() const override { return longest; }

    [[nodiscard]] Result<std::unique_ptr<Utterance>> begin(
        const SpeechRequest& request, std::stop_token stop) override;

private:
    class Listening;

    mutable std::mutex m_mutex;
    Notes m_notes;
};

/// Its partial text counts the samples: "heard 320".
class ScriptedSpeechEngine::Listening final : public Utterance {
public:
    Listening(ScriptedSpeechEngine& engine, std::size_t number)
        : m_engine(engine)
        , m_number(number)
    {
    }

    ~Listening() override
    {
        const std::lock_guard lock(m_engine.m_mutex);
        m_engine.m_notes.givenUp += m_finished ? 0 : 1;
    }

    Listening(const Listening&) = delete;
    Listening& operator=(const Listening&) = delete;

    Result<void> feed(std::span<const qint16> samples) override
    {
        const std::lock_guard lock(m_engine.m_mutex);
        if (m_engine.lostFeeds > 0) {
            --m_engine.lostFeeds;
            return tavrin::failure(speechEngineError(SpeechEngineError::RecognizerEnded));
        }
        auto& heard = m_engine.m_notes.utterances[m_number];
        heard.insert(heard.end(), samples.begin(), samples.end());
        m_partial = QStringLiteral("heard %1").arg(heard.size());
        return {};
    }

    [[nodiscard]] QString partialText() const override { return m_partial; }

    [[nodiscard]] Result<QString> finish() override
    {
        m_finished = true;
        if (m_engine.finishFailure && m_engine.finishFailures-- > 0)
            return tavrin::failure(*m_engine.finishFailure);
        return m_engine.texts.value(static_cast<qsizetype>(m_number));
    }

private:
    ScriptedSpeechEngine& m_engine;
    std::size_t m_number;
    QString m_partial;
    bool m_finished = false;
};

inline Result<std::unique_ptr<Utterance>> ScriptedSpeechEngine::begin(
    const SpeechRequest& request, std::stop_token /*stop*/)
{
    if (failure)
        return tavrin::failure(*failure);
    const std::lock_guard lock(m_mutex);
    m_notes.requests.push_back(request);
    m_notes.utterances.emplace_back();
    return std::make_unique<Listening>(*this, m_notes.utterances.size() - 1);
}

} // namespace tavrin::testing

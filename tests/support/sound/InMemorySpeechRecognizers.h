#pragma once

#include "platform/speech/SpeechAvailability.h"
#include "platform/speech/SpeechRecognizer.h"

#include <QList>

#include <optional>
#include <vector>

namespace tavrin::testing {

/// What a recogniser was asked, and the handler that waits for the results. The test calls the
/// handler itself, from any thread and as often as it likes, also after the task is gone.
struct RecognitionCall {
    QString path; ///< Empty for live recognition.
    SpeechRequest request;
    SpeechResultHandler handler;
    std::weak_ptr<SpeechTask*> task; ///< Expired once the task was destroyed.

    [[nodiscard]] bool isRunning() const { return !task.expired(); }

    void answer(const QString& text, bool isFinal = true) const
    {
        handler(SpeechResult{.formattedString = text, .isFinal = isFinal});
    }

    void fail(const Error& error) const { handler(failure(error)); }
};

/// Makes tasks that do nothing but tell when they end.
class TracedTask final : public SpeechTask {
public:
    [[nodiscard]] std::weak_ptr<SpeechTask*> trace() const { return m_trace; }

private:
    std::shared_ptr<SpeechTask*> m_trace = std::make_shared<SpeechTask*>(this);
};

/// A recogniser of recordings that knows only what the test answers.
class InMemoryFileSpeechRecognizer final : public FileSpeechRecognizer {
public:
    bool available = true;
    LocalizedText availabilityText{u""}; ///< What it lacks; empty: it does not know.
    QString availabilityArgument;
    QString lastFailure; ///< Of one that is available.
    std::vector<RecognitionCall> calls; ///< Oldest first.
    int warmUps = 0;

    [[nodiscard]] bool isAvailable() const override { return available; }

    [[nodiscard]] SpeechAvailability availability() const override
    {
        if (available)
            return {true, LocalizedText{u"识别器", u"辨識器", u"Recogniser"}, {}, lastFailure};
        return {false, availabilityText, availabilityArgument};
    }

    void warmUp() override { ++warmUps; }

    [[nodiscard]] std::unique_ptr<SpeechTask> recognize(
        const QString& path, const SpeechRequest& request, SpeechResultHandler handler) override
    {
        auto task = std::make_unique<TracedTask>();
        calls.push_back({path, request, std::move(handler), task->trace()});
        return task;
    }
};

/// A recogniser of live speech that knows only what the test answers.
class InMemoryLiveSpeechRecognizer final : public LiveSpeechRecognizer {
public:
    bool available = true;
    std::optional<Error> startFailure; ///< What start() fails with, while set.
    std::vector<RecognitionCall> calls; ///< Successful starts, oldest first.

    [[nodiscard]] bool isAvailable() const override { return available; }

    [[nodiscard]] Result<std::unique_ptr<SpeechTask>> start(
        const SpeechRequest& request, SpeechResultHandler handler) override
    {
        if (startFailure)
            return failure(*startFailure);
        auto task = std::make_unique<TracedTask>();
        calls.push_back({{}, request, std::move(handler), task->trace()});
        return std::unique_ptr<SpeechTask>(std::move(task));
    }
};

} // namespace tavrin::testing

#pragma once

#include "platform/speech/SpeechAvailability.h"
#include "platform/speech/SpeechRecognizer.h"
#include "support/ports/Note.h"

#include <QList>

#include <functional>
#include <optional>
#include <utility>
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

/// A task that does nothing but tell when it ends: whoever holds its trace, and @p onEnd.
class TracedTask final : public SpeechTask {
public:
    explicit TracedTask(std::function<void()> onEnd = {})
        : m_onEnd(std::move(onEnd))
    {
    }

    ~TracedTask() override
    {
        if (m_onEnd)
            m_onEnd();
    }

    TracedTask(const TracedTask&) = delete;
    TracedTask& operator=(const TracedTask&) = delete;

    [[nodiscard]] std::weak_ptr<SpeechTask*> trace() const { return m_trace; }

private:
    std::function<void()> m_onEnd;
    std::shared_ptr<SpeechTask*> m_trace = std::make_shared<SpeechTask*>(this);
};

/// A recogniser of recordings that knows only what the test answers.
class InMemoryFileSpeechRecognizer final : public FileSpeechRecognizer {
public:
    /// @param note is told of "transcribe".
    explicit InMemoryFileSpeechRecognizer(Note note = {})
        : m_note(std::move(note))
    {
    }

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
        tell(m_note, QStringLiteral("transcribe"));
        auto task = std::make_unique<TracedTask>();
        calls.push_back({path, request, std::move(handler), task->trace()});
        return task;
    }

private:
    Note m_note;
};

/// A recogniser of live speech that knows only what the test answers.
class InMemoryLiveSpeechRecognizer final : public LiveSpeechRecognizer {
public:
    /// @param note is told of "start live text" and, at the end of a task, "stop live text".
    explicit InMemoryLiveSpeechRecognizer(Note note = {})
        : m_note(std::move(note))
    {
    }

    bool available = true;
    std::optional<Error> startFailure; ///< What start() fails with, while set.
    std::vector<RecognitionCall> calls; ///< Successful starts, oldest first.

    [[nodiscard]] bool isAvailable() const override { return available; }

    [[nodiscard]] Result<std::unique_ptr<SpeechTask>> start(
        const SpeechRequest& request, SpeechResultHandler handler) override
    {
        tell(m_note, QStringLiteral("start live text"));
        if (startFailure)
            return failure(*startFailure);
        auto task = std::make_unique<TracedTask>(
            [note = m_note] { tell(note, QStringLiteral("stop live text")); });
        calls.push_back({{}, request, std::move(handler), task->trace()});
        return std::unique_ptr<SpeechTask>(std::move(task));
    }

private:
    Note m_note;
};

} // namespace tavrin::testing

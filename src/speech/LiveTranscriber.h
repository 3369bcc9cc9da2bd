#pragma once

#include "base/Result.h"

#include <QString>
#include <QStringList>

#include <functional>
#include <memory>

namespace tavrin {

class LiveSpeechRecognizer;
class MainQueue;
class Permissions;
class SpeechTask;

/// Shows what is being said while it is said: listens to the default input device and reports what
/// was understood so far. Best effort; it never asks for permission. Main thread only.
class LiveTranscriber {
public:
    using Update = std::function<void(const QString& text)>;
    using ContextualTerms = std::function<QStringList()>;

    /// The ports must outlive the transcriber.
    LiveTranscriber(LiveSpeechRecognizer& recognizer, Permissions& permissions,
        MainQueue& mainQueue, ContextualTerms contextualTerms);
    ~LiveTranscriber();

    LiveTranscriber(const LiveTranscriber&) = delete;
    LiveTranscriber& operator=(const LiveTranscriber&) = delete;

    /// Ends the run before and starts a new one. @p update is called on the main thread with the
    /// whole text of this run, trimmed and never empty, until stop(). Fails with domain
    /// "TavrinLiveSpeech", code 1, when speech recognition is not allowed or not available (then
    /// the run before goes on), else with the device's own error.
    Result<void> startWithUpdate(Update update);

    /// Ends everything; text that is still under way is dropped.
    void stop();

private:
    [[nodiscard]] bool canStart() const;

    LiveSpeechRecognizer& m_recognizer;
    Permissions& m_permissions;
    MainQueue& m_mainQueue;
    ContextualTerms m_contextualTerms;
    std::shared_ptr<const Update>
        m_updateHandler; // Of this run. Its results hold it weakly, so late ones end with it.
    std::unique_ptr<SpeechTask> m_task;
};

} // namespace tavrin

#pragma once

#include "base/CallbackGuard.h"
#include "base/Completion.h"
#include "base/Result.h"

#include <QString>
#include <QStringList>

#include <atomic>
#include <functional>
#include <memory>
#include <vector>

namespace tavrin {

class FileSpeechRecognizer;
class MainQueue;
class Permissions;
class SpeechTask;

/// Turns a finished recording into its final transcript. Main thread only.
///
/// Errors of its own have the domain "TavrinSpeech": the authorisation status (0, 1, 2) when speech
/// recognition is not allowed, 10 when the recogniser is unavailable, 11 when nobody spoke. The
/// recogniser's own errors pass unchanged.
class SystemTranscriber {
public:
    /// The terms to favour, read anew for every recording, on the main thread.
    using ContextualTerms = std::function<QStringList()>;

    /// What the errors say; asked for on the main thread. Where one is missing, the words of macOS.
    struct Messages {
        std::function<QString()> speechNotAllowed;
        std::function<QString()> speechUnavailable;
    };

    /// The ports must outlive the transcriber.
    SystemTranscriber(FileSpeechRecognizer& recognizer, Permissions& permissions,
        MainQueue& mainQueue, ContextualTerms contextualTerms, Messages messages = {});
    ~SystemTranscriber();

    SystemTranscriber(const SystemTranscriber&) = delete;
    SystemTranscriber& operator=(const SystemTranscriber&) = delete;

    /// Completes with the trimmed transcript, never an empty one, on any thread. The file at
    /// @p path must stay until then. Calls may overlap; each reports for itself.
    void transcribe(const QString& path, Completion<Result<QString>> completion);

private:
    /// A recognition under way, or one that has reported and waits to be cleared away.
    struct Run {
        std::shared_ptr<std::atomic<bool>> reported; // Set on the recogniser's thread.
        std::unique_ptr<SpeechTask> task;
    };

    void recognize(const QString& path, const Completion<Result<QString>>& completion);

    FileSpeechRecognizer& m_recognizer;
    Permissions& m_permissions;
    MainQueue& m_mainQueue;
    ContextualTerms m_contextualTerms;
    Messages m_messages;
    std::vector<Run> m_runs;
    CallbackGuard m_guard;
};

} // namespace tavrin

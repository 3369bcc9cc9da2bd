#pragma once

#include "base/Result.h"

#include <QString>
#include <QStringList>

#include <functional>
#include <memory>

namespace tavrin {

struct SpeechAvailability;

/// What kind of speech to expect.
enum class SpeechTaskHint {
    Unspecified = 0,
    Dictation = 1,
    Search = 2,
    Confirmation = 3,
};

struct SpeechRequest {
    bool shouldReportPartialResults = false;
    SpeechTaskHint taskHint = SpeechTaskHint::Unspecified;
    QStringList contextualStrings; ///< Terms to favour, most important first.
    bool addsPunctuation = false; ///< Engines that know no punctuation ignore it.

    friend bool operator==(const SpeechRequest&, const SpeechRequest&) = default;
};

struct SpeechResult {
    QString formattedString; ///< The best transcription so far.
    bool isFinal = false;

    friend bool operator==(const SpeechResult&, const SpeechResult&) = default;
};

/// A recognition under way; destroying it cancels it. Destroyed on the main thread.
class SpeechTask {
public:
    virtual ~SpeechTask() = default;
};

/// Called any number of times, on any thread, also once more after a final result, an error or the
/// end of the task.
using SpeechResultHandler = std::function<void(Result<SpeechResult>)>;

/// Recognises speech in a finished recording. Called on the main thread. The language is fixed when
/// the platform creates it: "zh-CN" (Linux: the language that its engine was installed for; see
/// SystemInfo::speechLanguage).
class FileSpeechRecognizer {
public:
    virtual ~FileSpeechRecognizer() = default;

    /// Whether a request can be served now.
    [[nodiscard]] virtual bool isAvailable() const = 0;

    /// The same with its reason.
    [[nodiscard]] virtual SpeechAvailability availability() const = 0;

    /// Loads in the background what the first request would otherwise wait for (Linux: an engine's
    /// model). Called once, a little after the launch.
    virtual void warmUp() = 0;

    /// Recognises the file at @p path. The file must stay until the final result.
    [[nodiscard]] virtual std::unique_ptr<SpeechTask> recognize(
        const QString& path, const SpeechRequest& request, SpeechResultHandler handler) = 0;
};

/// Recognises speech while it is spoken into the default input device. Called on the main thread.
class LiveSpeechRecognizer {
public:
    virtual ~LiveSpeechRecognizer() = default;

    [[nodiscard]] virtual bool isAvailable() const = 0;

    /// Starts to listen. Destroying the task ends everything: capture first, then the request's
    /// audio, then recognition. Fails when the input device cannot be opened.
    [[nodiscard]] virtual Result<std::unique_ptr<SpeechTask>> start(
        const SpeechRequest& request, SpeechResultHandler handler) = 0;
};

} // namespace tavrin

#include "speech/SystemTranscriber.h"

#include "platform/MainQueue.h"
#include "platform/Permissions.h"
#include "platform/speech/SpeechAvailability.h"
#include "platform/speech/SpeechRecognizer.h"
#include "speech/SpeechTexts.h"

using namespace Qt::StringLiterals;

namespace tavrin {
namespace {

constexpr int recognizerUnavailable = 10;
constexpr int nothingHeard = 11;

Error speechError(int code, const QString& message)
{
    return {u"TavrinSpeech"_s, code, message};
}

QString wordingOf(const std::function<QString()>& message, const SimplifiedText& fallback)
{
    return message ? message() : fallback.toString();
}

/// What the recogniser lacks, where it can tell.
Error unavailable(const SpeechAvailability& availability, const QString& otherwise)
{
    if (availability.text.zhHans.isEmpty())
        return speechError(recognizerUnavailable, otherwise);
    const QString message = availability.text.zhHans.toString();
    return speechError(recognizerUnavailable,
        availability.argument.isEmpty() ? message : message.arg(availability.argument));
}

Result<QString> transcriptOf(const SpeechResult& result)
{
    const QString text = result.formattedString.trimmed();
    if (text.isEmpty())
        return failure(speechError(nothingHeard, texts::noValidSpeech.toString()));
    return text;
}

} // namespace

SystemTranscriber::SystemTranscriber(FileSpeechRecognizer& recognizer, Permissions& permissions,
    MainQueue& mainQueue, ContextualTerms contextualTerms, Messages messages)
    : m_recognizer(recognizer)
    , m_permissions(permissions)
    , m_mainQueue(mainQueue)
    , m_contextualTerms(std::move(contextualTerms))
    , m_messages(std::move(messages))
{
}

SystemTranscriber::~SystemTranscriber() = default;

void SystemTranscriber::transcribe(const QString& path, Completion<Result<QString>> completion)
{
    // The answer may come on any thread; the recogniser and the terms belong to the main thread.
    auto start = m_guard.bind([this, path, completion] { recognize(path, completion); });
    m_permissions.requestSpeech(
        [start = std::move(start), &queue = m_mainQueue, completion = std::move(completion),
            notAllowed = wordingOf(m_messages.speechNotAllowed, texts::speechNotAllowed)](
            AuthorizationStatus status) {
            if (status == AuthorizationStatus::Authorized)
                queue.post(start);
            else
                completion(failure(speechError(static_cast<int>(status), notAllowed)));
        });
}

void SystemTranscriber::recognize(
    const QString& path, const Completion<Result<QString>>& completion)
{
    std::erase_if(m_runs, [](const Run& run) { return run.reported->load(); });
    if (!m_recognizer.isAvailable()) {
        completion(failure(unavailable(m_recognizer.availability(),
            wordingOf(m_messages.speechUnavailable, texts::speechUnavailable))));
        return;
    }
    const SpeechRequest request{
        .shouldReportPartialResults = false,
        .taskHint = SpeechTaskHint::Dictation,
        .contextualStrings = m_contextualTerms(),
        .addsPunctuation = true,
    };
    auto reported = std::make_shared<std::atomic<bool>>(false);
    auto task = m_recognizer.recognize(
        path, request, [reported, completion](const Result<SpeechResult>& result) {
            const bool decides = !result || result->isFinal;
            if (!decides || reported->exchange(true))
                return;
            completion(result ? transcriptOf(*result) : failure(result.error()));
        });
    m_runs.push_back({std::move(reported), std::move(task)});
}

} // namespace tavrin

#include "speech/LiveTranscriber.h"

#include "platform/MainQueue.h"
#include "platform/Permissions.h"
#include "platform/speech/SpeechRecognizer.h"
#include "speech/SpeechTexts.h"

using namespace Qt::StringLiterals;

namespace tavrin {
namespace {

constexpr int liveSpeechNotPossible = 1;

/// Hands every text on to the main thread, where the run may have ended meanwhile.
SpeechResultHandler forwardTexts(
    MainQueue& queue, const std::weak_ptr<const LiveTranscriber::Update>& updateHandler)
{
    return [&queue, updateHandler](const Result<SpeechResult>& result) {
        const QString text = result ? result->formattedString.trimmed() : QString{};
        if (text.isEmpty() || updateHandler.expired())
            return;
        queue.post([updateHandler, text] {
            if (const auto update = updateHandler.lock())
                (*update)(text);
        });
    };
}

} // namespace

LiveTranscriber::LiveTranscriber(LiveSpeechRecognizer& recognizer, Permissions& permissions,
    MainQueue& mainQueue, ContextualTerms contextualTerms)
    : m_recognizer(recognizer)
    , m_permissions(permissions)
    , m_mainQueue(mainQueue)
    , m_contextualTerms(std::move(contextualTerms))
{
}

LiveTranscriber::~LiveTranscriber() = default;

Result<void> LiveTranscriber::startWithUpdate(Update update)
{
    if (!canStart()) {
        return failure({u"TavrinLiveSpeech"_s, liveSpeechNotPossible,
            texts::liveSpeechUnavailable.toString()});
    }
    stop();
    m_updateHandler = std::make_shared<const Update>(std::move(update));
    const SpeechRequest request{
        .shouldReportPartialResults = true,
        .taskHint = SpeechTaskHint::Dictation,
        .contextualStrings = m_contextualTerms(),
        .addsPunctuation = true,
    };
    auto task = m_recognizer.start(request, forwardTexts(m_mainQueue, m_updateHandler));
    if (!task)
        return failure(task.error());
    m_task = std::move(*task);
    return {};
}

void LiveTranscriber::stop()
{
    m_task.reset();
    m_updateHandler.reset();
}

bool LiveTranscriber::canStart() const
{
    return m_permissions.speechStatus() == AuthorizationStatus::Authorized
        && m_recognizer.isAvailable();
}

} // namespace tavrin

#include "platform/linux/speech/engine/SpeechEngineErrors.h"

#include "platform/linux/speech/engine/SpeechEngineTexts.h"

using namespace Qt::StringLiterals;

namespace tavrin {
namespace {

const QString domain = u"TavrinSpeechEngine"_s;

SimplifiedText messageFor(SpeechEngineError code)
{
    switch (code) {
    case SpeechEngineError::ModelUnusable:
        return texts::modelUnusable;
    case SpeechEngineError::Cancelled:
        return texts::recognitionCancelled;
    case SpeechEngineError::NotReachable:
        return texts::speechServerUnreachable;
    case SpeechEngineError::NoAnswer:
        return texts::speechServerSilent;
    case SpeechEngineError::Refused:
        return texts::speechServerRefused;
    case SpeechEngineError::UnusableAnswer:
        return texts::speechAnswerUnusable;
    case SpeechEngineError::TooMuchSound:
        return texts::recognitionTooSlow;
    case SpeechEngineError::RecognizerEnded:
        return texts::recognizerEnded;
    case SpeechEngineError::RecognizerHung:
        return texts::recognizerHung;
    }
    return {};
}

} // namespace

Error speechEngineError(SpeechEngineError code)
{
    return {domain, static_cast<int>(code), messageFor(code).toString()};
}

Error speechEngineErrorOf(int code)
{
    const bool isKnown = code >= static_cast<int>(SpeechEngineError::ModelUnusable)
        && code <= static_cast<int>(SpeechEngineError::RecognizerHung);
    return speechEngineError(
        isKnown ? static_cast<SpeechEngineError>(code) : SpeechEngineError::RecognizerEnded);
}

bool isRecognizerLost(const Error& error)
{
    return error.domain == domain
        && (error.code == static_cast<int>(SpeechEngineError::RecognizerEnded)
            || error.code == static_cast<int>(SpeechEngineError::RecognizerHung));
}

bool blamesEngine(const Error& error)
{
    return error.domain == domain && error.code != static_cast<int>(SpeechEngineError::Cancelled)
        && error.code != static_cast<int>(SpeechEngineError::TooMuchSound);
}

} // namespace tavrin

#include "platform/linux/speech/engine/SpeechEngineErrors.h"

#include "base/LocalizedText.h"

using namespace Qt::StringLiterals;

namespace tavrin {
namespace {

const QString domain = u"TavrinSpeechEngine"_s;

SimplifiedText messageFor(SpeechEngineError code)
{
    switch (code) {
    case SpeechEngineError::ModelUnusable:
        return {u"语音识别模型无法加载，请检查模型文件。"};
    case SpeechEngineError::Cancelled:
        return {u"语音识别已取消。"};
    case SpeechEngineError::NotReachable:
        return {u"无法连接语音识别服务器，请检查地址和网络。"};
    case SpeechEngineError::NoAnswer:
        return {u"语音识别服务器没有及时响应，请稍后重试。"};
    case SpeechEngineError::Refused:
        return {u"语音识别服务器拒绝了请求，请检查服务器设置。"};
    case SpeechEngineError::UnusableAnswer:
        return {u"语音识别服务器的响应无法使用。"};
    case SpeechEngineError::TooMuchSound:
        return {u"语音识别跟不上录音。"};
    case SpeechEngineError::RecognizerEnded:
        return {u"语音识别程序意外退出，请重试。"};
    case SpeechEngineError::RecognizerHung:
        return {u"语音识别程序没有响应，请重试。"};
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

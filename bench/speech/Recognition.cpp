#include "Recognition.h"

#include "Sounds.h"
#include "platform/linux/recognizer/sphinx/SphinxEngine.h"
#include "platform/linux/speech/engine/EngineFileRecognizer.h"

#include <future>
#include <sys/resource.h>

using namespace Qt::StringLiterals;

namespace tavrin::bench {
namespace {

Seconds processorTime(int whose)
{
    rusage usage{};
    getrusage(whose, &usage);
    const auto seconds = [](const timeval& time) {
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) * 1e-6;
    };
    return Seconds{seconds(usage.ru_utime) + seconds(usage.ru_stime)};
}

} // namespace

OwnRecognizer::OwnRecognizer()
{
    const Seconds begin = now();
    m_thread = std::make_shared<SpeechEngineThread>(
        std::make_unique<SphinxEngine>(findSphinxModel({}, sphinxModelRoots())));
    std::promise<void> loaded;
    m_thread->post([&] { loaded.set_value(); });
    loaded.get_future().wait();
    m_loadingTime = now() - begin;
}

Understood OwnRecognizer::recognize(const QString& path, const QStringList& terms)
{
    EngineFileRecognizer recognizer(m_thread);
    std::promise<Result<SpeechResult>> answer;
    const Seconds begin = now();
    const Seconds processorBegin = ownProcessorTime();
    const auto task = recognizer.recognize(path,
        {.taskHint = SpeechTaskHint::Dictation,
            .contextualStrings = terms,
            .addsPunctuation = true},
        [&](const Result<SpeechResult>& result) { answer.set_value(result); });
    const Result<SpeechResult> result = answer.get_future().get();
    return {result ? result->formattedString : QString{},
        {now() - begin, ownProcessorTime() - processorBegin}};
}

Understood recognizeWithPeer(const QString& path)
{
    const Seconds begin = now();
    const Seconds processorBegin = peersProcessorTime();
    const QString output =
        outputOf(u"pocketsphinx_continuous"_s, {u"-infile"_s, path, u"-logfn"_s, u"/dev/null"_s});
    return {output, {now() - begin, peersProcessorTime() - processorBegin}};
}

Seconds ownProcessorTime()
{
    return processorTime(RUSAGE_SELF);
}

Seconds peersProcessorTime()
{
    return processorTime(RUSAGE_CHILDREN);
}

Seconds now()
{
    return std::chrono::steady_clock::now().time_since_epoch();
}

} // namespace tavrin::bench

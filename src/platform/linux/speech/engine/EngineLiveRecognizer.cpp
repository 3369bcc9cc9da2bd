#include "platform/linux/speech/engine/EngineLiveRecognizer.h"

#include "platform/linux/speech/engine/LiveRun.h"
#include "platform/speech/SpeechAvailability.h"

namespace tavrin {
namespace {

/// Ends in this order: capture first, then recognition.
class LiveTask final : public SpeechTask {
public:
    LiveTask(std::shared_ptr<LiveRun> run, std::unique_ptr<SpeechCapture> capture)
        : m_run(std::move(run))
        , m_capture(std::move(capture))
    {
    }

    ~LiveTask() override
    {
        m_capture.reset();
        m_run->end();
    }

    LiveTask(const LiveTask&) = delete;
    LiveTask& operator=(const LiveTask&) = delete;

private:
    std::shared_ptr<LiveRun> m_run;
    std::unique_ptr<SpeechCapture> m_capture;
};

} // namespace

EngineLiveRecognizer::EngineLiveRecognizer(
    std::shared_ptr<SpeechEngineThread> thread, OpenSpeechCapture open)
    : m_thread(std::move(thread))
    , m_open(std::move(open))
{
}

bool EngineLiveRecognizer::isAvailable() const
{
    return m_thread->engine().hearsLive() && m_thread->engine().availability().isAvailable;
}

Result<std::unique_ptr<SpeechTask>> EngineLiveRecognizer::start(
    const SpeechRequest& request, SpeechResultHandler handler)
{
    auto run = std::make_shared<LiveRun>(*m_thread, request, std::move(handler));
    auto capture = m_open([run](std::span<const qint16> samples) { run->hear(samples); });
    if (!capture)
        return failure(capture.error());
    return std::make_unique<LiveTask>(std::move(run), std::move(*capture));
}

} // namespace tavrin

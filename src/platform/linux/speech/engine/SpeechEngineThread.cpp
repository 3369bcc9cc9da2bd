#include "platform/linux/speech/engine/SpeechEngineThread.h"

#include <utility>

namespace tavrin {

SpeechEngineThread::SpeechEngineThread(std::unique_ptr<SpeechEngine> engine, Seconds restAfter)
    : m_engine(std::move(engine))
    , m_worker(restAfter, [this] { m_engine->rest(); })
{
}

void SpeechEngineThread::post(WorkerThread::Task task)
{
    std::call_once(m_opened, [this] { m_worker.post([this] { m_engine->open(); }); });
    m_worker.post(std::move(task));
}

} // namespace tavrin

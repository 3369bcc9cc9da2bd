#include "platform/linux/speech/SpeechEngineThread.h"

namespace tavrin {

SpeechEngineThread::SpeechEngineThread(std::unique_ptr<SpeechEngine> engine)
    : m_engine(std::move(engine))
{
    m_worker.post([this] { m_engine->open(); });
}

} // namespace tavrin

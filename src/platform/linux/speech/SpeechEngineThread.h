#pragma once

#include "platform/linux/speech/SpeechEngine.h"
#include "platform/linux/speech/WorkerThread.h"

#include <memory>

namespace tavrin {

/// An engine and the thread that it lives on; both recognisers share it. The engine begins to load
/// at once, in the background.
class SpeechEngineThread {
public:
    explicit SpeechEngineThread(std::unique_ptr<SpeechEngine> engine);

    /// For availability() and hearsLive(); for the rest on the thread.
    [[nodiscard]] SpeechEngine& engine() { return *m_engine; }

    [[nodiscard]] const SpeechEngine& engine() const { return *m_engine; }

    /// Runs @p task on the thread, after everything posted before. Any thread.
    void post(WorkerThread::Task task) { m_worker.post(std::move(task)); }

private:
    std::unique_ptr<SpeechEngine> m_engine;
    WorkerThread m_worker; // Ends before the engine goes.
};

} // namespace tavrin

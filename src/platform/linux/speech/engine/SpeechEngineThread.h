#pragma once

#include "platform/linux/speech/engine/SpeechEngine.h"
#include "platform/linux/speech/engine/WorkerThread.h"

#include <memory>
#include <mutex>

namespace tavrin {

/// An engine and the thread that it lives on; both recognisers share it. The engine loads with the
/// first task: its model takes a third of a second, which the start of the program need not share.
class SpeechEngineThread {
public:
    /// @param restAfter lets the engine rest when nothing was asked for so long; never when zero.
    explicit SpeechEngineThread(
        std::unique_ptr<SpeechEngine> engine, Seconds restAfter = Seconds{0});

    /// For availability() and hearsLive(); for the rest on the thread.
    [[nodiscard]] SpeechEngine& engine() { return *m_engine; }

    [[nodiscard]] const SpeechEngine& engine() const { return *m_engine; }

    /// Runs @p task on the thread, after everything posted before. Any thread.
    void post(WorkerThread::Task task);

private:
    std::unique_ptr<SpeechEngine> m_engine;
    std::once_flag m_opened;
    WorkerThread m_worker; // Ends before the engine goes.
};

} // namespace tavrin

#pragma once

#include "platform/linux/speech/engine/SpeechEngineThread.h"
#include "platform/linux/speech/engine/SpeechLevels.h"
#include "platform/speech/SpeechRecognizer.h"

#include <memory>
#include <mutex>
#include <stop_token>
#include <vector>

namespace tavrin {

/// One live recognition: takes sound from the capture's thread and lets the engine hear it on the
/// worker thread. Sound waits in a bounded buffer while the engine is busy. When the recogniser is
/// lost the text goes on with a fresh one, a few times.
class LiveRun final : public std::enable_shared_from_this<LiveRun> {
public:
    /// @param thread must outlive the run and everything that it posts.
    LiveRun(SpeechEngineThread& thread, SpeechRequest request, SpeechResultHandler handler);

    /// On the capture's thread.
    void hear(std::span<const qint16> samples);

    /// On the main thread, after the last call of hear().
    void end();

private:
    // All on the worker thread.
    void process();
    [[nodiscard]] Result<void> listen(std::span<const qint16> samples);
    [[nodiscard]] Result<void> hearWithEngine(std::span<const qint16> samples);
    void keepTextOfLost();
    void reportText();
    void fail(const Error& error);

    [[nodiscard]] Result<std::vector<qint16>> takeWaiting();

    SpeechEngineThread& m_thread;
    const SpeechRequest m_request;
    const SpeechResultHandler m_handler;
    std::stop_source m_stop;

    std::mutex m_mutex; // Guards the next three.
    std::vector<qint16> m_waiting;
    bool m_processingPosted = false;
    bool m_overflowed = false;

    std::unique_ptr<Utterance> m_utterance;
    SpeechLevels m_levels; // Until somebody speaks.
    bool m_somebodySpoke = false;
    QString m_before; // The text of recognisers that were lost.
    int m_lost = 0; // So many were.
    QString m_reported;
};

} // namespace tavrin

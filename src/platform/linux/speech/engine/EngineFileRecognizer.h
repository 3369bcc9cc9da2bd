#pragma once

#include "platform/linux/speech/engine/SpeechEngineThread.h"
#include "platform/speech/SpeechRecognizer.h"

#include <atomic>

namespace tavrin {

/// Recognises recordings with an engine, on the engine's worker thread, one after another.
///
/// A recording in which nobody speaks answers an empty final result without asking the engine:
/// recognisers invent text from silence. It is read twice, piece by piece, so that memory does not
/// grow with its length. Every request is answered: a cancelled one with an error. A recording that
/// a recogniser was lost over is tried once more.
class EngineFileRecognizer final : public FileSpeechRecognizer {
public:
    explicit EngineFileRecognizer(std::shared_ptr<SpeechEngineThread> thread);

    [[nodiscard]] bool isAvailable() const override;
    [[nodiscard]] SpeechAvailability availability() const override;
    void warmUp() override;
    [[nodiscard]] std::unique_ptr<SpeechTask> recognize(
        const QString& path, const SpeechRequest& request, SpeechResultHandler handler) override;

private:
    /// The SpeechEngineError that the last recognition failed with; 0 when it did not. Written by
    /// the engine's thread.
    using LastFailure = std::atomic<int>;

    std::shared_ptr<SpeechEngineThread> m_thread;
    std::shared_ptr<LastFailure> m_lastFailure = std::make_shared<LastFailure>(0);
};

} // namespace tavrin

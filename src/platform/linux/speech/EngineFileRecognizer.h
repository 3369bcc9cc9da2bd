#pragma once

#include "platform/SpeechRecognizer.h"
#include "platform/linux/speech/SpeechEngineThread.h"

namespace tavrin {

/// Recognises recordings with an engine, on the engine's worker thread, one after another.
///
/// A recording in which nobody speaks answers an empty final result without asking the engine:
/// recognisers invent text from silence. It is read twice, piece by piece, so that memory does not
/// grow with its length. Every request is answered: a cancelled one with an error.
class EngineFileRecognizer final : public FileSpeechRecognizer {
public:
    explicit EngineFileRecognizer(std::shared_ptr<SpeechEngineThread> thread);

    [[nodiscard]] bool isAvailable() const override;
    [[nodiscard]] SpeechAvailability availability() const override;
    void warmUp() override;
    [[nodiscard]] std::unique_ptr<SpeechTask> recognize(
        const QString& path, const SpeechRequest& request, SpeechResultHandler handler) override;

private:
    std::shared_ptr<SpeechEngineThread> m_thread;
};

} // namespace tavrin

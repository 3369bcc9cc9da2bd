#pragma once

#include "platform/linux/speech/engine/SpeechEngineThread.h"
#include "platform/speech/SpeechRecognizer.h"

#include <functional>
#include <span>

namespace tavrin {

/// Sound from the default input device; it flows until this is destroyed.
class SpeechCapture {
public:
    virtual ~SpeechCapture() = default;
};

/// Opens the default input device. The handler gets 16 kHz mono samples on a thread of the
/// device's; it is not called any more once the capture is destroyed.
using OpenSpeechCapture = std::function<Result<std::unique_ptr<SpeechCapture>>(
    std::function<void(std::span<const qint16>)> handler)>;

/// Recognises what is being said with an engine, on the engine's worker thread. Texts are reported
/// only once somebody speaks: recognisers invent words in noise.
class EngineLiveRecognizer final : public LiveSpeechRecognizer {
public:
    EngineLiveRecognizer(std::shared_ptr<SpeechEngineThread> thread, OpenSpeechCapture open);

    [[nodiscard]] bool isAvailable() const override;
    [[nodiscard]] Result<std::unique_ptr<SpeechTask>> start(
        const SpeechRequest& request, SpeechResultHandler handler) override;

private:
    std::shared_ptr<SpeechEngineThread> m_thread;
    OpenSpeechCapture m_open;
};

} // namespace tavrin

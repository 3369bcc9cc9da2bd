#pragma once

#include "platform/linux/speech/engine/SpeechEngine.h"
#include "platform/linux/speech/servers/SpeechServer.h"

namespace tavrin {

/// An engine on a server that is spoken to over a WebSocket: a message with the sample rate, binary
/// messages of 16-bit samples, and one that ends the sound; the server answers each with
/// `{"partial": …}` or, after a pause, with `{"text": …}`. For live speech and for recordings. The
/// protocol has no place for favoured terms.
class VoskSpeechEngine final : public SpeechEngine {
public:
    explicit VoskSpeechEngine(SpeechServer server);

    void open() override { }

    [[nodiscard]] SpeechAvailability availability() const override;

    [[nodiscard]] bool hearsLive() const override { return true; }

    [[nodiscard]] Seconds longestUtterance() const override;
    [[nodiscard]] Result<std::unique_ptr<Utterance>> begin(
        const SpeechRequest& request, std::stop_token stop) override;

private:
    SpeechServer m_server;
};

} // namespace tavrin

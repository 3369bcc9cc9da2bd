#pragma once

#include "platform/linux/speech/engine/SpeechEngine.h"
#include "platform/linux/speech/servers/SpeechServer.h"

namespace tavrin {

/// An engine on a server with the widely used `POST /v1/audio/transcriptions` form: a multipart
/// body with the sound as `file`, and `model`, `language` and `prompt`; the answer is `{"text":
/// …}`. The prompt carries the favoured terms. For finished recordings only.
class HttpSpeechEngine final : public SpeechEngine {
public:
    /// An address without a path, or whose path ends in "/v1", is completed.
    explicit HttpSpeechEngine(SpeechServer server);

    void open() override { }

    [[nodiscard]] SpeechAvailability availability() const override;

    [[nodiscard]] bool hearsLive() const override { return false; }

    [[nodiscard]] Seconds longestUtterance() const override;
    [[nodiscard]] Result<std::unique_ptr<Utterance>> begin(
        const SpeechRequest& request, std::stop_token stop) override;

private:
    SpeechServer m_server;
};

} // namespace tavrin

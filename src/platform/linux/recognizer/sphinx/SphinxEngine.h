#pragma once

#include "platform/linux/recognizer/sphinx/SphinxDecoder.h"
#include "platform/linux/speech/engine/SpeechEngine.h"

#include <atomic>
#include <optional>

namespace tavrin {

/// The built-in engine: PocketSphinx with an installed model. No punctuation, no capitals except
/// those of favoured terms.
class SphinxEngine final : public SpeechEngine {
public:
    /// @param model empty when none is installed.
    explicit SphinxEngine(std::optional<SphinxModel> model);

    void open() override;
    [[nodiscard]] SpeechAvailability availability() const override;

    [[nodiscard]] bool hearsLive() const override { return true; }

    [[nodiscard]] Seconds longestUtterance() const override;
    [[nodiscard]] Result<std::unique_ptr<Utterance>> begin(
        const SpeechRequest& request, std::stop_token stop) override;

private:
    const std::optional<SphinxModel> m_model;
    std::unique_ptr<SphinxDecoder> m_decoder;
    std::atomic<bool> m_isBroken = false;
};

} // namespace tavrin

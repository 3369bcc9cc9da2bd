#pragma once

#include "platform/linux/speech/engine/SpeechEngine.h"
#include "platform/linux/speech/onnx/OnnxProblem.h"

#include <QString>

#include <memory>
#include <mutex>
#include <optional>

namespace tavrin {

/// What an engine is made of: folders.
struct OnnxEngineSettings {
    QString libraryFolder; ///< Of libsherpa-onnx-c-api.so and libonnxruntime.so.
    QString modelFolder; ///< Of a model of any kind: see OnnxModel.
    /// Of a model for whole utterances that makes the final texts; empty for one model for both.
    /// Where the other one does not stream either, this one alone is used.
    QString finalModelFolder{};
};

/// Neural recognition on this machine, by sherpa-onnx.
///
/// A streaming model gives live and final texts. A model for whole utterances gives live texts too
/// when there is time: it decodes a growing utterance again and again. With both, the streaming one
/// gives the live texts and the other one the final text. Terms are favoured by transducers alone.
///
/// For a process of its own: the library ends the process for what it does not like, and a damaged
/// model may end it as well. It prints to standard error, never what was said or which terms were
/// given, but paths. Memory: more than twice the size of the models.
///
/// Errors of utterances are those of speech engines: ModelUnusable when the library threw,
/// Cancelled after the request to stop.
class OnnxEngine final : public SpeechEngine {
public:
    explicit OnnxEngine(OnnxEngineSettings settings);
    ~OnnxEngine() override;

    /// Takes from a tenth of a second up to some seconds, as long as it takes to read the models.
    void open() override;

    /// Before open(): not available. Then the name of the model's folder stands for %1; or what is
    /// wrong, as in problem().
    [[nodiscard]] SpeechAvailability availability() const override;

    /// Why it is not available; empty when it is, and before open(). For those who tell it in
    /// another process: textOf() has the text. Any thread.
    [[nodiscard]] std::optional<OnnxProblem> problem() const;

    [[nodiscard]] bool hearsLive() const override { return true; }

    [[nodiscard]] Seconds longestUtterance() const override;

    /// The engine outlives the utterance.
    [[nodiscard]] Result<std::unique_ptr<Utterance>> begin(
        const SpeechRequest& request, std::stop_token stop) override;

private:
    struct Loaded;

    [[nodiscard]] OnnxResult<std::unique_ptr<Loaded>> load() const;

    const OnnxEngineSettings m_settings;
    mutable std::mutex m_mutex; // Guards the next two.
    bool m_isOpen = false;
    std::optional<OnnxProblem> m_problem;
    std::unique_ptr<Loaded> m_loaded;
};

} // namespace tavrin

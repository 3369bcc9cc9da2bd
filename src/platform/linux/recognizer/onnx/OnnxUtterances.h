#pragma once

#include "platform/linux/recognizer/onnx/OfflineDecoder.h"
#include "platform/linux/recognizer/onnx/OnlineDecoder.h"
#include "platform/linux/recognizer/onnx/PartialPace.h"
#include "platform/linux/recognizer/onnx/WholeTranscript.h"
#include "platform/linux/speech/engine/SpeechEngine.h"

namespace tavrin {

/// Speech heard by a model for whole utterances.
class GrowingUtterance final : public Utterance {
public:
    /// @param isLive whether there are texts while the utterance goes on; it is cut into shorter
    /// stretches then, as each look decodes a stretch anew.
    GrowingUtterance(
        WholeTranscript::Decode decode, Seconds longest, bool isLive, std::stop_token stop);

    Result<void> feed(std::span<const qint16> samples) override;

    [[nodiscard]] QString partialText() const override { return m_partialText; }

    [[nodiscard]] Result<QString> finish() override { return m_transcript.textSoFar(); }

private:
    const bool m_isLive;
    WholeTranscript m_transcript;
    PartialPace m_pace;
    QString m_partialText;
};

/// Speech heard by a streaming model. Texts on both sides of a pause are joined.
class OnlineUtterance final : public Utterance {
public:
    struct Request {
        QByteArray hotwords;
        int chunkFrames = 0; ///< OnnxModel::chunkFrames.
        bool isLive = false; ///< Whether there are texts while the utterance goes on.
    };

    /// @param decoder outlives the utterance.
    [[nodiscard]] static Result<std::unique_ptr<Utterance>> begin(
        const OnlineDecoder& decoder, const Request& request, std::stop_token stop);

    Result<void> feed(std::span<const qint16> samples) override;
    [[nodiscard]] QString partialText() const override;
    [[nodiscard]] Result<QString> finish() override;

private:
    OnlineUtterance(const OnlineDecoder& decoder, Request request, std::stop_token stop,
        std::unique_ptr<OnlineStream> stream);

    [[nodiscard]] Result<void> beginAnew();
    [[nodiscard]] QString text() const;

    const OnlineDecoder& m_decoder;
    const Request m_request;
    std::stop_token m_stop;
    std::unique_ptr<OnlineStream> m_stream;
    std::size_t m_heard = 0; ///< Samples of the stream.
    QString m_before; ///< What stands before the last pause.
    QString m_current;
};

/// Live texts by one utterance, the final text by another; both hear everything.
class TwofoldUtterance final : public Utterance {
public:
    TwofoldUtterance(std::unique_ptr<Utterance> live, std::unique_ptr<Utterance> final);

    Result<void> feed(std::span<const qint16> samples) override;

    [[nodiscard]] QString partialText() const override { return m_live->partialText(); }

    [[nodiscard]] Result<QString> finish() override { return m_final->finish(); }

private:
    std::unique_ptr<Utterance> m_live;
    std::unique_ptr<Utterance> m_final;
};

} // namespace tavrin

#include "platform/linux/speech/onnx/OnnxKinds.h"

#include "platform/linux/speech/onnx/OnnxRequirements.h"

#include <QFileInfo>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace tavrin {
namespace {

constexpr qsizetype melBins = 80; // Of every kind but Whisper, which says so itself.

/// The lists of the layers are read side by side.
OnnxResult<void> checkZipformer(
    const OnnxSheet& sheet, std::span<const OnnxRequirement> requirements)
{
    if (auto checked = sheet.check(requirements); !checked)
        return checked;
    const qsizetype stacks = sheet.count("num_encoder_layers");
    for (const OnnxRequirement& requirement : requirements) {
        if (requirement.value != OnnxRequirement::Value::Numbers)
            continue;
        if (auto checked = sheet.checkCount(requirement.key, stacks); !checked)
            return checked;
    }
    return {};
}

OnnxResult<void> checkStackedFrames(const OnnxSheet& sheet)
{
    if (auto checked = sheet.check(onnxrequirements::stackedFrames); !checked)
        return checked;
    const qsizetype size = sheet.number("lfr_window_size") * melBins;
    if (auto checked = sheet.checkCount("neg_mean", size); !checked)
        return checked;
    return sheet.checkCount("inv_stddev", size);
}

OnnxResult<OnnxKindFound> transducerOf(const OnnxSheet& encoder, const OnnxFiles& files)
{
    const QByteArray type = encoder.value("model_type");
    const bool isFirst = type == "zipformer";
    if ((!isFirst && type != "zipformer2") || !encoder.has("decode_chunk_len"))
        return encoder.unknownKind(); // Also those that hear nothing but whole utterances.
    const auto checked = isFirst ? checkZipformer(encoder, onnxrequirements::firstZipformer)
                                 : checkZipformer(encoder, onnxrequirements::secondZipformer);
    if (!checked)
        return tl::unexpected(checked.error());
    const OnnxResult<OnnxSheet> decoder = OnnxSheet::read(files.decoder);
    if (!decoder)
        return tl::unexpected(decoder.error());
    if (decoder->metadata().outputs != 1)
        return decoder->unknownKind(); // The library would take it for one of NeMo.
    if (const auto kept = decoder->check(onnxrequirements::transducerDecoder); !kept)
        return tl::unexpected(kept.error());
    if (const auto joiner = OnnxSheet::read(files.joiner); !joiner)
        return tl::unexpected(joiner.error());
    return OnnxKindFound{
        OnnxModelKind::StreamingTransducer, encoder, decoder->number("vocab_size")};
}

OnnxResult<OnnxKindFound> paraformerOf(const OnnxSheet& encoder)
{
    if (const auto checked = checkStackedFrames(encoder); !checked)
        return tl::unexpected(checked.error());
    if (const auto checked = encoder.check(onnxrequirements::streamingParaformer); !checked)
        return tl::unexpected(checked.error());
    return OnnxKindFound{OnnxModelKind::StreamingParaformer, encoder, encoder.number("vocab_size")};
}

/// The library looks up the scores of the languages' tokens without a look at their numbers.
OnnxResult<void> checkWhisperLanguages(const OnnxSheet& encoder)
{
    if (auto checked = encoder.check(onnxrequirements::multilingualWhisper); !checked)
        return checked;
    const qsizetype languages = encoder.count("all_language_codes");
    if (auto checked = encoder.checkCount("all_language_tokens", languages); !checked)
        return checked;
    const int vocabulary = encoder.number("n_vocab");
    for (const QByteArray& token : encoder.value("all_language_tokens").split(',')) {
        if (token.trimmed().toInt() >= vocabulary)
            return encoder.unusable("all_language_tokens");
    }
    constexpr qsizetype start = 3; // Its token, the language, the task.
    return encoder.checkCount("sot_sequence", start);
}

OnnxResult<OnnxKindFound> whisperOf(const OnnxSheet& encoder)
{
    if (const auto checked = encoder.check(onnxrequirements::whisper); !checked)
        return tl::unexpected(checked.error());
    if (encoder.number("is_multilingual") != 0) {
        if (const auto checked = checkWhisperLanguages(encoder); !checked)
            return tl::unexpected(checked.error());
    }
    return OnnxKindFound{OnnxModelKind::Whisper, encoder, 0};
}

OnnxResult<OnnxKindFound> pairOf(const OnnxFiles& files)
{
    const OnnxResult<OnnxSheet> encoder = OnnxSheet::read(files.encoder);
    if (!encoder)
        return tl::unexpected(encoder.error());
    if (!files.joiner.isEmpty())
        return transducerOf(*encoder, files);
    if (const auto decoder = OnnxSheet::read(files.decoder); !decoder)
        return tl::unexpected(decoder.error());
    if (encoder->has("decoder_num_blocks"))
        return paraformerOf(*encoder);
    if (encoder->has("n_mels"))
        return whisperOf(*encoder);
    return encoder->unknownKind();
}

OnnxResult<OnnxKindFound> singleOf(const OnnxFiles& files)
{
    const OnnxResult<OnnxSheet> read = OnnxSheet::read(files.model);
    if (!read)
        return tl::unexpected(read.error());
    const OnnxSheet& sheet = *read;
    const auto found = [&](OnnxModelKind kind, const OnnxResult<void>& checked,
                           int vocabulary) -> OnnxResult<OnnxKindFound> {
        if (!checked)
            return tl::unexpected(checked.error());
        return OnnxKindFound{kind, sheet, vocabulary};
    };
    const int vocabulary = sheet.number("vocab_size");
    if (sheet.has("with_itn")) {
        const auto stacked = checkStackedFrames(sheet);
        return found(OnnxModelKind::SenseVoice,
            stacked ? sheet.check(onnxrequirements::senseVoice) : stacked, vocabulary);
    }
    if (sheet.has("cache_last_channel_dim1"))
        return found(OnnxModelKind::StreamingNemoCtc, sheet.check(onnxrequirements::nemo),
            vocabulary + 1); // NeMo does not count the blank.
    if (sheet.has("decode_chunk_len"))
        return found(OnnxModelKind::StreamingZipformerCtc,
            checkZipformer(sheet, onnxrequirements::secondZipformer), 0);
    const QByteArray type = sheet.value("model_type");
    if (type == "paraformer")
        return found(OnnxModelKind::Paraformer, checkStackedFrames(sheet), vocabulary);
    const bool isBare =
        sheet.metadata().properties.isEmpty() && sheet.metadata().inputs.size() == 2;
    if (type == "zipformer2_ctc" || isBare)
        return found(OnnxModelKind::ZipformerCtc, {}, 0);
    return sheet.unknownKind();
}

bool usesBlank(OnnxModelKind kind)
{
    return kind == OnnxModelKind::StreamingZipformerCtc || kind == OnnxModelKind::StreamingNemoCtc
        || kind == OnnxModelKind::ZipformerCtc;
}

} // namespace

OnnxResult<OnnxKindFound> findOnnxKind(const OnnxFiles& files)
{
    return files.model.isEmpty() ? pairOf(files) : singleOf(files);
}

OnnxResult<void> checkOnnxTokens(
    const OnnxKindFound& found, const OnnxTokens& tokens, const OnnxFiles& files)
{
    const QString name = QFileInfo(files.tokens).fileName();
    if (tokens.size() < found.vocabulary)
        return onnxFailure(OnnxFault::TokensShort,
            u"%1: %2 < %3"_s.arg(
                name, QString::number(tokens.size()), QString::number(found.vocabulary)));
    const auto stands = [&](const char* token) { return tokens.contains(token); };
    if (usesBlank(found.kind) && !stands("<blk>") && !stands("<eps>") && !stands("<blank>"))
        return onnxFailure(OnnxFault::TokenMissing, u"%1: <blk>"_s.arg(name));
    if (found.kind == OnnxModelKind::Paraformer && !stands("</s>"))
        return onnxFailure(OnnxFault::TokenMissing, u"%1: </s>"_s.arg(name));
    return {};
}

} // namespace tavrin

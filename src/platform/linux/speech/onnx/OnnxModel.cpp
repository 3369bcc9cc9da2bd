#include "platform/linux/speech/onnx/OnnxModel.h"

#include "platform/linux/speech/onnx/BpeVocabulary.h"
#include "platform/linux/speech/onnx/OnnxKinds.h"
#include "platform/linux/speech/onnx/OnnxTokens.h"

#include <QDir>

using namespace Qt::StringLiterals;

namespace tavrin {
namespace {

/// BCP 47 tags for the names that models give.
QString tagOf(const QByteArray& name)
{
    return name == "zh" ? u"zh-CN"_s : QString::fromLatin1(name);
}

QStringList languagesOf(OnnxModelKind kind, const OnnxSheet& sheet, const OnnxTokens& tokens)
{
    QStringList languages;
    if (kind == OnnxModelKind::SenseVoice) {
        for (const char* name : {"zh", "en", "ja", "ko", "yue"})
            languages.append(tagOf(name));
        return languages;
    }
    if (kind != OnnxModelKind::Whisper)
        return tokens.languages();
    if (sheet.number("is_multilingual") == 0)
        return {u"en"_s};
    for (const QByteArray& name : sheet.value("all_language_codes").split(','))
        languages.append(tagOf(name.trimmed()));
    return languages;
}

/// Only a search over several hypotheses can favour terms, and only transducers have one.
QByteArray modelingUnitOf(OnnxModelKind kind, const OnnxFiles& files, const OnnxTokens& tokens)
{
    if (kind != OnnxModelKind::StreamingTransducer)
        return {};
    const bool cutsWords = !files.bpeVocabulary.isEmpty() && tokens.hasLatinPieces();
    if (tokens.hasHanCharacters())
        return cutsWords ? "cjkchar+bpe" : "cjkchar";
    return cutsWords ? "bpe" : "";
}

int chunkFramesOf(OnnxModelKind kind, const OnnxSheet& sheet)
{
    constexpr int paraformerChunk = 61; // Fixed in the library.
    switch (kind) {
    case OnnxModelKind::StreamingTransducer:
    case OnnxModelKind::StreamingZipformerCtc:
        return sheet.number("T");
    case OnnxModelKind::StreamingNemoCtc:
        return sheet.number("window_size");
    case OnnxModelKind::StreamingParaformer:
        return paraformerChunk;
    default:
        return 0;
    }
}

} // namespace

OnnxResult<OnnxModel> findOnnxModel(const QString& folder)
{
    const OnnxResult<OnnxFiles> files = findOnnxFiles(folder);
    if (!files)
        return tl::unexpected(files.error());
    const OnnxResult<OnnxKindFound> found = findOnnxKind(*files);
    if (!found)
        return tl::unexpected(found.error());
    const OnnxResult<OnnxTokens> tokens = OnnxTokens::read(files->tokens);
    if (!tokens)
        return tl::unexpected(tokens.error());
    if (const auto checked = checkOnnxTokens(*found, *tokens, *files); !checked)
        return tl::unexpected(checked.error());
    OnnxModel model{.kind = found->kind, .folder = QDir::cleanPath(folder), .files = *files};
    // Without a sound one terms in Latin letters are not favoured; the rest works.
    if (!BpeVocabulary::read(files->bpeVocabulary))
        model.files.bpeVocabulary.clear();
    model.languages = languagesOf(model.kind, found->sheet, *tokens);
    model.hasPunctuation = model.kind == OnnxModelKind::SenseVoice
        || model.kind == OnnxModelKind::Whisper || tokens->hasPunctuation();
    model.modelingUnit = modelingUnitOf(model.kind, model.files, *tokens);
    model.chunkFrames = chunkFramesOf(model.kind, found->sheet);
    return model;
}

} // namespace tavrin

#include "platform/linux/speech/onnx/OnnxModel.h"

#include "platform/linux/speech/onnx/OnnxBytes.h"
#include "support/QtPrinters.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace tavrin {
namespace {

using testing::Properties;

const QByteArray bilingual = "<blk> 0\n你 1\n好 2\n， 3\n▁HELLO 4\n";

Properties zipformer2(const QByteArray& type = "zipformer2")
{
    return {{"model_type", type}, {"encoder_dims", "4,4"}, {"query_head_dims", "2,2"},
        {"value_head_dims", "2,2"}, {"num_heads", "2,2"}, {"num_encoder_layers", "1,1"},
        {"cnn_module_kernels", "3,3"}, {"left_context_len", "2,2"}, {"T", "45"},
        {"decode_chunk_len", "32"}};
}

Properties nemo()
{
    Properties properties{{"window_size", "16"}, {"chunk_shift", "16"}, {"subsampling_factor", "4"},
        {"vocab_size", "4"}};
    for (const char* key :
        {"cache_last_channel_dim1", "cache_last_channel_dim2", "cache_last_channel_dim3",
            "cache_last_time_dim1", "cache_last_time_dim2", "cache_last_time_dim3"})
        properties.emplaceBack(key, "2");
    return properties;
}

Properties paraformer()
{
    const QByteArray list = QByteArray("1.5,").repeated(559) + "-1e-3";
    return {{"model_type", "paraformer"}, {"vocab_size", "5"}, {"lfr_window_size", "7"},
        {"lfr_window_shift", "6"}, {"neg_mean", list}, {"inv_stddev", list}};
}

Properties streamingParaformer()
{
    return paraformer()
        + Properties{{"encoder_output_size", "512"}, {"decoder_num_blocks", "16"},
            {"decoder_kernel_size", "11"}};
}

Properties senseVoice()
{
    Properties properties = paraformer();
    properties.emplaceBack("normalize_samples", "0");
    for (const char* key : {"with_itn", "without_itn", "lang_auto", "lang_zh", "lang_en", "lang_ja",
             "lang_ko", "lang_yue"})
        properties.emplaceBack(key, "3");
    return properties;
}

Properties whisper()
{
    Properties properties{{"model_type", "whisper-tiny"}, {"n_mels", "80"},
        {"is_multilingual", "1"}, {"sot_sequence", "1,2,3"}, {"all_language_tokens", "4,5,6"},
        {"all_language_codes", "en,zh,de"}, {"n_vocab", "10"}};
    for (const char* key : {"n_text_layer", "n_text_ctx", "n_text_state", "sot", "eot", "blank_id",
             "translate", "transcribe", "no_timestamps", "no_speech"})
        properties.emplaceBack(key, "4");
    return properties;
}

Properties without(Properties properties, const QByteArray& key)
{
    properties.removeIf([&](const auto& property) { return property.first == key; });
    return properties;
}

Properties with(const Properties& properties, const QByteArray& key, const QByteArray& value)
{
    return without(properties, key) + Properties{{key, value}};
}

class OnnxModelTest : public ::testing::Test {
protected:
    QTemporaryDir folder;

    void write(const QString& name, const QByteArray& content) const
    {
        QFile file(folder.filePath(name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        ASSERT_EQ(file.write(content), content.size());
    }

    void write(const QString& name, const Properties& properties, int outputs = 2) const
    {
        write(name, testing::onnxFile({.properties = properties, .outputs = outputs}));
    }

    void writeTransducer(const Properties& encoder = zipformer2()) const
    {
        write("tokens.txt", bilingual);
        write("encoder.onnx", encoder);
        write("decoder.onnx", Properties{{"vocab_size", "5"}, {"context_size", "2"}}, 1);
        write("joiner.onnx", Properties{{"joiner_dim", "5"}}, 1);
    }

    void writeSingle(const Properties& properties) const
    {
        write("tokens.txt", bilingual + "</s> 5\n");
        write("model.onnx", properties);
    }

    void writePair(const Properties& encoder) const
    {
        write("tokens.txt", bilingual);
        write("encoder.onnx", encoder);
        write("decoder.onnx", Properties{});
    }

    OnnxModel found() const
    {
        const auto model = findOnnxModel(folder.path());
        EXPECT_TRUE(model) << model.error().detail.toStdString();
        return model.value_or(OnnxModel{});
    }

    OnnxProblem problem() const
    {
        const auto model = findOnnxModel(folder.path());
        EXPECT_FALSE(model);
        return model ? OnnxProblem{} : model.error();
    }

    /// Which of @p keys may be missing without a problem that names them.
    QList<QByteArray> notRequired(
        const Properties& properties, const QString& name, int outputs = 2) const
    {
        QList<QByteArray> keys;
        for (const auto& [key, value] : properties) {
            write(name, without(properties, key), outputs);
            const OnnxProblem expected{
                OnnxFault::KeyMissing, QStringLiteral("%1: %2").arg(name, QString::fromUtf8(key))};
            const auto model = findOnnxModel(folder.path());
            if (model || model.error() != expected)
                keys.append(key);
        }
        return keys;
    }
};

TEST_F(OnnxModelTest, AStreamingTransducerIsToldWithItsFiles)
{
    writeTransducer();

    const OnnxModel model = found();
    EXPECT_EQ(model.kind, OnnxModelKind::StreamingTransducer);
    EXPECT_TRUE(model.isStreaming());
    EXPECT_EQ(model.files.encoder, folder.filePath("encoder.onnx"));
    EXPECT_EQ(model.files.decoder, folder.filePath("decoder.onnx"));
    EXPECT_EQ(model.files.joiner, folder.filePath("joiner.onnx"));
    EXPECT_EQ(model.files.tokens, folder.filePath("tokens.txt"));
    EXPECT_EQ(model.files.model, QString());
    EXPECT_EQ(model.languages, (QStringList{"zh-CN", "en"}));
    EXPECT_TRUE(model.hasPunctuation);
    EXPECT_EQ(model.chunkFrames, 45);
}

TEST_F(OnnxModelTest, AZipformerOfTheFirstGenerationIsATransducerToo)
{
    writeTransducer(with(
        without(without(without(zipformer2("zipformer"), "query_head_dims"), "value_head_dims"),
            "num_heads"),
        "attention_dims", "4,4"));

    EXPECT_EQ(found().kind, OnnxModelKind::StreamingTransducer);
}

TEST_F(OnnxModelTest, SingleModelsAreToldApart)
{
    writeSingle(zipformer2());
    EXPECT_EQ(found().kind, OnnxModelKind::StreamingZipformerCtc);
    writeSingle(nemo());
    EXPECT_EQ(found().kind, OnnxModelKind::StreamingNemoCtc);
    EXPECT_EQ(found().chunkFrames, 16);
    writeSingle(senseVoice());
    EXPECT_EQ(found().kind, OnnxModelKind::SenseVoice);
    EXPECT_FALSE(found().isStreaming());
    writeSingle(paraformer());
    EXPECT_EQ(found().kind, OnnxModelKind::Paraformer);
    writeSingle({{"model_type", "zipformer2_ctc"}});
    EXPECT_EQ(found().kind, OnnxModelKind::ZipformerCtc);
    writeSingle({});
    EXPECT_EQ(found().kind, OnnxModelKind::ZipformerCtc) << "two inputs, no metadata";
}

TEST_F(OnnxModelTest, PairsAreToldApart)
{
    writePair(streamingParaformer());
    EXPECT_EQ(found().kind, OnnxModelKind::StreamingParaformer);
    writePair(whisper());
    EXPECT_EQ(found().kind, OnnxModelKind::Whisper);
}

TEST_F(OnnxModelTest, LanguagesComeFromTheMetadataWhereItTellsThem)
{
    writePair(whisper());
    EXPECT_EQ(found().languages, (QStringList{"en", "zh-CN", "de"}));
    writePair(with(whisper(), "is_multilingual", "0"));
    EXPECT_EQ(found().languages, QStringList{"en"});
    QFile::remove(folder.filePath("encoder.onnx"));
    writeSingle(senseVoice());
    EXPECT_EQ(found().languages, (QStringList{"zh-CN", "en", "ja", "ko", "yue"}));
}

TEST_F(OnnxModelTest, EveryKeyThatTheLibraryRequiresOfAnEncoderIsRequired)
{
    writeTransducer();
    EXPECT_EQ(notRequired(zipformer2(), "encoder.onnx"),
        (QList<QByteArray>{"model_type", "decode_chunk_len"}))
        << "these tell the kind";
    writeTransducer();
    EXPECT_EQ(notRequired({{"vocab_size", "5"}, {"context_size", "2"}}, "decoder.onnx", 1),
        QList<QByteArray>{});
}

TEST_F(OnnxModelTest, EveryKeyThatTheLibraryRequiresOfASingleModelIsRequired)
{
    writeSingle({});
    EXPECT_EQ(notRequired(zipformer2(), "model.onnx"),
        (QList<QByteArray>{"model_type", "decode_chunk_len"}));
    EXPECT_EQ(notRequired(nemo(), "model.onnx"), QList<QByteArray>{"cache_last_channel_dim1"});
    EXPECT_EQ(
        notRequired(senseVoice(), "model.onnx"), (QList<QByteArray>{"model_type", "with_itn"}));
    EXPECT_EQ(notRequired(paraformer(), "model.onnx"), QList<QByteArray>{"model_type"});
}

TEST_F(OnnxModelTest, EveryKeyThatTheLibraryRequiresOfAPairIsRequired)
{
    writePair({});
    EXPECT_EQ(notRequired(streamingParaformer(), "encoder.onnx"),
        (QList<QByteArray>{"model_type", "decoder_num_blocks"}));
    EXPECT_EQ(notRequired(whisper(), "encoder.onnx"), (QList<QByteArray>{"model_type", "n_mels"}));
}

TEST_F(OnnxModelTest, ValuesThatTheLibraryWouldEndTheProgramForAreRefused)
{
    const auto encoderProblem = [&](const QByteArray& key, const QByteArray& value) {
        writeTransducer(with(zipformer2(), key, value));
        return problem();
    };
    const auto unusable = [](const char* key) {
        return OnnxProblem{OnnxFault::KeyUnusable, QStringLiteral("encoder.onnx: ") + key};
    };
    EXPECT_EQ(encoderProblem("T", "many"), unusable("T"));
    EXPECT_EQ(encoderProblem("T", "-1"), unusable("T"));
    EXPECT_EQ(encoderProblem("T", "99999999999999"), unusable("T"));
    EXPECT_EQ(encoderProblem("decode_chunk_len", "0"), unusable("decode_chunk_len"))
        << "it would decode for ever";
    EXPECT_EQ(encoderProblem("encoder_dims", "4,x"), unusable("encoder_dims"));
    EXPECT_EQ(encoderProblem("encoder_dims", "4,"), unusable("encoder_dims"));
    EXPECT_EQ(encoderProblem("num_heads", "2"), unusable("num_heads"))
        << "it would read beyond the end of the shorter list";
}

TEST_F(OnnxModelTest, ListsThatAreReadWithoutALookAtTheirLengthAreCounted)
{
    writeSingle(with(senseVoice(), "neg_mean", "1,2,3"));
    EXPECT_EQ(problem(), (OnnxProblem{OnnxFault::KeyUnusable, "model.onnx: neg_mean"}));
    writeSingle(with(paraformer(), "inv_stddev", "1"));
    EXPECT_EQ(problem(), (OnnxProblem{OnnxFault::KeyUnusable, "model.onnx: inv_stddev"}));
    QFile::remove(folder.filePath("model.onnx"));
    for (const auto& [key, value] : Properties{{"all_language_tokens", "4,5"},
             {"all_language_tokens", "4,5,10"}, {"sot_sequence", "1"}}) {
        writePair(with(whisper(), key, value));
        EXPECT_EQ(problem(),
            (OnnxProblem{OnnxFault::KeyUnusable, "encoder.onnx: " + QString::fromUtf8(key)}))
            << value.toStdString();
    }
}

TEST_F(OnnxModelTest, KindsThatAreNotSupportedAreToldByTheirType)
{
    writeTransducer(without(zipformer2(), "decode_chunk_len"));
    EXPECT_EQ(problem(), (OnnxProblem{OnnxFault::UnknownKind, "encoder.onnx (zipformer2)"}))
        << "one for whole utterances";
    writeTransducer(zipformer2("lstm"));
    EXPECT_EQ(problem(), (OnnxProblem{OnnxFault::UnknownKind, "encoder.onnx (lstm)"}));
    writeTransducer();
    write("decoder.onnx", Properties{{"vocab_size", "5"}, {"context_size", "2"}}, 3);
    EXPECT_EQ(problem(), (OnnxProblem{OnnxFault::UnknownKind, "decoder.onnx"}))
        << "the library would take it for one of NeMo";
    writeSingle({{"model_type", "EncDecCTCModel"}});
    EXPECT_EQ(problem().fault, OnnxFault::UnknownKind);
}

TEST_F(OnnxModelTest, WhatBelongsToATransducerIsRequiredWhole)
{
    writeTransducer();
    for (const char* name : {"encoder.onnx", "decoder.onnx", "joiner.onnx"}) {
        writeTransducer();
        write(name, QByteArray("not an onnx file"));
        EXPECT_EQ(problem(), (OnnxProblem{OnnxFault::Malformed, name}));
    }
    QFile::remove(folder.filePath("encoder.onnx"));
    EXPECT_EQ(problem(), (OnnxProblem{OnnxFault::NoModel, folder.path()}));
}

TEST_F(OnnxModelTest, AFolderWithoutAModelIsTold)
{
    EXPECT_EQ(problem(), (OnnxProblem{OnnxFault::NoModel, folder.path()}));
    EXPECT_EQ(findOnnxModel(folder.filePath("absent")).error(),
        (OnnxProblem{OnnxFault::NoFolder, folder.filePath("absent")}));
    EXPECT_EQ(findOnnxModel("").error().fault, OnnxFault::NoFolder);
    write("model.onnx", Properties{});
    EXPECT_EQ(problem(), (OnnxProblem{OnnxFault::NoTokens, folder.path()}));
}

TEST_F(OnnxModelTest, TheTableOfTokensMustFitTheModel)
{
    writeTransducer();
    write("tokens.txt", QByteArray("<blk> 0\n你 1\n"));
    EXPECT_EQ(problem(), (OnnxProblem{OnnxFault::TokensShort, "tokens.txt: 2 < 5"}));
    QFile::remove(folder.filePath("joiner.onnx"));
    QFile::remove(folder.filePath("encoder.onnx"));

    writeSingle(nemo());
    write("tokens.txt", QByteArray("<blk> 0\n你 3\n"));
    EXPECT_EQ(problem(), (OnnxProblem{OnnxFault::TokensShort, "tokens.txt: 4 < 5"}))
        << "NeMo does not count the blank";
    write("tokens.txt", QByteArray("a 0\n你 4\n"));
    EXPECT_EQ(problem(), (OnnxProblem{OnnxFault::TokenMissing, "tokens.txt: <blk>"}));
    write("tokens.txt", QByteArray("a 0\n<blank> 4\n"));
    EXPECT_EQ(found().kind, OnnxModelKind::StreamingNemoCtc);

    write("model.onnx", paraformer());
    EXPECT_EQ(problem(), (OnnxProblem{OnnxFault::TokenMissing, "tokens.txt: </s>"}));
    write("tokens.txt", QByteArray("a b c\n"));
    EXPECT_EQ(problem(), (OnnxProblem{OnnxFault::TokensMalformed, "tokens.txt:1"}));
}

TEST_F(OnnxModelTest, TheLastOfSeveralSetsIsTakenAndItsSmallestFiles)
{
    write("tokens.txt", bilingual);
    for (const char* set : {"epoch-9-avg-1", "epoch-99-avg-1", "epoch-20-avg-1"}) {
        for (const char* precision : {"", ".int8", ".fp16"}) {
            const QString end = QStringLiteral("-%1%2.onnx").arg(set, precision);
            write("encoder" + end, zipformer2());
            write("decoder" + end, Properties{{"vocab_size", "5"}, {"context_size", "2"}}, 1);
            write("joiner" + end, Properties{}, 1);
        }
    }
    ASSERT_TRUE(QFile::remove(folder.filePath("decoder-epoch-99-avg-1.int8.onnx")));

    const OnnxModel model = found();
    EXPECT_EQ(model.files.encoder, folder.filePath("encoder-epoch-99-avg-1.int8.onnx"));
    EXPECT_EQ(model.files.decoder, folder.filePath("decoder-epoch-99-avg-1.onnx"));
    EXPECT_EQ(model.files.joiner, folder.filePath("joiner-epoch-99-avg-1.int8.onnx"));
}

TEST_F(OnnxModelTest, AModelIsFoundAmongOtherFiles)
{
    writeSingle(senseVoice());
    write("model.int8.onnx", senseVoice());
    write("silero_vad.onnx", Properties{});
    EXPECT_EQ(found().files.model, folder.filePath("model.int8.onnx"));
}

TEST_F(OnnxModelTest, NamesBeforeTheRoleAreTaken)
{
    write("tiny-encoder.onnx", whisper());
    write("tiny-decoder.int8.onnx", Properties{});
    write("tiny-tokens.txt", bilingual);

    const OnnxModel model = found();
    EXPECT_EQ(model.files.encoder, folder.filePath("tiny-encoder.onnx"));
    EXPECT_EQ(model.files.decoder, folder.filePath("tiny-decoder.int8.onnx"));
    EXPECT_EQ(model.files.tokens, folder.filePath("tiny-tokens.txt"));
}

TEST_F(OnnxModelTest, TheSizeCountsWhatIsUsedAndWeightsInFilesOfTheirOwn)
{
    writeSingle(senseVoice());
    const qint64 alone = QFileInfo(folder.filePath("model.onnx")).size();
    EXPECT_EQ(found().files.bytes, alone);
    write("model.onnx.data", QByteArray(3000, 'w'));
    write("model.weights", QByteArray(500, 'w'));
    write("README.md", QByteArray(700, 'r'));
    EXPECT_EQ(found().files.bytes, alone + 3500);
}

TEST_F(OnnxModelTest, TermsCanBeFavouredAsTheTokensAllow)
{
    writeTransducer();
    EXPECT_EQ(found().modelingUnit, "cjkchar") << "words need a vocabulary of pieces";
    write("bpe.vocab", QByteArray("▁HELLO -1\n"));
    EXPECT_EQ(found().modelingUnit, "cjkchar+bpe");
    write("bpe.vocab", QByteArray("▁HELLO\n"));
    EXPECT_EQ(found().modelingUnit, "cjkchar") << "a damaged one";
    EXPECT_EQ(found().files.bpeVocabulary, QString());

    write("tokens.txt", QByteArray("<blk> 0\n▁HELLO 4\n"));
    EXPECT_FALSE(found().canFavourTerms());
    write("bpe.vocab", QByteArray("▁HELLO -1\n"));
    EXPECT_EQ(found().modelingUnit, "bpe");
}

TEST_F(OnnxModelTest, OtherKindsFavourNoTerms)
{
    writeSingle(zipformer2());
    EXPECT_FALSE(found().canFavourTerms());
    writeSingle(senseVoice());
    EXPECT_FALSE(found().canFavourTerms());
}

} // namespace
} // namespace tavrin

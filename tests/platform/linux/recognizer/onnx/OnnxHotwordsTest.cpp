#include "platform/linux/recognizer/onnx/OnnxHotwords.h"

#include "support/QtPrinters.h"

#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace tavrin {
namespace {

class OnnxHotwordsTest : public ::testing::Test {
protected:
    QTemporaryDir folder;

    QString written(const QString& name, const QByteArray& content) const
    {
        QFile file(folder.filePath(name));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        EXPECT_EQ(file.write(content), content.size());
        return file.fileName();
    }

    OnnxHotwords hotwords(const QByteArray& unit, const QList<QByteArray>& tokens,
        const QList<QByteArray>& pieces = {}) const
    {
        OnnxModel model;
        model.modelingUnit = unit;
        QByteArray table = "<blk> 0\n";
        for (qsizetype i = 0; i < tokens.size(); ++i)
            table += tokens[i] + ' ' + QByteArray::number(i + 1) + '\n';
        model.files.tokens = written("tokens.txt", table);
        if (!pieces.isEmpty())
            model.files.bpeVocabulary = written("bpe.vocab", pieces.join(" -1\n") + " -1\n");
        return *OnnxHotwords::of(model);
    }
};

TEST_F(OnnxHotwordsTest, TermsOfKnownCharactersAreTaken)
{
    const OnnxHotwords characters = hotwords("cjkchar", {"世", "界", "你", "好"});
    EXPECT_EQ(characters.from({"世界", " 你好 ", "你 好"}), "世界/你好/你 好");
    EXPECT_EQ(characters.from({}), "");
}

TEST_F(OnnxHotwordsTest, ATermWithAnUnknownCharacterIsLeftOutWhole)
{
    const OnnxHotwords characters = hotwords("cjkchar", {"世", "界", "▁HELLO"});
    EXPECT_EQ(characters.from({"龘世", "世界", "HELLO", "世HELLO"}), "世界");
}

TEST_F(OnnxHotwordsTest, WhatTheLibraryTakesForSyntaxIsLeftOut)
{
    const OnnxHotwords characters =
        hotwords("cjkchar", {"世", "界", "/", ":", "#", "@", "x", "<", "\x01"});
    EXPECT_EQ(characters.from({"世/界", "#世", "世 :x", ":世", "@世", "世#", "世\x01界",
                  QString(QChar(0)) + "世", "", " \n ", QString(65, u'世')}),
        "");
    EXPECT_EQ(characters.from({"世\n界"}), "世 界") << "a line end is a space";
}

TEST_F(OnnxHotwordsTest, TermsAreBounded)
{
    const OnnxHotwords characters = hotwords("cjkchar", {"世"});
    const QStringList many(500, "世");
    EXPECT_EQ(characters.from(many).count('/'), 99);
}

TEST_F(OnnxHotwordsTest, WordsAreTakenWhereEveryWayToCutThemMakesTokens)
{
    const QList<QByteArray> letters{"▁", "H", "E", "L", "O"};
    const OnnxHotwords pieces = hotwords("bpe", letters + QList<QByteArray>{"▁HE", "LLO"},
        letters + QList<QByteArray>{"▁HE", "LLO"});
    EXPECT_EQ(pieces.from({"HELLO", "HELLO HOLE"}), "HELLO/HELLO HOLE");
    EXPECT_EQ(pieces.from({"HELP"}), "") << "a letter that no piece has";

    const OnnxHotwords untold = hotwords("bpe", letters, letters + QList<QByteArray>{"LLO"});
    EXPECT_EQ(untold.from({"HELLO", "HOLE"}), "HOLE") << "a piece that is no token";

    const OnnxHotwords headless = hotwords("bpe", letters, {"H", "E", "L", "O"});
    EXPECT_EQ(headless.from({"HELLO"}), "") << "nothing begins a word";
}

TEST_F(OnnxHotwordsTest, MixedTermsAreCutAsTheLibraryCutsThem)
{
    const QList<QByteArray> tokens{"世", "界", "▁", "H", "I", "2", "-"};
    const OnnxHotwords mixed = hotwords("cjkchar+bpe", tokens, {"▁", "H", "I", "▁HI"});
    EXPECT_EQ(mixed.from({"世界HI"}), "") << "the piece ▁HI is no token";

    const OnnxHotwords whole =
        hotwords("cjkchar+bpe", tokens + QList<QByteArray>{"▁HI"}, {"▁", "H", "I", "▁HI"});
    EXPECT_EQ(whole.from({"世界HI", "HI 世界", "HI-世", "2", "22"}), "世界HI/HI 世界/HI-世/2")
        << "a number is looked up as it stands";
}

TEST_F(OnnxHotwordsTest, LettersAreSpelledAsTheModelKnowsThem)
{
    const QList<QByteArray> capitals{"▁", "H", "I", "▁HI"};
    EXPECT_EQ(hotwords("bpe", capitals, capitals).from({"Hi"}), "HI");
    const QList<QByteArray> small{"▁", "h", "i", "▁hi"};
    EXPECT_EQ(hotwords("bpe", small, small).from({"HI"}), "hi");
    const QList<QByteArray> both{"▁", "H", "i", "▁Hi"};
    EXPECT_EQ(hotwords("bpe", both, both).from({"Hi", "HI"}), "Hi");
}

} // namespace
} // namespace tavrin

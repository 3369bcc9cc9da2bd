#include "platform/linux/speech/onnx/OnnxTokens.h"

#include "platform/linux/speech/onnx/BpeVocabulary.h"
#include "support/QtPrinters.h"

#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace tavrin {
namespace {

class OnnxTokensTest : public ::testing::Test {
protected:
    QTemporaryDir folder;

    QString written(const QByteArray& content) const
    {
        QFile file(folder.filePath("tokens.txt"));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        EXPECT_EQ(file.write(content), content.size());
        return file.fileName();
    }

    OnnxResult<OnnxTokens> tokens(const QByteArray& content) const
    {
        return OnnxTokens::read(written(content));
    }

    OnnxProblem problem(const QByteArray& content) const
    {
        const auto read = tokens(content);
        return read ? OnnxProblem{} : read.error();
    }

    std::optional<BpeVocabulary> vocabulary(const QByteArray& content) const
    {
        return BpeVocabulary::read(written(content));
    }
};

TEST_F(OnnxTokensTest, TokensStandThereWithTheirNumbers)
{
    const auto read = tokens("<blk> 0\n你 1\n▁HELLO 7\n");

    ASSERT_TRUE(read);
    EXPECT_TRUE(read->contains("你"));
    EXPECT_TRUE(read->contains("▁HELLO"));
    EXPECT_FALSE(read->contains("HELLO"));
    EXPECT_EQ(read->size(), 8);
}

TEST_F(OnnxTokensTest, LineEndsOfWindowsAndASpaceAsATokenAreTaken)
{
    const auto read = tokens("<blk> 0\r\n  1\r\nb\t2\r\n\n");

    ASSERT_TRUE(read);
    EXPECT_TRUE(read->contains("<blk>"));
    EXPECT_TRUE(read->contains(" "));
    EXPECT_TRUE(read->contains("b"));
    EXPECT_EQ(read->size(), 3);
}

TEST_F(OnnxTokensTest, WhatTheLibraryWouldEndTheProgramForIsRefusedWithItsLine)
{
    EXPECT_EQ(
        problem("<blk> 0\na b 1\n"), (OnnxProblem{OnnxFault::TokensMalformed, "tokens.txt:2"}));
    EXPECT_EQ(problem("<blk> zero\n").fault, OnnxFault::TokensMalformed);
    EXPECT_EQ(problem("<blk> -1\n").fault, OnnxFault::TokensMalformed);
    EXPECT_EQ(problem("<blk> 99999999999\n").fault, OnnxFault::TokensMalformed);
    EXPECT_EQ(problem("<blk>\n").fault, OnnxFault::TokensMalformed);
    EXPECT_EQ(problem("").fault, OnnxFault::TokensMalformed);
}

TEST_F(OnnxTokensTest, AHugeFileAndAHugeLineAreRefused)
{
    EXPECT_EQ(problem(QByteArray(2000, 'x') + " 1\n").fault, OnnxFault::TokensMalformed);
    EXPECT_EQ(
        problem(QByteArray("a 1\n").repeated(5LL * 1024 * 1024)).fault, OnnxFault::TokensMalformed);
    EXPECT_EQ(OnnxTokens::read(folder.path()).error().fault, OnnxFault::Unreadable);
}

TEST_F(OnnxTokensTest, TheCharactersTellTheLanguages)
{
    EXPECT_EQ(tokens("你 0\n好 1\n▁HELLO 2\n")->languages(), (QStringList{"zh-CN", "en"}));
    EXPECT_EQ(tokens("你 0\nA 1\n")->languages(), QStringList{"zh-CN"}) << "a letter is no word";
    EXPECT_EQ(tokens("日 0\nの 1\n")->languages(), QStringList{"ja"});
    EXPECT_EQ(tokens("▁안 0\n")->languages(), QStringList{"ko"});
    EXPECT_EQ(tokens("▁le 0\n▁été 1\n")->languages(), QStringList{}) << "some language of Europe";
    EXPECT_EQ(tokens("hel@@ 0\nlo 1\n")->languages(), QStringList{"en"});
    EXPECT_EQ(tokens("<blk> 0\n<unk> 1\n")->languages(), QStringList{});
}

TEST_F(OnnxTokensTest, AFewForeignWordsMakeNoLanguage)
{
    QByteArray content = "▁HELLO 0\n";
    for (int i = 0; i < 500; ++i)
        content += QString(QChar(0x4e00 + i)).toUtf8() + ' ' + QByteArray::number(i + 1) + '\n';
    EXPECT_EQ(tokens(content)->languages(), QStringList{"zh-CN"});
}

TEST_F(OnnxTokensTest, PunctuationAndCapitalsAreSeen)
{
    EXPECT_TRUE(tokens("你 0\n， 1\n")->hasPunctuation());
    EXPECT_TRUE(tokens("a 0\n▁? 1\n")->hasPunctuation());
    EXPECT_FALSE(tokens("你 0\n▁HELLO 1\n' 2\n")->hasPunctuation());

    EXPECT_TRUE(tokens("▁HELLO 0\n")->isUpperCase());
    EXPECT_TRUE(tokens("▁hello 0\n")->isLowerCase());
    EXPECT_FALSE(tokens("▁Hello 0\n")->isUpperCase());
    EXPECT_FALSE(tokens("▁Hello 0\n")->isLowerCase());
}

TEST_F(OnnxTokensTest, APiecesVocabularyHasAPieceAndAScoreToALine)
{
    const auto read = vocabulary("<unk>\t0\n▁HE\t-1.5\nLLO\t-2\n");
    ASSERT_TRUE(read);
    EXPECT_TRUE(read->contains("▁HE"));
    EXPECT_FALSE(read->contains("HE"));
}

TEST_F(OnnxTokensTest, AVocabularyThatTheLibraryWouldEndTheProgramForIsRefused)
{
    for (const char* content :
        {"", "\n", "▁HE\n", "▁HE score\n", "▁HE 1 2\n", "a 1\n\nb 2\n", "a 1\na 2\n", "a nan\n"})
        EXPECT_FALSE(vocabulary(content)) << content;
    EXPECT_FALSE(BpeVocabulary::read(folder.filePath("absent")));
    EXPECT_FALSE(BpeVocabulary::read(folder.path()));
}

} // namespace
} // namespace tavrin

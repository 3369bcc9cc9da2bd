#include "delivery/UnicodeChunks.h"

#include "support/QtPrinters.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace tavrin {
namespace {

/// What must hold for any text: pieces of 1 to 16 units that join to the text, no pair split.
void expectSound(const QString& text)
{
    const QStringList chunks = unicodeChunks(text);
    EXPECT_EQ(chunks.join(QString()), text);
    for (qsizetype i = 0; i < chunks.size(); ++i) {
        EXPECT_GE(chunks[i].size(), 1);
        EXPECT_LE(chunks[i].size(), 16);
        if (i + 1 < chunks.size()) {
            EXPECT_FALSE(
                chunks[i].back().isHighSurrogate() && chunks[i + 1].front().isLowSurrogate());
        }
    }
}

TEST(UnicodeChunksTest, AnEmptyTextHasNoChunks)
{
    EXPECT_TRUE(unicodeChunks(QString()).isEmpty());
}

TEST(UnicodeChunksTest, SixteenUnitsAreOneChunk)
{
    EXPECT_EQ(unicodeChunks(u"0123456789abcdef"_s), QStringList{u"0123456789abcdef"_s});
}

TEST(UnicodeChunksTest, TheSeventeenthUnitStartsTheNextChunk)
{
    EXPECT_EQ(unicodeChunks(u"0123456789abcdefg"_s), (QStringList{u"0123456789abcdef"_s, u"g"_s}));
}

TEST(UnicodeChunksTest, AnEmojiAcrossTheBorderMovesWholeToTheNextChunk)
{
    EXPECT_EQ(unicodeChunks(u"0123456789abcde😀z"_s), (QStringList{u"0123456789abcde"_s, u"😀z"_s}));
}

TEST(UnicodeChunksTest, AnEmojiThatEndsAtTheBorderStays)
{
    EXPECT_EQ(unicodeChunks(u"0123456789abcd😀z"_s), (QStringList{u"0123456789abcd😀"_s, u"z"_s}));
}

TEST(UnicodeChunksTest, ALoneHighSurrogateAtTheVeryEndStaysInItsChunk)
{
    const QString text = u"0123456789abcde"_s + QChar(0xD83D);

    EXPECT_EQ(unicodeChunks(text), QStringList{text});
}

TEST(UnicodeChunksTest, AnyTextIsCutSoundly)
{
    for (int padding = 0; padding < 40; ++padding) {
        expectSound(QString(padding, u'x') + u"😀😀😀😀😀😀😀😀😀😀"_s);
        expectSound(QString(padding, u'x') + QString(40, QChar(0xD83D)));
        expectSound(QString(padding, u'\0') + QString(40, QChar(0xDE00)));
    }
}

TEST(UnicodeChunksTest, AMegabyteIsCutCompletely)
{
    expectSound(QString(1'000'000, u'中'));
}

} // namespace
} // namespace tavrin

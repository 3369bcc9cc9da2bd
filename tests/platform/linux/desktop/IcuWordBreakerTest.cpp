#include "platform/linux/desktop/IcuWordBreaker.h"

#include "support/QtPrinters.h"

#include <QStringList>
#include <gtest/gtest.h>

namespace tavrin::testing {
namespace {

QStringList wordsOf(const QString& text)
{
    IcuWordBreaker breaker;
    QStringList words;
    for (const TextRange& range : breaker.words(text))
        words.append(text.mid(range.location, range.length));
    return words;
}

TEST(IcuWordBreakerTest, ChineseIsCutIntoWords)
{
    EXPECT_EQ(wordsOf(QStringLiteral("我们今天开会。")),
        QStringList({QStringLiteral("我们"), QStringLiteral("今天"), QStringLiteral("开会")}));
}

TEST(IcuWordBreakerTest, SpacesAndPunctuationBelongToNoWord)
{
    EXPECT_EQ(wordsOf(QStringLiteral("Don't “stop”, 3.5 times — ok? 😀")),
        QStringList({QStringLiteral("Don't"), QStringLiteral("stop"), QStringLiteral("3.5"),
            QStringLiteral("times"), QStringLiteral("ok")}));
}

TEST(IcuWordBreakerTest, MixedTextKeepsItsPlacesInUtf16Units)
{
    IcuWordBreaker breaker;
    const QString text = QStringLiteral("😀 Qt 程序");
    const QList<TextRange> ranges = breaker.words(text);
    ASSERT_EQ(ranges.size(), 2);
    EXPECT_EQ(ranges[0], (TextRange{3, 2}));
    EXPECT_EQ(ranges[1], (TextRange{6, 2}));
}

TEST(IcuWordBreakerTest, TextWithoutWordsHasNone)
{
    EXPECT_TRUE(wordsOf(QString()).isEmpty());
    EXPECT_TRUE(wordsOf(QStringLiteral(" ，。!\n")).isEmpty());
    EXPECT_TRUE(wordsOf(QString(QChar(0xd83d))).isEmpty());
}

} // namespace
} // namespace tavrin::testing

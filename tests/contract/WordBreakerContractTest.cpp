#include "contract/Subject.h"
#include "platform/WordBreaker.h"
#include "platform/linux/desktop/IcuWordBreaker.h"
#include "support/QtPrinters.h"
#include "support/ports/InMemoryWordBreaker.h"

#include <QStringList>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace tavrin::testing {
namespace {

class WordBreakerContractTest : public ContractTest<WordBreaker> {
protected:
    [[nodiscard]] QStringList wordsOf(const QString& text)
    {
        QStringList words;
        for (const TextRange& range : subject().words(text))
            words.append(text.mid(range.location, range.length));
        return words;
    }

    [[nodiscard]] QList<TextRange> rangesOf(const QString& text) { return subject().words(text); }
};

INSTANTIATE_TEST_SUITE_P(Implementations, WordBreakerContractTest,
    ::testing::Values(
        Implementation<WordBreaker>{"InMemory", makeSubject<WordBreaker, InMemoryWordBreaker>},
        Implementation<WordBreaker>{"Icu", makeSubject<WordBreaker, IcuWordBreaker>}),
    implementationName);

TEST_P(WordBreakerContractTest, WordsComeInOrderWithoutSpacesAndPunctuation)
{
    EXPECT_EQ(wordsOf(u" open the file, then 42 others!"_s),
        QStringList({u"open"_s, u"the"_s, u"file"_s, u"then"_s, u"42"_s, u"others"_s}));
}

TEST_P(WordBreakerContractTest, PlacesCountUtf16Units)
{
    EXPECT_EQ(rangesOf(u"😀 ab c"_s), QList<TextRange>({{3, 2}, {6, 1}}));
}

TEST_P(WordBreakerContractTest, ATextWithoutWordsHasNone)
{
    EXPECT_TRUE(rangesOf(QString()).isEmpty());
    EXPECT_TRUE(rangesOf(u" ，。! \n"_s).isEmpty());
}

TEST_P(WordBreakerContractTest, OneTextLeavesNothingForTheNext)
{
    EXPECT_EQ(wordsOf(u"first text"_s), QStringList({u"first"_s, u"text"_s}));
    EXPECT_EQ(wordsOf(u"second"_s), QStringList({u"second"_s}));
}

} // namespace
} // namespace tavrin::testing

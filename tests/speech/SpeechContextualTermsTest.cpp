#include "speech/SpeechContextualTerms.h"

#include "support/QtPrinters.h"

#include <gtest/gtest.h>

namespace tavrin {
namespace {

const QStringList fixedTerms{"Tavrin", "Typeless", "OpenAI", "Gemini", "Codex", "ChatGPT", "API",
    "STT", "LLM", "macOS", "Swift", "Objective-C", "Electron", "GitHub", "Notion", "Slack",
    "Cursor"};

QStringList numberedTerms(int count)
{
    QStringList terms;
    for (int number = 0; number < count; ++number)
        terms.append(QStringLiteral("term %1").arg(number));
    return terms;
}

TEST(SpeechContextualTermsTest, TheFixedTermsStandAloneWithoutADictionary)
{
    EXPECT_EQ(SpeechContextualTerms({}), fixedTerms);
}

TEST(SpeechContextualTermsTest, DictionaryTermsFollowInTheirOrder)
{
    EXPECT_EQ(
        SpeechContextualTerms({"Zhang", "Anna"}), (fixedTerms + QStringList{"Zhang", "Anna"}));
}

TEST(SpeechContextualTermsTest, ADictionaryTermThatIsFixedIsListedTwice)
{
    const QStringList terms = SpeechContextualTerms({"Slack"});

    EXPECT_EQ(terms.count("Slack"), 2);
    EXPECT_EQ(terms.last(), "Slack");
}

TEST(SpeechContextualTermsTest, TheFirstEightyThreeDictionaryTermsAreKept)
{
    EXPECT_EQ(SpeechContextualTerms(numberedTerms(83)), fixedTerms + numberedTerms(83));
    EXPECT_EQ(SpeechContextualTerms(numberedTerms(84)), fixedTerms + numberedTerms(83));
    EXPECT_EQ(SpeechContextualTerms(numberedTerms(200)).size(), 100);
}

TEST(SpeechContextualTermsTest, TermsAreNotChanged)
{
    EXPECT_EQ(SpeechContextualTerms({" a\tb\n", QStringLiteral("张小明")}).mid(17),
        (QStringList{" a\tb\n", QStringLiteral("张小明")}));
}

} // namespace
} // namespace tavrin

#include "dictionary/CorrectionCandidates.h"

#include "platform/WordBreaker.h"
#include "support/QtPrinters.h"

#include <gtest/gtest.h>

#include <utility>

using namespace Qt::StringLiterals;

namespace tavrin {
namespace {

/// Tells the words that the test lists, wherever they stand.
class ListedWords final : public WordBreaker {
public:
    QStringList listed;

    [[nodiscard]] QList<TextRange> words(QStringView text) override
    {
        QList<TextRange> found;
        for (const QString& word : listed)
            found.append({text.indexOf(word), word.size()});
        return found;
    }
};

class CorrectionCandidatesTest : public ::testing::Test {
protected:
    ListedWords words;

    QStringList candidates(const QString& original, const QString& corrected)
    {
        return dictionaryCandidatesFromOriginal(original, corrected, words);
    }
};

TEST_F(CorrectionCandidatesTest, TheWordThatTheChangeMadeIsOne)
{
    EXPECT_EQ(
        candidates(u"We use open ai here."_s, u"We use OpenAI here."_s), QStringList(u"OpenAI"_s));
}

TEST_F(CorrectionCandidatesTest, NothingChangedOrNothingThereTeachesNothing)
{
    EXPECT_EQ(candidates(u"same"_s, u"same"_s), QStringList());
    EXPECT_EQ(candidates(QString(), u"Word"_s), QStringList());
    EXPECT_EQ(candidates(u"Word"_s, QString()), QStringList());
}

TEST_F(CorrectionCandidatesTest, ADeletionTeachesNothing)
{
    EXPECT_EQ(candidates(u"We use OpenAI here."_s, u"We OpenAI here."_s), QStringList());
}

TEST_F(CorrectionCandidatesTest, AChangeOfMoreThan64UnitsTeachesNothing)
{
    const QString after = u"a (%1) b"_s;
    EXPECT_EQ(
        candidates(u"a () b"_s, after.arg(QString(62, u'.') + u"Ab"_s)), QStringList(u"Ab"_s));
    EXPECT_EQ(candidates(u"a () b"_s, after.arg(QString(63, u'.') + u"Ab"_s)), QStringList());
}

TEST_F(CorrectionCandidatesTest, AWordThatTheChangeOnlyTouchesCountsToo)
{
    // "Script" was put in right behind "Type", "Post" right before "gres".
    EXPECT_EQ(candidates(u"in Type now"_s, u"in Type-Script now"_s), QStringList(u"Type-Script"_s));
    EXPECT_EQ(candidates(u"x (gres)"_s, u"x Post!(gres)"_s), QStringList(u"Post"_s));
    EXPECT_EQ(candidates(u"see Max"_s, u"see Max!"_s), QStringList(u"Max"_s));
    EXPECT_EQ(candidates(u"see Max"_s, u"see !Max"_s), QStringList(u"Max"_s));
    EXPECT_EQ(candidates(u"see , Max"_s, u"see ,! Max"_s), QStringList());
}

TEST_F(CorrectionCandidatesTest, LatinWordsHaveLettersDigitsAndSigns)
{
    EXPECT_EQ(candidates(u"x"_s, u"node.js C++ a_b it's 9to5 e-mail Q ü"_s),
        QStringList({u"node.js"_s, u"C++"_s, u"a_b"_s, u"it's"_s, u"to5"_s, u"e-mail"_s}));
}

TEST_F(CorrectionCandidatesTest, ALongWordIsCutAfter40Characters)
{
    const QString run = QString(50, u'k');
    EXPECT_EQ(candidates(u"x"_s, run), QStringList({run.left(40), run.left(10)}));
}

TEST_F(CorrectionCandidatesTest, HalvesOfSurrogatePairsHideNoWord)
{
    const QString half(1, QChar(0xD83D));
    EXPECT_EQ(candidates(u"see x"_s + half, u"see Kate"_s + half), QStringList(u"Kate"_s));
    EXPECT_EQ(candidates(u"x"_s, u"Kate"_s + half + u"Ann"_s), QStringList({u"Kate"_s, u"Ann"_s}));
}

TEST_F(CorrectionCandidatesTest, ChineseWordsThatTheChangeOverlapsCount)
{
    words.listed = QStringList{u"我"_s, u"认识"_s, u"李小龙"_s, u"先生"_s};

    EXPECT_EQ(candidates(u"我认识李晓龙先生"_s, u"我认识李小龙先生"_s), QStringList(u"李小龙"_s));
}

TEST_F(CorrectionCandidatesTest, AChineseWordThatTheChangeOnlyTouchesDoesNotCount)
{
    words.listed = QStringList{u"认识"_s, u"先生"_s};

    EXPECT_EQ(candidates(u"认识先生"_s, u"认识，先生"_s), QStringList());
}

TEST_F(CorrectionCandidatesTest, OnlyWordsOf2To12IdeographsCount)
{
    const QString twelve = u"一二三四五六七八九十百千"_s;
    words.listed = QStringList{u"张"_s, twelve, twelve + u'万', u"小A"_s, u"ひら"_s};
    for (const QString& word : std::as_const(words.listed)) {
        const QString text = u"<"_s + word + u">"_s;
        ListedWords one;
        one.listed = QStringList(word);
        EXPECT_EQ(dictionaryCandidatesFromOriginal(u"<?>"_s, text, one),
            word == twelve ? QStringList(twelve) : QStringList());
    }
}

TEST_F(CorrectionCandidatesTest, TheIdeographsAreThoseOfOneBlock)
{
    for (const char16_t unit : {u'\u33FF', u'\u3400', u'\u9FFF', u'\uA000'}) {
        const QString pair(2, QChar(unit));
        EXPECT_EQ(candidates(u"<>"_s, u"<%1>"_s.arg(pair)),
            unit == u'\u3400' || unit == u'\u9FFF' ? QStringList(pair) : QStringList());
    }
}

TEST_F(CorrectionCandidatesTest, WhatWasPutInCountsWithoutPunctuationAndSpacesAroundIt)
{
    EXPECT_EQ(candidates(u"我找。"_s, u"我找，“王小明”。"_s), QStringList(u"王小明"_s));
    EXPECT_EQ(candidates(u"我找。"_s, u"我找 王小明\n。"_s), QStringList(u"王小明"_s));
    // Punctuation within spaces is not at the end.
    EXPECT_EQ(candidates(u"我找。"_s, u"我找 “王小明” 。"_s), QStringList());
    EXPECT_EQ(candidates(u"我找。"_s, u"我找王。"_s), QStringList());
    EXPECT_EQ(candidates(u"我找。"_s, u"我找王a明。"_s), QStringList());
}

TEST_F(CorrectionCandidatesTest, WordsComeInTheOrderTheyAreFoundAndOnce)
{
    words.listed = QStringList{u"小明"_s, u"小明"_s};

    EXPECT_EQ(candidates(u"call x now"_s, u"call Kate小明Ann Kate now"_s),
        QStringList({u"Kate"_s, u"Ann"_s, u"小明"_s}));
}

TEST_F(CorrectionCandidatesTest, LetterCaseMakesAnotherWord)
{
    EXPECT_EQ(
        candidates(u"-"_s, u"Kate kate KATE"_s), QStringList({u"Kate"_s, u"kate"_s, u"KATE"_s}));
}

TEST(HighConfidenceTest, WhatLooksLikeANameIsOne)
{
    for (const QString& name : {u"GPT4"_s, u"4x"_s, u"OpenAI"_s, u"iPhone"_s, u"NASA"_s,
             u"node.js"_s, u"a_b"_s, u"C+"_s, u"e-mail"_s, u"A"_s, u"Q"_s, u"王٣"_s})
        EXPECT_TRUE(isHighConfidenceDictionaryTerm(name)) << name.toStdString();
}

TEST(HighConfidenceTest, OrdinaryWordsAreNot)
{
    for (const QString& word : {u"word"_s, u"Word"_s, u"it's"_s, u"李小龙"_s, u"Élan"_s, u"a"_s,
             QString(), u"王"_s, u"!"_s})
        EXPECT_FALSE(isHighConfidenceDictionaryTerm(word)) << word.toStdString();
}

TEST(HighConfidenceTest, ACapitalAloneAmongOtherSignsIsOneUpTo12Units)
{
    EXPECT_TRUE(isHighConfidenceDictionaryTerm(u'Q' + QString(11, u'!')));
    EXPECT_FALSE(isHighConfidenceDictionaryTerm(u'Q' + QString(12, u'!')));
}

} // namespace
} // namespace tavrin

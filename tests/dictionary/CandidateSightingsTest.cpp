#include "dictionary/CandidateSightings.h"

#include "dictionary/DictionaryStore.h"
#include "platform/preferences/PreferenceKeys.h"
#include "support/QtPrinters.h"
#include "support/ports/InMemoryPreferences.h"
#include "support/ports/VirtualTime.h"

#include <gtest/gtest.h>

#include <limits>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace tavrin {
namespace {

class CandidateSightingsTest : public ::testing::Test {
protected:
    testing::InMemoryPreferences preferences;
    testing::VirtualTime time;

    bool learn(const QStringList& candidates)
    {
        return learnDictionaryCandidates(preferences, time, candidates);
    }

    QList<DictionaryEntry> entries() { return DictionaryEntries(preferences, time); }

    QStringList terms()
    {
        QStringList terms;
        for (const DictionaryEntry& entry : entries())
            terms.append(entry.term());
        return terms;
    }

    QVariantMap counts() const
    {
        return preferences.value(keys::dictionaryLearningCandidateCounts).toMap();
    }
};

TEST_F(CandidateSightingsTest, ANameIsLearnedAtFirstSight)
{
    time.advance(5s);
    EXPECT_TRUE(learn({u"OpenAI"_s}));

    ASSERT_EQ(terms(), QStringList(u"OpenAI"_s));
    const DictionaryEntry entry = entries().first();
    EXPECT_EQ(entry.source(), u"auto"_s);
    EXPECT_EQ(entry.hitCount(), 1);
    EXPECT_TRUE(entry.isEnabled());
    EXPECT_FALSE(entry.id().isEmpty());
    EXPECT_EQ(entry.createdAt(), time.sinceEpoch());
    EXPECT_EQ(entry.updatedAt(), time.sinceEpoch());
}

TEST_F(CandidateSightingsTest, AnOrdinaryWordIsLearnedTheSecondTime)
{
    EXPECT_FALSE(learn({u"Müller"_s}));
    EXPECT_EQ(terms(), QStringList());
    EXPECT_EQ(counts(), (QVariantMap{{u"müller"_s, 1}}));

    EXPECT_TRUE(learn({u"müller"_s}));
    EXPECT_EQ(terms(), QStringList(u"müller"_s));
    EXPECT_EQ(counts(), (QVariantMap{{u"müller"_s, 2}}));
}

TEST_F(CandidateSightingsTest, WordsOfOtherLetterCaseCountTogetherWithinOnePass)
{
    EXPECT_TRUE(learn({u"Kate"_s, u"kate"_s, u"KATE"_s}));

    ASSERT_EQ(terms(), QStringList(u"kate"_s));
    EXPECT_EQ(entries().first().hitCount(), 2);
    EXPECT_EQ(counts(), (QVariantMap{{u"kate"_s, 3}}));
}

TEST_F(CandidateSightingsTest, AKnownTermIsSightedAndKeepsItsSpelling)
{
    QVariantMap switchedOff = DictionaryEntry::manual(u"Ann"_s, Seconds{1}).stored();
    switchedOff[u"enabled"_s] = false;
    SaveDictionaryEntries(preferences,
        {DictionaryEntry::manual(u"First"_s, Seconds{1}), DictionaryEntry(switchedOff)});
    time.advance(9s);

    EXPECT_TRUE(learn({u"ANN"_s}));

    ASSERT_EQ(terms(), QStringList({u"First"_s, u"Ann"_s}));
    const DictionaryEntry entry = entries().at(1);
    EXPECT_EQ(entry.hitCount(), 1);
    EXPECT_EQ(entry.updatedAt(), time.sinceEpoch());
    EXPECT_EQ(entry.createdAt(), Seconds{1});
    EXPECT_EQ(entry.source(), u"manual"_s);
    EXPECT_FALSE(entry.isEnabled());
    EXPECT_EQ(entries().first().hitCount(), 0);
}

TEST_F(CandidateSightingsTest, TheNewestTermStandsFirst)
{
    learn({u"A1"_s, u"B2"_s});

    EXPECT_EQ(terms(), QStringList({u"B2"_s, u"A1"_s}));
}

TEST_F(CandidateSightingsTest, NoCandidatesStoreNothing)
{
    EXPECT_FALSE(learn({}));

    EXPECT_FALSE(preferences.value(keys::dictionaryLearningCandidateCounts).isValid());
    EXPECT_EQ(preferences.synchronizations(), 0);
}

TEST_F(CandidateSightingsTest, CountsAreFlushedEvenWhereNoEntryChanges)
{
    learn({u"word"_s});

    EXPECT_EQ(preferences.flushed(keys::dictionaryLearningCandidateCounts).toMap(),
        (QVariantMap{{u"word"_s, 1}}));
}

TEST_F(CandidateSightingsTest, OldCountsStillCount)
{
    preferences.setValue(
        keys::dictionaryLearningCandidateCounts, QVariantMap{{u"word"_s, 1}, {u"other"_s, 7}});

    EXPECT_TRUE(learn({u"Word"_s}));
    EXPECT_EQ(counts(), (QVariantMap{{u"word"_s, 2}, {u"other"_s, 7}}));
}

TEST_F(CandidateSightingsTest, CountsThatAreNoNumbersCountAsNone)
{
    const QVariantMap broken{
        {u"negative"_s, -5}, {u"text"_s, u"9"_s}, {u"list"_s, QVariantList{3}}, {u"huge"_s, 1e300}};
    preferences.setValue(keys::dictionaryLearningCandidateCounts, broken);

    EXPECT_TRUE(learn({u"negative"_s, u"text"_s, u"list"_s, u"huge"_s}));
    EXPECT_EQ(terms(), QStringList(u"huge"_s));
    EXPECT_EQ(counts().value(u"negative"_s), 1);
    EXPECT_EQ(counts().value(u"text"_s), 1);
    EXPECT_EQ(counts().value(u"list"_s), 1);
    EXPECT_EQ(counts().value(u"huge"_s).toLongLong(), 2'147'483'648);

    preferences.setValue(keys::dictionaryLearningCandidateCounts, u"no map"_s);
    EXPECT_FALSE(learn({u"plain"_s}));
    EXPECT_EQ(counts(), (QVariantMap{{u"plain"_s, 1}}));
}

} // namespace
} // namespace tavrin

#include "dictionary/DictionaryStore.h"

#include "platform/preferences/PreferenceKeys.h"
#include "support/QtPrinters.h"
#include "support/ports/InMemoryPreferences.h"
#include "support/ports/VirtualTime.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <ctime>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace tavrin {
namespace {

DictionaryEntry entry(const QString& term, int hitCount, Seconds updatedAt)
{
    return DictionaryEntry{
        {{"term", term}, {"hitCount", hitCount}, {"updatedAt", updatedAt.count()}}};
}

class DictionaryStoreTest : public ::testing::Test {
protected:
    testing::InMemoryPreferences preferences;
    testing::VirtualTime time;

    QList<DictionaryEntry> read() { return DictionaryEntries(preferences, time); }

    QVariantList stored() const
    {
        return preferences.value(keys::personalDictionaryEntries).toList();
    }

    QStringList mirror() const
    {
        return preferences.value(keys::personalDictionary).toStringList();
    }
};

TEST_F(DictionaryStoreTest, WithoutAnythingStoredTheDictionaryIsEmptyAndStaysUnstored)
{
    EXPECT_TRUE(read().isEmpty());
    EXPECT_FALSE(preferences.value(keys::personalDictionaryEntries).isValid());
    EXPECT_EQ(preferences.synchronizations(), 0);
}

TEST_F(DictionaryStoreTest, StoredEntriesAreReturnedInTheirOrderWithAllTheirKeys)
{
    const QVariantMap first{{"term", "Anna"}, {"colour", "blue"}};
    const QVariantMap second{{"term", "Boris"}, {"hitCount", "many"}};
    preferences.setValue(keys::personalDictionaryEntries, QVariantList{first, second});
    preferences.setValue(keys::personalDictionary, QStringList{"Legacy"});

    EXPECT_EQ(read(), (QList{DictionaryEntry{first}, DictionaryEntry{second}}));
}

TEST_F(DictionaryStoreTest, TheLegacyListBecomesManualEntriesOfOneMoment)
{
    const QVariantList legacy{" Anna ", QString(), 7, "Boris"};
    preferences.setValue(keys::personalDictionary, legacy);

    const QList<DictionaryEntry> entries = read();

    ASSERT_EQ(entries.size(), 2);
    EXPECT_EQ(entries[0].term(), " Anna ");
    EXPECT_EQ(entries[1].term(), "Boris");
    for (const DictionaryEntry& migrated : entries) {
        EXPECT_EQ(migrated.source(), "manual");
        EXPECT_EQ(migrated.hitCount(), 0);
        EXPECT_TRUE(migrated.isEnabled());
        EXPECT_EQ(migrated.createdAt(), time.sinceEpoch());
        EXPECT_EQ(migrated.updatedAt(), time.sinceEpoch());
    }
    EXPECT_NE(entries[0].id(), entries[1].id());
    EXPECT_EQ(preferences.value(keys::personalDictionary).toList(), legacy);
    EXPECT_EQ(preferences.synchronizations(), 1);
}

TEST_F(DictionaryStoreTest, MigrationHappensOnce)
{
    preferences.setValue(keys::personalDictionary, QStringList{"Anna", "Anna"});

    const QList<DictionaryEntry> first = read();
    time.advance(1h);

    EXPECT_EQ(first.size(), 2);
    EXPECT_EQ(read(), first);
}

TEST_F(DictionaryStoreTest, AnEmptyDictionaryMigratesAgainWhileTheLegacyListIsThere)
{
    preferences.setValue(keys::personalDictionaryEntries, QVariantList{});
    preferences.setValue(keys::personalDictionary, QStringList{"Anna"});

    EXPECT_EQ(read().size(), 1);
}

TEST_F(DictionaryStoreTest, SavingWritesTheMirrorOfEnabledTermsAndFlushes)
{
    const QList<DictionaryEntry> entries{DictionaryEntry{{{"term", "Anna"}, {"enabled", true}}},
        DictionaryEntry{{{"term", "Boris"}, {"enabled", false}}}, DictionaryEntry{{{"term", ""}}},
        DictionaryEntry{{{"term", 7}}}, DictionaryEntry{{{"term", "Clara"}}}};

    SaveDictionaryEntries(preferences, entries);

    EXPECT_EQ(mirror(), (QStringList{"Anna", "Clara"}));
    EXPECT_EQ(stored().size(), 5);
    EXPECT_EQ(stored()[1].toMap(), (QVariantMap{{"term", "Boris"}, {"enabled", false}}));
    EXPECT_EQ(preferences.synchronizations(), 1);
    EXPECT_EQ(preferences.flushed(keys::personalDictionary).toStringList(), mirror());
    EXPECT_EQ(preferences.flushed(keys::personalDictionaryEntries).toList(), stored());
    EXPECT_EQ(read(), entries);
}

TEST_F(DictionaryStoreTest, DeletingEverythingDoesNotBringLegacyTermsBack)
{
    preferences.setValue(keys::personalDictionary, QStringList{"Anna"});
    ASSERT_EQ(read().size(), 1);

    SaveDictionaryEntries(preferences, {});

    EXPECT_TRUE(read().isEmpty());
}

TEST_F(DictionaryStoreTest, PreferencesOfTheWrongTypeAreAnEmptyDictionary)
{
    for (const QVariant& wrong : {QVariant("text"), QVariant(7), QVariant(QVariantMap{{"a", 1}})}) {
        preferences.setValue(keys::personalDictionaryEntries, wrong);
        preferences.setValue(keys::personalDictionary, wrong);
        EXPECT_TRUE(read().isEmpty());
    }
}

TEST_F(DictionaryStoreTest, ElementsThatAreNoEntriesAreLeftOut)
{
    preferences.setValue(keys::personalDictionaryEntries,
        QVariantList{"Anna", 7, QVariantMap{{"term", "Boris"}}, QVariant()});
    preferences.setValue(keys::personalDictionary, QStringList{"Legacy"});

    ASSERT_EQ(read().size(), 1);
    EXPECT_EQ(read()[0].term(), "Boris");
}

TEST_F(DictionaryStoreTest, TermsOfControlCharactersComeBackAsTheyAre)
{
    const QString term = QString(QChar(0)) + "\x01\x1b[31m\r\n\x7f";
    SaveDictionaryEntries(preferences, {DictionaryEntry::manual(term, 0s)});

    EXPECT_EQ(read()[0].term(), term);
    EXPECT_EQ(mirror(), QStringList{term});
}

TEST_F(DictionaryStoreTest, TermsAreOrderedByHitsAndThenByTheLaterChange)
{
    const QList<DictionaryEntry> entries{entry("rare", 1, 900s), entry("older", 4, 100s),
        entry("newer", 4, 200s), entry("frequent", 9, 1s),
        DictionaryEntry{{{"term", "never"}, {"updatedAt", 999.0}}}};

    EXPECT_EQ(
        DictionaryTerms(entries), (QStringList{"frequent", "newer", "older", "rare", "never"}));
}

TEST_F(DictionaryStoreTest, TermsThatAreOffOrNoTextAreNotUsed)
{
    const QList<DictionaryEntry> entries{DictionaryEntry{{{"term", "off"}, {"enabled", false}}},
        DictionaryEntry{{{"term", ""}}}, DictionaryEntry{{{"term", 7}}},
        DictionaryEntry{{{"term", "Anna"}}}};

    EXPECT_EQ(DictionaryTerms(entries), QStringList{"Anna"});
}

TEST_F(DictionaryStoreTest, ATermIsFoundInAnyLetterCase)
{
    const QList<DictionaryEntry> entries{entry("Anna", 0, 0s), entry("GitHub", 0, 0s)};

    EXPECT_EQ(indexOfTerm(entries, "github"), 1);
    EXPECT_FALSE(indexOfTerm(entries, "git").has_value());
}

TEST_F(DictionaryStoreTest, LearningIsOnUnlessSwitchedOff)
{
    EXPECT_TRUE(isAutomaticDictionaryLearningOn(preferences));
    preferences.setValue(keys::automaticDictionaryLearning, false);
    EXPECT_FALSE(isAutomaticDictionaryLearningOn(preferences));
    preferences.setValue(keys::automaticDictionaryLearning, true);
    EXPECT_TRUE(isAutomaticDictionaryLearningOn(preferences));
}

TEST_F(DictionaryStoreTest, TheWorkGrowsWithTheEntriesAndNotWithTheirSquare)
{
    // In processor time, which other programs hardly change.
    const auto work = [this](int count) {
        QList<DictionaryEntry> entries;
        for (int number = 0; number < count; ++number)
            entries.append(
                DictionaryEntry::manual(QStringLiteral("term %1").arg(number), Seconds(number)));
        const std::clock_t begin = std::clock();
        SaveDictionaryEntries(preferences, entries);
        const QList<DictionaryEntry> back = read();
        EXPECT_EQ(DictionaryTerms(back).first(), u"term %1"_s.arg(count - 1));
        EXPECT_EQ(indexOfTerm(back, u"TERM %1"_s.arg(count - 1)), count - 1);
        EXPECT_EQ(back.size(), count);
        return static_cast<double>(std::clock() - begin);
    };
    const double few = std::min(work(2'000), work(2'000));
    EXPECT_LT(work(20'000), 40 * few); // 100 times for a square.
}

} // namespace
} // namespace tavrin

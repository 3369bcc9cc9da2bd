#include "dictionary/DictionaryEntry.h"

#include "support/QtPrinters.h"

#include <QRegularExpression>
#include <gtest/gtest.h>

#include <limits>

using namespace std::chrono_literals;

namespace tavrin {
namespace {

bool isUpperCaseUuid(const QString& text)
{
    static const QRegularExpression form(
        "^[0-9A-F]{8}-[0-9A-F]{4}-[0-9A-F]{4}-[0-9A-F]{4}-[0-9A-F]{12}$");
    return form.match(text).hasMatch();
}

TEST(DictionaryEntryTest, AManualEntryIsStoredWithItsSevenKeys)
{
    const DictionaryEntry entry = DictionaryEntry::manual("Anna", 1'700'000'000.5s);

    QVariantMap stored = entry.stored();
    EXPECT_TRUE(isUpperCaseUuid(stored.take("id").toString()));
    EXPECT_EQ(stored,
        (QVariantMap{{"term", "Anna"}, {"source", "manual"}, {"createdAt", 1'700'000'000.5},
            {"updatedAt", 1'700'000'000.5}, {"hitCount", 0LL}, {"enabled", true}}));
}

TEST(DictionaryEntryTest, ALearnedEntryHasBeenSeenOnce)
{
    const DictionaryEntry entry = DictionaryEntry::learned("OpenAI", 10s);

    EXPECT_EQ(entry.source(), "auto");
    EXPECT_EQ(entry.hitCount(), 1);
    EXPECT_EQ(entry.createdAt(), 10s);
    EXPECT_TRUE(entry.isEnabled());
}

TEST(DictionaryEntryTest, EveryNewEntryHasAnIdOfItsOwn)
{
    EXPECT_NE(DictionaryEntry::manual("Anna", 0s).id(), DictionaryEntry::manual("Anna", 0s).id());
}

TEST(DictionaryEntryTest, AMissingSourceIsManualAndAMissingSwitchIsOn)
{
    const DictionaryEntry entry{{{"term", "Anna"}}};

    EXPECT_EQ(entry.source(), "manual");
    EXPECT_TRUE(entry.isEnabled());
    EXPECT_EQ(entry.hitCount(), 0);
    EXPECT_EQ(entry.updatedAt(), 0s);
}

TEST(DictionaryEntryTest, AFalseSwitchIsOffHoweverItWasStored)
{
    EXPECT_FALSE((DictionaryEntry{{{"enabled", false}}}.isEnabled()));
    EXPECT_FALSE((DictionaryEntry{{{"enabled", 0}}}.isEnabled()));
    EXPECT_FALSE((DictionaryEntry{{{"enabled", "false"}}}.isEnabled()));
    EXPECT_TRUE((DictionaryEntry{{{"enabled", 1}}}.isEnabled()));
}

TEST(DictionaryEntryTest, KnownKeysOfTheWrongTypeReadAsAbsent)
{
    const QVariant list = QVariantList{1, 2};
    const DictionaryEntry entry{{{"id", 7}, {"term", 8}, {"source", list}, {"createdAt", list},
        {"updatedAt", std::numeric_limits<double>::quiet_NaN()}, {"hitCount", list},
        {"enabled", list}}};

    EXPECT_EQ(entry.id(), QString());
    EXPECT_EQ(entry.term(), QString());
    EXPECT_EQ(entry.source(), "manual");
    EXPECT_EQ(entry.createdAt(), 0s);
    EXPECT_EQ(entry.updatedAt(), 0s);
    EXPECT_EQ(entry.hitCount(), 0);
    EXPECT_TRUE(entry.isEnabled());
}

TEST(DictionaryEntryTest, AHitCountBeyondAnyIntegerIsBounded)
{
    EXPECT_GT((DictionaryEntry{{{"hitCount", 1e300}}}.hitCount()), 1'000'000'000);
    EXPECT_LT((DictionaryEntry{{{"hitCount", -1e300}}}.hitCount()), -1'000'000'000);
    EXPECT_EQ((DictionaryEntry{{{"hitCount", 3.9}}}.hitCount()), 3);
}

TEST(DictionaryEntryTest, RenamingChangesTheTermAndTheTimeOnly)
{
    const DictionaryEntry entry{{{"id", "A"}, {"term", "open ai"}, {"source", "auto"},
        {"createdAt", 1.0}, {"updatedAt", 2.0}, {"hitCount", 5}, {"colour", "blue"}}};

    EXPECT_EQ(entry.renamed("OpenAI", 9s).stored(),
        (QVariantMap{{"id", "A"}, {"term", "OpenAI"}, {"source", "auto"}, {"createdAt", 1.0},
            {"updatedAt", 9.0}, {"hitCount", 5}, {"colour", "blue"}}));
}

TEST(DictionaryEntryTest, ASightingRaisesTheCountAndTheTimeOnly)
{
    const DictionaryEntry entry{{{"term", "Anna"}, {"updatedAt", 2.0}, {"colour", "blue"}}};

    EXPECT_EQ(entry.sighted(9s).stored(),
        (QVariantMap{{"term", "Anna"}, {"updatedAt", 9.0}, {"hitCount", 1LL}, {"colour", "blue"}}));
}

TEST(DictionaryEntryTest, LetterCaseDoesNotDistinguishTerms)
{
    EXPECT_TRUE(DictionaryEntry::manual("GitHub", 0s).hasTerm("githuB"));
    EXPECT_TRUE(
        DictionaryEntry::manual(QStringLiteral("ÉCOLE"), 0s).hasTerm(QStringLiteral("école")));
    EXPECT_FALSE(DictionaryEntry::manual("GitHub", 0s).hasTerm("git hub"));
}

} // namespace
} // namespace tavrin

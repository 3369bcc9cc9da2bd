#include "app/vocabulary/TableIndex.h"

#include "app/vocabulary/OutputStyles.h"
#include "app/vocabulary/TranslationTargets.h"

#include <gtest/gtest.h>

#include <array>

namespace tavrin {
namespace {

TEST(TableIndexTest, AnIndexOutsideTheTableMeansTheNearestRow)
{
    constexpr std::array table{10, 20, 30};

    EXPECT_EQ(itemAtClampedIndex(table, -5), 10);
    EXPECT_EQ(itemAtClampedIndex(table, 0), 10);
    EXPECT_EQ(itemAtClampedIndex(table, 1), 20);
    EXPECT_EQ(itemAtClampedIndex(table, 2), 30);
    EXPECT_EQ(itemAtClampedIndex(table, 3), 30);
}

TEST(TableIndexTest, AnIdentifierHasTheIndexOfItsRow)
{
    EXPECT_EQ(indexOfIdentifier(outputStyles, QStringView(u"professional")), 0);
    EXPECT_EQ(indexOfIdentifier(outputStyles, QStringView(u"aiPrompt")), 5);
    EXPECT_EQ(indexOfIdentifier(translationTargets, QStringView(u"swahili")), 41);
}

TEST(TableIndexTest, AnUnknownIdentifierHasTheFirstIndex)
{
    EXPECT_EQ(indexOfIdentifier(translationTargets, QStringView(u"klingon")), 0);
}

} // namespace
} // namespace tavrin

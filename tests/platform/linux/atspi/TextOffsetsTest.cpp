#include "platform/linux/atspi/TextOffsets.h"

#include <gtest/gtest.h>

#include <array>

namespace tavrin {
namespace {

using enum OffsetUnit;

constexpr QStringView mixed = u"a😀中b"; // Units: a 0, emoji 1 and 2, 中 3, b 4.

TEST(TextOffsetsTest, ATextIsCountedInEitherUnit)
{
    EXPECT_EQ(offsetCount(mixed, Utf16Units), 5);
    EXPECT_EQ(offsetCount(mixed, CodePoints), 4);
}

TEST(TextOffsetsTest, CodePointsBecomeUnitsAndBack)
{
    constexpr std::array<qint64, 5> units{0, 1, 3, 4, 5};
    for (qint64 offset = 0; offset < 5; ++offset) {
        EXPECT_EQ(utf16FromOffset(mixed, offset, CodePoints), units.at(std::size_t(offset)));
        EXPECT_EQ(offsetFromUtf16(mixed, units.at(std::size_t(offset)), CodePoints), offset);
    }
}

TEST(TextOffsetsTest, UnitsStayWhatTheyAre)
{
    for (qint64 offset = -1; offset < 9; ++offset) {
        EXPECT_EQ(utf16FromOffset(mixed, offset, Utf16Units), offset);
        EXPECT_EQ(offsetFromUtf16(mixed, offset, Utf16Units), offset);
    }
}

TEST(TextOffsetsTest, PositionsOutsideTheTextCountOn)
{
    EXPECT_EQ(utf16FromOffset(mixed, 6, CodePoints), 7);
    EXPECT_EQ(offsetFromUtf16(mixed, 7, CodePoints), 6);
    EXPECT_EQ(utf16FromOffset(mixed, -3, CodePoints), -3);
}

TEST(TextOffsetsTest, APositionInsideAPairLiesBehindIt)
{
    EXPECT_EQ(offsetFromUtf16(mixed, 2, CodePoints), 2);
}

TEST(TextOffsetsTest, TheCountTellsTheUnitWhereTheyDiffer)
{
    EXPECT_EQ(offsetUnitFor(mixed, 4, Utf16Units), CodePoints);
    EXPECT_EQ(offsetUnitFor(mixed, 5, CodePoints), Utf16Units);
    EXPECT_EQ(offsetUnitFor(u"abc", 3, Utf16Units), Utf16Units);
    EXPECT_EQ(offsetUnitFor(u"abc", 9, CodePoints), CodePoints);
}

} // namespace
} // namespace tavrin

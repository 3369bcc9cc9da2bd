#include "ui/hud/HudTextFitting.h"

#include "support/QtPrinters.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace tavrin::hud {
namespace {

/// A text that is @p factor times as wide as its letters are high.
std::function<double(double)> timesAsWide(double factor)
{
    return [factor](double size) { return factor * size; };
}

TEST(HudTextFittingTest, ATextThatFitsKeepsItsSize)
{
    EXPECT_DOUBLE_EQ(fittingSize(12, 120, timesAsWide(0)), 12);
    EXPECT_DOUBLE_EQ(fittingSize(12, 120, timesAsWide(10)), 12);
}

TEST(HudTextFittingTest, ATextThatIsTooLongIsMadeToFit)
{
    EXPECT_DOUBLE_EQ(fittingSize(12, 119, timesAsWide(10)), 11.5);
    EXPECT_DOUBLE_EQ(fittingSize(12, 100, timesAsWide(10)), 10);
    // Letters come in whole pixels with some fonts.
    EXPECT_DOUBLE_EQ(fittingSize(12, 100, [](double size) { return size > 9.5 ? 101 : 90; }), 9.5);
}

TEST(HudTextFittingTest, NoTextIsTooSmallToRead)
{
    EXPECT_DOUBLE_EQ(fittingSize(12, 10, timesAsWide(10)), 9);
}

TEST(HudTextFittingTest, EveryDigitTakesThePlaceOfTheWidest)
{
    const auto widthOf = [](const QString& text) {
        return text == "1"_L1 ? 3.0 : text == ":"_L1 ? 2.0 : text == "8"_L1 ? 9.0 : 7.0;
    };
    EXPECT_EQ(tabularWidths(u"01:15"_s, widthOf), (QList<double>{9, 9, 2, 9, 9}));
    EXPECT_EQ(tabularWidths(u"≈ 3s"_s, widthOf), (QList<double>{7, 7, 9, 7}));
    EXPECT_EQ(tabularWidths(QString(), widthOf), QList<double>());
}

} // namespace
} // namespace tavrin::hud

#include "base/LocalizedText.h"

#include <gtest/gtest.h>

namespace tavrin {
namespace {

TEST(LocalizedTextTest, KeepsItsThreeForms)
{
    constexpr LocalizedText text{u"好", u"好的", u"OK"};

    EXPECT_TRUE(text.zhHans == u"好");
    EXPECT_TRUE(text.zhHant == u"好的");
    EXPECT_TRUE(text.en == u"OK");
}

TEST(LocalizedTextTest, AMissingFormIsEmpty)
{
    constexpr LocalizedText text{u"好"};

    EXPECT_TRUE(text.zhHant.isEmpty());
    EXPECT_TRUE(text.en.isEmpty());
}

} // namespace
} // namespace tavrin

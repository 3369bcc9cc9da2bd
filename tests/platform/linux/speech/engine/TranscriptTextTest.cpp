#include "platform/linux/speech/engine/TranscriptText.h"

#include "support/QtPrinters.h"

#include <gtest/gtest.h>

namespace tavrin {
namespace {

TEST(TranscriptTextTest, WordsAreSeparatedByOneSpace)
{
    EXPECT_EQ(joinTranscript({"hello  world", "", " again\n"}), "hello world again");
    EXPECT_EQ(joinTranscript({}), "");
    EXPECT_EQ(joinTranscript({" ", ""}), "");
}

TEST(TranscriptTextTest, HanCharactersAreNotSeparated)
{
    EXPECT_EQ(joinTranscript({QStringLiteral("今天 天气 很 好"), QStringLiteral("。 明天")}),
        QStringLiteral("今天天气很好。明天"));
}

TEST(TranscriptTextTest, OtherScriptsInsideHanTextKeepTheirSpaces)
{
    EXPECT_EQ(
        joinTranscript({QStringLiteral("打开 Git Hub 页面")}), QStringLiteral("打开 Git Hub 页面"));
}

} // namespace
} // namespace tavrin

#include "devcloud/polish/Polish.h"

#include "devcloud/text/Utf8.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <ctime>
#include <limits>
#include <random>
#include <string>

namespace tavrin::devcloud {
namespace {

constexpr std::array allStyles{Style::Professional, Style::Xiaohongshu, Style::BusinessEmail,
    Style::Casual, Style::Meeting, Style::AiPrompt};

TEST(PolishTest, IdentifiersNameTheSixStyles)
{
    EXPECT_EQ(styleFor("professional"), Style::Professional);
    EXPECT_EQ(styleFor("xiaohongshu"), Style::Xiaohongshu);
    EXPECT_EQ(styleFor("businessEmail"), Style::BusinessEmail);
    EXPECT_EQ(styleFor("casual"), Style::Casual);
    EXPECT_EQ(styleFor("meeting"), Style::Meeting);
    EXPECT_EQ(styleFor("aiPrompt"), Style::AiPrompt);
    EXPECT_EQ(styleFor("unknown"), Style::Professional);
    EXPECT_EQ(styleFor(""), Style::Professional);
}

TEST(PolishTest, NothingButSpaceIsAnsweredAsItIs)
{
    EXPECT_EQ(polish("", Style::Professional), "");
    EXPECT_EQ(polish(" \n ", Style::Meeting), " \n ");
    EXPECT_EQ(polish("\x01", Style::Casual), "\x01");
}

TEST(PolishTest, NothingButMarksStaysInEveryStyle)
{
    for (const Style style : allStyles) {
        EXPECT_EQ(polish("?!", style), "?!");
        EXPECT_EQ(polish(",", style), ",");
        EXPECT_EQ(polish("。", style), "。");
    }
}

TEST(PolishTest, ControlCharactersGoAndTheSeamsOfEmojiStay)
{
    EXPECT_EQ(
        polish("\xef\xbb\xbfwe\x07 like 👩‍💻", Style::Professional), "We like 👩‍💻");
}

TEST(PolishTest, ASoundThatTrailsOffStays)
{
    EXPECT_EQ(polish("we could um... try it", Style::Professional), "We could um... try it.");
}

TEST(PolishTest, AnyBytesArePolishedIntoUtf8)
{
    std::mt19937 random(99);
    std::uniform_int_distribution<int> byte(0, 255);
    for (int round = 0; round < 400; ++round) {
        std::string text(static_cast<std::size_t>(round % 64), ' ');
        std::ranges::generate(text, [&] { return static_cast<char>(byte(random)); });
        for (const Style style : allStyles) {
            const std::string written = polish(text, style);
            ASSERT_EQ(encodeUtf8(decodeUtf8(written)), written);
        }
    }
}

std::string repeated(const std::string& text, std::size_t characters)
{
    std::string result;
    const std::size_t length = countCharacters(text);
    for (std::size_t at = 0; at < characters; at += length)
        result += text;
    return result;
}

/// The best of several runs, in time of this process alone.
std::clock_t timeFor(const std::string& text)
{
    auto best = std::numeric_limits<std::clock_t>::max();
    for (int round = 0; round < 3; ++round) {
        const std::clock_t start = std::clock();
        EXPECT_FALSE(polish(text, Style::BusinessEmail).empty());
        best = std::min(best, std::clock() - start);
    }
    return best;
}

TEST(PolishTest, ALongTextTakesLinearTime)
{
    constexpr std::size_t length = 100;
    constexpr std::size_t growth = 16;
    for (const char* piece : {"我们", "今天我们开会，然后去吃饭。", "我 ", "呃", " ", "呃，",
             "um, ", "i i ", "the the report is done and we know it. ", "走 嗯 ", "走，嗯，",
             "we have, um, ", "we have it, um, ", "https://example.org/", "\n我", "“"}) {
        // A quadratic step would take 256 times as long, and a linear one 16 times.
        const std::string text = "我想" + repeated(piece, length) + "我";
        const std::string longer = "我想" + repeated(piece, growth * length) + "我";
        EXPECT_LT(timeFor(longer), 4 * std::clock_t{growth} * timeFor(text)) << piece;
    }
}

} // namespace
} // namespace tavrin::devcloud

#include "devcloud/polish/Polish.h"
#include "devcloud/polish/Token.h"
#include "devcloud/text/Utf8.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <random>
#include <string>
#include <vector>

namespace tavrin::devcloud {
namespace {

constexpr std::array allStyles{Style::Professional, Style::Xiaohongshu, Style::BusinessEmail,
    Style::Casual, Style::Meeting, Style::AiPrompt};

/// Every Han character and word of a text, in small letters, in order.
std::vector<std::u32string> contentWords(const std::string& text)
{
    std::vector<std::u32string> words;
    for (const Token& token : tokenize(decodeUtf8(text))) {
        if (token.kind == TokenKind::Han || token.kind == TokenKind::Word)
            words.push_back(folded(token.text));
    }
    return words;
}

/// The words between the frames a style may put around a text.
std::vector<std::u32string> wordsInsideFrame(const std::string& text)
{
    struct Frame {
        std::string opening;
        std::string closing;
    };

    static const std::vector<Frame> frames{{"您好：\n\n", "\n\n此致\n敬礼"},
        {"Hello,\n\n", "\n\nBest regards,"}, {"会议行动项：\n", ""}, {"Action items:\n", ""},
        {"任务：\n", ""}, {"Task:\n", ""}};
    std::string inside = text;
    for (const Frame& frame : frames) {
        if (inside.starts_with(frame.opening) && inside.ends_with(frame.closing))
            inside = inside.substr(
                frame.opening.size(), inside.size() - frame.opening.size() - frame.closing.size());
    }
    for (const std::string middle : {"\n\n要求：\n", "\n\nDetails:\n"}) {
        if (const std::size_t at = inside.find(middle); at != std::string::npos)
            inside.replace(at, middle.size(), "\n");
    }
    return contentWords(inside);
}

/// Makes texts of words that are neither fillers nor likely to be stammered.
class TextMaker {
public:
    explicit TextMaker(unsigned seed)
        : m_random(seed)
    {
    }

    std::string text()
    {
        static const std::vector<std::string> pieces{"报告", "明天", "提交", "我们", "会议", "成本",
            "但是", "所以", "Python", "GPT-4", "3.5", "50%", "meeting", "monday", "i", "budget",
            "report", "but", "we", "don't", "ada@example.org", "那个", "就是", "you", "know",
            "like", "首先", "吗", "very", "的", "在", "C++", "(", ")", "“", "🙂", "é"};
        static const std::vector<std::string> gaps{
            " ", " ", " ", "", ", ", "，", "。", ". ", "?", "\n", "！"};
        std::string text;
        std::string last;
        for (std::size_t left = 1 + pick(24); left > 0; --left) {
            const std::string& piece = pieces[pick(pieces.size())];
            // A repeat is for another test, and glued letters make another word.
            if (piece == last)
                continue;
            last = piece;
            text += piece + (isAscii(piece) ? " " : "") + gaps[pick(gaps.size())];
        }
        return text;
    }

private:
    std::size_t pick(std::size_t count)
    {
        return std::uniform_int_distribution<std::size_t>(0, count - 1)(m_random);
    }

    static bool isAscii(const std::string& text)
    {
        return std::ranges::all_of(
            text, [](char c) { return static_cast<unsigned char>(c) < 0x80; });
    }

    std::mt19937 m_random;
};

/// Phrases that are fillers between pauses; only they may be missing.
bool isPossibleFiller(const std::u32string& word)
{
    static const std::vector<std::u32string> fillers{
        U"那", U"个", U"就", U"是", U"you", U"know", U"like"};
    return std::ranges::find(fillers, word) != fillers.end();
}

TEST(ContentWordsTest, NoStyleInventsDropsOrReordersAContentWord)
{
    TextMaker maker(20240517);
    for (int round = 0; round < 500; ++round) {
        const std::string text = maker.text();
        auto said = contentWords(text);
        std::erase_if(said, isPossibleFiller);
        for (const Style style : allStyles) {
            auto written = wordsInsideFrame(polish(text, style));
            std::erase_if(written, isPossibleFiller);
            ASSERT_EQ(written, said) << text << "\n---\n" << polish(text, style);
        }
    }
}

TEST(ContentWordsTest, PolishingTwiceChangesNothingMore)
{
    TextMaker maker(7);
    for (int round = 0; round < 1000; ++round) {
        const std::string once = polish(maker.text(), Style::Professional);
        ASSERT_EQ(polish(once, Style::Professional), once);
    }
}

TEST(ContentWordsTest, AnyBytesArePolishedIntoUtf8)
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

TEST(ContentWordsTest, AVeryLongTextTakesLinearTime)
{
    std::string text;
    for (int word = 0; word < 10'000; ++word)
        text += "我们";
    EXPECT_EQ(countCharacters(polish(text, Style::Professional)), 3U); // 我们。
    std::string words;
    for (int word = 0; word < 10'000; ++word)
        words += "word ";
    EXPECT_EQ(contentWords(polish(words, Style::Meeting)).size(), 10'002U); // And two of the frame.
}

} // namespace
} // namespace tavrin::devcloud

#include "devcloud/polish/Corpus.h"
#include "devcloud/polish/Polish.h"
#include "devcloud/polish/WrittenWords.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <random>
#include <string>
#include <vector>

namespace tavrin::devcloud {
namespace {

using testing::corpus;
using testing::CorpusEntry;
using testing::faultOf;
using testing::insideFrame;
using testing::Removal;

constexpr std::array allStyles{Style::Professional, Style::Xiaohongshu, Style::BusinessEmail,
    Style::Casual, Style::Meeting, Style::AiPrompt};

/// Without the marks behind words, as a recogniser gives it that knows none. Marks inside an
/// address or a number stay.
std::string withoutMarks(const std::string& text)
{
    std::string result = text + ' ';
    for (const std::string mark : {"，", "。", "？", "！", "：", "；"}) {
        for (std::size_t at = result.find(mark); at != std::string::npos; at = result.find(mark))
            result.replace(at, mark.size(), " ");
    }
    for (const std::string mark : {", ", ". ", "? ", "! ", ": ", "; "}) {
        for (std::size_t at = result.find(mark); at != std::string::npos; at = result.find(mark))
            result.replace(at, mark.size(), " ");
    }
    return result.substr(0, result.find_last_not_of(' ') + 1);
}

std::string inSmallLetters(std::string text)
{
    std::ranges::transform(text, text.begin(),
        [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c; });
    return text;
}

/// Where a sound may be the answer, or all that was said. Behind a sentence it is one of its
/// pauses.
bool opensWithSound(const CorpusEntry& entry)
{
    return entry.removed.empty()
        && (entry.said == "um" || entry.said == "uh" || entry.said == "呃"
            || entry.said.starts_with("嗯"));
}

TEST(CorpusWordsTest, TheCheckSeesEachKindOfFault)
{
    EXPECT_EQ(faultOf("um i think so", "I think so.", {"um"}), "");
    EXPECT_EQ(faultOf("看看天气再说", "看看天气，再说。"), "");
    EXPECT_NE(faultOf("i think so", "I so."), "");
    EXPECT_NE(faultOf("i think so", "I think so too."), "");
    EXPECT_NE(faultOf("i think so", "think I so"), "");
    EXPECT_NE(faultOf("um i think so", "Um I think so.", {"um"}), "");
    EXPECT_NE(faultOf("a bottle of rum", "a bottle of r", {"um"}), "");
    EXPECT_NE(faultOf("我昨天突然后悔了", "我昨天突，然后悔了。"), "");
    EXPECT_NE(faultOf("我昨天突然后悔了", "我昨天突 然后悔了。"), "");
    EXPECT_NE(faultOf("a note", "anote"), "");
    EXPECT_NE(faultOf("the iphone", "the iPhone"), "");
    EXPECT_NE(faultOf("see std::vector", "see std:: vector"), "");
    EXPECT_NE(faultOf("see a.b/c?d", "see A.b/c?d"), "");
    for (const std::string sign : {"🙂", "€", "℃", "→", "👍🏽", "±"}) {
        EXPECT_EQ(faultOf("a " + sign + " b", "A " + sign + " b."), "") << sign;
        EXPECT_NE(faultOf("a " + sign + " b", "A b."), "") << sign;
        EXPECT_NE(faultOf("a b", "A " + sign + " b."), "") << sign;
    }
}

TEST(CorpusWordsTest, WhatIsWantedKeepsEveryWord)
{
    for (const CorpusEntry& entry : corpus())
        EXPECT_EQ(
            faultOf(entry.said, insideFrame(entry.said, entry.wanted, entry.style), entry.removed),
            "")
            << entry.place;
}

TEST(CorpusWordsTest, NoStyleAddsLosesOrTearsAWord)
{
    for (const CorpusEntry& entry : corpus()) {
        for (const Style style : allStyles) {
            const std::string written = insideFrame(entry.said, polish(entry.said, style), style);
            EXPECT_EQ(faultOf(entry.said, written, entry.removed), "")
                << entry.place << " in style " << static_cast<int>(style);
        }
    }
}

TEST(CorpusWordsTest, NeitherMarksNorCapitalsDecideAboutWords)
{
    for (const CorpusEntry& entry : corpus()) {
        for (const std::string& said : {withoutMarks(entry.said), inSmallLetters(entry.said),
                 inSmallLetters(withoutMarks(entry.said))}) {
            EXPECT_EQ(
                faultOf(said, polish(said, Style::Professional), entry.removed, Removal::AnyOf), "")
                << entry.place;
        }
    }
}

TEST(CorpusWordsTest, TwoSentencesInOneTextKeepEveryWord)
{
    const std::vector<CorpusEntry>& entries = corpus();
    for (std::size_t at = 0; at + 7 < entries.size(); ++at) {
        const CorpusEntry& first = entries[at];
        const CorpusEntry& second = entries[at + 7];
        if (opensWithSound(first) || opensWithSound(second))
            continue;
        std::vector<std::string> removed = first.removed;
        removed.insert(removed.end(), second.removed.begin(), second.removed.end());
        for (const std::string gap : {" ", "\n", "，", ", "}) {
            const std::string said = first.said + gap + second.said;
            EXPECT_EQ(faultOf(said, polish(said, Style::Professional), removed, Removal::AnyOf), "")
                << first.place << " and " << second.place;
        }
    }
}

/// Puts words together that are neither sounds nor likely to be stammered.
std::string randomText(std::mt19937& random)
{
    static const std::vector<std::string> pieces{"报告", "明天", "提交", "我们", "会议", "成本",
        "但是", "所以", "Python", "GPT-4", "3.5", "50%", "meeting", "monday", "i", "budget",
        "report", "but", "we", "don't", "ada@example.org", "那个", "就是", "you", "know", "like",
        "首先", "吗", "very", "的", "在", "C++", "(", ")", "“", "🙂", "é", "не", "です",
        "~/.bashrc"};
    static const std::vector<std::string> gaps{
        " ", " ", " ", " ", ", ", "，", "。", ". ", "? ", "\n", "！"};
    const auto pick = [&random](std::size_t count) {
        return std::uniform_int_distribution<std::size_t>(0, count - 1)(random);
    };
    std::string text;
    std::size_t last = pieces.size();
    for (std::size_t left = 1 + pick(24); left > 0; --left) {
        const std::size_t piece = pick(pieces.size());
        if (piece != last)
            text += pieces[piece] + gaps[pick(gaps.size())];
        last = piece;
    }
    return text;
}

TEST(CorpusWordsTest, WordsInAnyOrderAreKept)
{
    std::mt19937 random(20240517);
    for (int round = 0; round < 500; ++round) {
        const std::string text = randomText(random);
        for (const Style style : allStyles)
            ASSERT_EQ(faultOf(text, insideFrame(text, polish(text, style), style)), "") << text;
    }
}

} // namespace
} // namespace tavrin::devcloud

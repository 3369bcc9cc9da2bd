#include "devcloud/polish/Polish.h"

#include <gtest/gtest.h>

#include <string>

namespace tavrin::devcloud {
namespace {

struct Example {
    const char* said;
    const char* written;
};

void PrintTo(const Example& example, std::ostream* stream)
{
    *stream << example.said;
}

class PolishExampleTest : public ::testing::TestWithParam<Example> { };

TEST_P(PolishExampleTest, IsWrittenAsExpected)
{
    EXPECT_EQ(polish(GetParam().said, Style::Professional), GetParam().written);
}

INSTANTIATE_TEST_SUITE_P(EnglishFillers, PolishExampleTest,
    ::testing::Values(Example{"um i think so", "I think so."},
        Example{"I, uh, agree with you", "I agree with you."},
        Example{"well uhh we could erm try it", "Well we could try it."},
        Example{"hmm let me see", "Let me see."},
        Example{"it works, you know, most of the time", "It works most of the time."},
        Example{"you know, it works", "It works."}, Example{"I mean, it works", "It works."},
        Example{"it was, like, huge", "It was huge."},
        // Meant, so it stays.
        Example{"do you know him", "Do you know him?"},
        Example{"that is what I mean", "That is what I mean."}, Example{"I like it", "I like it."},
        Example{"the screw is 5 mm long", "The screw is 5 mm long."},
        Example{"he was taken to the ER", "He was taken to the ER."}, Example{"um", "Um."},
        Example{"Um. Yes.", "Yes."}));

INSTANTIATE_TEST_SUITE_P(ChineseFillers, PolishExampleTest,
    ::testing::Values(Example{"嗯我觉得可以", "我觉得可以。"},
        Example{"嗯，那个，我想问一下", "我想问一下。"}, Example{"我呃想去北京", "我想去北京。"},
        Example{"我想，嗯，去北京", "我想，去北京。"}, Example{"啊，对了", "对了。"},
        Example{"就是说，我们要加快", "我们要加快。"}, Example{"怎么说呢，还可以", "还可以。"},
        // Meant, so it stays.
        Example{"那个文件在哪里", "那个文件在哪里？"}, Example{"我要那个", "我要那个。"},
        Example{"就是他", "就是他。"}, Example{"是啊", "是啊。"}, Example{"他打呃了", "他打呃了。"},
        Example{"金额是多少", "金额是多少？"}, Example{"嗯", "嗯。"},
        Example{"嗯。好的。", "好的。"}));

INSTANTIATE_TEST_SUITE_P(EnglishRepeats, PolishExampleTest,
    ::testing::Values(Example{"the the report is done", "The report is done."},
        Example{"I I I think so", "I think so."}, Example{"I, I think so", "I think so."},
        Example{"i think i think we should go", "I think we should go."},
        Example{"th- the end", "The end."},
        // Meant, so it stays.
        Example{"it is very very good", "It is very very good."},
        Example{"what it is is a problem", "What it is is a problem."},
        Example{"he had had enough", "He had had enough."},
        Example{"call five five one", "Call five five one."}));

INSTANTIATE_TEST_SUITE_P(ChineseRepeats, PolishExampleTest,
    ::testing::Values(Example{"我我我觉得可以", "我觉得可以。"},
        Example{"我，我觉得可以", "我觉得可以。"}, Example{"我们我们今天开会", "我们今天开会。"},
        Example{"然后然后他走了", "然后他走了。"}, Example{"这这个问题很大", "这个问题很大。"},
        Example{"那个那个文件呢", "那个文件呢。"},
        // Meant, so it stays.
        Example{"你看看这个", "你看看这个。"}, Example{"告诉你你就知道了", "告诉你你就知道了。"},
        Example{"现在在家", "现在在家。"},
        Example{"这是我们的目的的一部分", "这是我们的目的的一部分。"},
        Example{"谢谢谢谢", "谢谢谢谢。"}, Example{"妈妈常常来", "妈妈常常来。"}));

INSTANTIATE_TEST_SUITE_P(Marks, PolishExampleTest,
    ::testing::Values(Example{"今天很好", "今天很好。"}, Example{"你吃饭了吗", "你吃饭了吗？"},
        Example{"为什么不行", "为什么不行？"}, Example{"我们怎么办呢", "我们怎么办呢？"},
        Example{"我在家呢", "我在家呢。"}, Example{"我知道他在哪里", "我知道他在哪里。"},
        Example{"今天,很好.", "今天，很好。"}, Example{"太好了!", "太好了！"},
        Example{"苹果、香蕉", "苹果、香蕉。"}, Example{"等等...", "等等……"},
        Example{"what is the plan", "What is the plan?"},
        Example{"can you help me", "Can you help me?"},
        Example{"how many are there", "How many are there?"},
        Example{"do it today", "Do it today."}, Example{"have it your way", "Have it your way."},
        Example{"what a day", "What a day."}, Example{"Hello，world！", "Hello, world!"},
        Example{"wait ,what ?", "Wait, what?"}, Example{"I agree,", "I agree."},
        Example{"really?!", "Really?!"}, Example{"Dr. Smith is in", "Dr. Smith is in."},
        Example{"paper, pens, etc.", "Paper, pens, etc."},
        Example{"I like the idea but we need more time", "I like the idea, but we need more time."},
        Example{"nothing but the truth", "Nothing but the truth."},
        Example{"我觉得这个方案可以但是需要时间", "我觉得这个方案可以，但是需要时间。"},
        Example{"这就是我们之所以来的原因", "这就是我们之所以来的原因。"}));

INSTANTIATE_TEST_SUITE_P(Capitals, PolishExampleTest,
    ::testing::Values(Example{"i know i'm late", "I know I'm late."},
        Example{"see you on monday in april", "See you on Monday in April."},
        Example{"we march in may", "We march in may."},
        Example{"iPhone sales are up", "iPhone sales are up."},
        Example{"go. then stop", "Go. Then stop."}, Example{"NASA said so", "NASA said so."},
        Example{"write to ada@example.org today", "Write to ada@example.org today."},
        Example{"example.org is down", "example.org is down."}));

INSTANTIATE_TEST_SUITE_P(Spacing, PolishExampleTest,
    ::testing::Values(Example{"我用Python写代码", "我用 Python 写代码。"},
        Example{"我 们 今 天 开 会", "我们今天开会。"}, Example{"3月5日开会", "3月5日开会。"},
        Example{"有 15 个人", "有 15 个人。"},
        Example{"用GPT模型和C++语言", "用 GPT 模型和 C++ 语言。"},
        Example{"too   many    spaces", "Too many spaces."},
        Example{"it costs $5.50 or 50% of 1,000", "It costs $5.50 or 50% of 1,000."},
        Example{"meet at 10:30", "Meet at 10:30."},
        Example{"看https://example.org/a?b=c的内容", "看 https://example.org/a?b=c 的内容。"},
        Example{"他说“好的”", "他说“好的”。"}, Example{"call me (please)", "Call me (please)."},
        Example{"well-known don't-care", "Well-known don't-care."},
        Example{"très bien", "Très bien."}, Example{"привет мир", "привет мир."},
        Example{"今日は良い天気です", "今日は良い天気です。"}));

TEST(PolishTest, LineBreaksStayParagraphs)
{
    EXPECT_EQ(
        polish("first point\nsecond point", Style::Professional), "First point.\n\nSecond point.");
}

TEST(PolishTest, NothingButSpaceOrMarksIsAnsweredAsItIs)
{
    EXPECT_EQ(polish("", Style::Professional), "");
    EXPECT_EQ(polish(" \n ", Style::Meeting), " \n ");
    EXPECT_EQ(polish("?!", Style::Meeting), "?!");
    EXPECT_EQ(polish(",", Style::Casual), ",");
    EXPECT_EQ(polish("\x01", Style::Casual), "\x01");
}

} // namespace
} // namespace tavrin::devcloud

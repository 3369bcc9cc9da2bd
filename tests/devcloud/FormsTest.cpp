#include "devcloud/polish/Polish.h"

#include <gtest/gtest.h>

namespace tavrin::devcloud {
namespace {

constexpr auto chinese = "项目进展顺利。小王明天提交报告。你有问题吗？";
constexpr auto english = "the project is on track. ann sends the report on friday. any questions?";

TEST(FormsTest, IdentifiersNameTheSixStyles)
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

TEST(FormsTest, ProfessionalIsProse)
{
    EXPECT_EQ(polish(chinese, Style::Professional), "项目进展顺利。小王明天提交报告。你有问题吗？");
    EXPECT_EQ(polish(english, Style::Professional),
        "The project is on track. Ann sends the report on Friday. Any questions?");
}

TEST(FormsTest, LongProseIsCutIntoParagraphs)
{
    EXPECT_EQ(polish("One. Two. Three. Four. Five.", Style::Professional),
        "One. Two. Three. Four.\n\nFive.");
}

TEST(FormsTest, ATurnBeginsAParagraph)
{
    EXPECT_EQ(polish("背景是这样。首先看成本。这很重要。另外看时间。", Style::Professional),
        "背景是这样。首先看成本。这很重要。\n\n另外看时间。");
}

TEST(FormsTest, XiaohongshuSetsLinesWithEmoji)
{
    EXPECT_EQ(polish("这家店的咖啡很香。环境也很安静。我很喜欢！", Style::Xiaohongshu),
        "☕ 这家店的咖啡很香\n\n📌 环境也很安静\n❤️ 我很喜欢！");
    EXPECT_EQ(polish("great trip. nice people.", Style::Xiaohongshu),
        "✈️ Great trip\n\n📌 Nice people");
}

TEST(FormsTest, BusinessEmailGreetsAndCloses)
{
    EXPECT_EQ(polish(chinese, Style::BusinessEmail),
        "您好：\n\n项目进展顺利。小王明天提交报告。你有问题吗？\n\n此致\n敬礼");
    EXPECT_EQ(polish(english, Style::BusinessEmail),
        "Hello,\n\nThe project is on track. Ann sends the report on Friday. Any "
        "questions?\n\nBest regards,");
}

TEST(FormsTest, BusinessEmailKeepsTheGreetingAndCloseThatWereDictated)
{
    EXPECT_EQ(polish("王总您好。报告已完成。此致敬礼", Style::BusinessEmail),
        "您好：\n\n王总您好。报告已完成。\n\n此致敬礼。");
    EXPECT_EQ(polish("dear ann. the report is done. best regards tom", Style::BusinessEmail),
        "Dear ann,\n\nThe report is done.\n\nBest regards tom.");
    EXPECT_EQ(
        polish("您好。报告已完成。", Style::BusinessEmail), "您好：\n\n报告已完成。\n\n此致\n敬礼");
}

TEST(FormsTest, CasualEndsWithoutAFullStop)
{
    EXPECT_EQ(polish(chinese, Style::Casual), "项目进展顺利。小王明天提交报告。你有问题吗？");
    EXPECT_EQ(polish("on my way. be there soon.", Style::Casual), "On my way. Be there soon");
    EXPECT_EQ(polish("我到了\n你在哪", Style::Casual), "我到了\n你在哪？");
}

TEST(FormsTest, MeetingIsAListOfActions)
{
    EXPECT_EQ(polish(chinese, Style::Meeting),
        "会议行动项：\n- 项目进展顺利\n- 小王明天提交报告\n- 你有问题吗？");
    EXPECT_EQ(polish(english, Style::Meeting),
        "Action items:\n- The project is on track\n- Ann sends the report on Friday\n- Any "
        "questions?");
}

TEST(FormsTest, AiPromptHasTaskAndDetails)
{
    EXPECT_EQ(polish("写一个排序函数。用Python。要有测试。", Style::AiPrompt),
        "任务：\n写一个排序函数。\n\n要求：\n- 用 Python\n- 要有测试");
    EXPECT_EQ(
        polish("write a sorting function", Style::AiPrompt), "Task:\nWrite a sorting function.");
}

TEST(FormsTest, TheFrameFollowsTheLanguageOfTheWholeText)
{
    EXPECT_EQ(polish("帮我回复他。OK.", Style::Meeting), "会议行动项：\n- 帮我回复他\n- OK");
}

} // namespace
} // namespace tavrin::devcloud

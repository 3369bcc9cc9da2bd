#include "app/pages/OverviewControllerFixture.h"
#include "app/pages/OverviewTexts.h"

#include <optional>
#include <vector>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace tavrin {
namespace {

/// A page that nobody sees.
class PaperPage final : public View<OverviewContent> {
public:
    std::optional<OverviewContent> content;
    int shown = 0;

    void setContent(const OverviewContent& given) override
    {
        content = given;
        ++shown;
    }
};

class OverviewControllerTest : public testing::OverviewControllerFixture {
protected:
    PaperPage page;

    void SetUp() override
    {
        OverviewControllerFixture::SetUp();
        controller.setView(&page);
    }

    /// What the page shows of a history with these records.
    OverviewContent shown(const QByteArray& records)
    {
        show(records);
        return page.content.value_or(OverviewContent());
    }

    /// A record as old as @p age that has so many characters.
    [[nodiscard]] QByteArray record(Seconds age, const QByteArray& characters) const
    {
        return R"({"id":"A","mode":"chat","timestamp":)"
            + QByteArray::number((time.sinceEpoch() - age).count(), 'f', 3)
            + R"(,"inputCharacters":)" + characters + '}';
    }
};

TEST_F(OverviewControllerTest, WithoutRecordsEveryFigureIsZero)
{
    const OverviewContent content = shown({});

    EXPECT_EQ(content.todayUsageLabel, u"0"_s);
    EXPECT_EQ(content.weekUsageLabel, u"0"_s);
    EXPECT_EQ(content.monthUsageLabel, u"0"_s);
    EXPECT_EQ(content.totalDictationTimeLabel, u"0 min"_s);
    EXPECT_EQ(content.totalDictatedCharactersLabel, u"0"_s);
    EXPECT_EQ(content.timeSavedLabel, u"0 min"_s);
    EXPECT_EQ(content.averageDictationSpeedLabel, u"0"_s);
}

TEST_F(OverviewControllerTest, EachFigureStandsInItsPlace)
{
    const OverviewContent content = shown(record(1h, "1") + ',' + record(30h, "20") + ','
        + record(24h * 10, "300") + ',' + record(24h * 100, "4000")
        + R"(,{"id":"B","mode":"chat","audioSeconds":1440,"processingSeconds":600})");

    EXPECT_EQ(content.todayUsageLabel, u"1"_s);
    EXPECT_EQ(content.weekUsageLabel, u"21"_s);
    EXPECT_EQ(content.monthUsageLabel, u"321"_s);
    EXPECT_EQ(content.totalDictatedCharactersLabel, u"4,321"_s);
    EXPECT_EQ(content.totalDictationTimeLabel, u"24 min"_s);
    EXPECT_EQ(content.timeSavedLabel, u"1 h 2 min"_s); // 96.02 − 24 − 10 minutes.
    EXPECT_EQ(content.averageDictationSpeedLabel, u"180"_s);
}

TEST_F(OverviewControllerTest, PastMidnightAPageInSightBeginsANewDay)
{
    controller.pageShown();
    EXPECT_EQ(shown(record(1h, "7")).todayUsageLabel, u"7"_s);
    time.advance(17h);
    EXPECT_EQ(page.content->todayUsageLabel, u"7"_s);
    time.advance(1h);
    EXPECT_EQ(page.content->todayUsageLabel, u"0"_s);
    EXPECT_EQ(page.content->weekUsageLabel, u"7"_s);
    controller.pageHidden();
    EXPECT_EQ(time.pending(), 0U);
}

TEST_F(OverviewControllerTest, NinetyCharactersInHalfAMinuteSaveAMinute)
{
    const OverviewContent content = shown(R"({"id":"A","mode":"dictation","inputCharacters":90,
        "audioSeconds":30,"processingSeconds":10})");

    EXPECT_EQ(content.timeSavedLabel, u"1 min"_s);
    EXPECT_EQ(content.averageDictationSpeedLabel, u"180"_s);
}

TEST_F(OverviewControllerTest, NumbersAreGroupedAsTheUserWritesThem)
{
    const QByteArray records = R"({"id":"A","mode":"chat","inputCharacters":1234567})";
    const auto total = [&](const QLocale& users) {
        locale = users;
        return shown(records).totalDictatedCharactersLabel;
    };

    EXPECT_EQ(total(QLocale(QLocale::English, QLocale::UnitedStates)), u"1,234,567"_s);
    EXPECT_EQ(total(QLocale(QLocale::German, QLocale::Germany)), u"1.234.567"_s);
    EXPECT_EQ(total(QLocale(QLocale::German, QLocale::Switzerland)), u"1’234’567"_s);
    EXPECT_EQ(total(QLocale(QLocale::Arabic, QLocale::Egypt)), u"١٬٢٣٤٬٥٦٧"_s);
    EXPECT_EQ(total(QLocale::c()), u"1,234,567"_s);
}

TEST_F(OverviewControllerTest, TheSpeedIsGroupedToo)
{
    EXPECT_EQ(shown(R"({"id":"A","mode":"chat","inputCharacters":98765,"audioSeconds":60})")
                  .averageDictationSpeedLabel,
        u"98,765"_s);
}

TEST_F(OverviewControllerTest, DurationsAreTheSameInEveryLanguage)
{
    const QByteArray records = R"({"id":"A","mode":"chat","audioSeconds":7260})";
    for (const QString& language : {u"zh-Hans"_s, u"zh-Hant"_s, u"en"_s}) {
        preferences.setValue(keys::interfaceLanguage, language);
        EXPECT_EQ(shown(records).totalDictationTimeLabel, u"2 h 1 min"_s);
    }
}

TEST(DurationTextTest, MinutesAreRoundedAndFromAnHourOnSplit)
{
    EXPECT_EQ(durationText(0s), u"0 min"_s);
    EXPECT_EQ(durationText(29.9s), u"0 min"_s);
    EXPECT_EQ(durationText(30s), u"1 min"_s);
    EXPECT_EQ(durationText(80s), u"1 min"_s);
    EXPECT_EQ(durationText(3569s), u"59 min"_s);
    EXPECT_EQ(durationText(3570s), u"1 h 0 min"_s);
    EXPECT_EQ(durationText(3600s), u"1 h 0 min"_s);
    EXPECT_EQ(durationText(46080s), u"12 h 48 min"_s);
    EXPECT_EQ(durationText(1e15s), u"277777777777 h 47 min"_s);
}

TEST_F(OverviewControllerTest, WithTheHistoryOffEveryFigureIsZero)
{
    preferences.setValue(keys::historyRetention, u"none"_s);
    const OverviewContent content = shown(record(1s, "500"));

    EXPECT_EQ(content.totalDictatedCharactersLabel, u"0"_s);
    EXPECT_EQ(content.todayUsageLabel, u"0"_s);
    EXPECT_EQ(file(), "[]"_ba);
}

TEST_F(OverviewControllerTest, WhatIsTooOldToBeKeptDoesNotCount)
{
    preferences.setValue(keys::historyRetention, u"7"_s);

    EXPECT_EQ(
        shown(record(24h, "5") + ',' + record(24h * 8, "70")).totalDictatedCharactersLabel, u"5"_s);
}

TEST_F(OverviewControllerTest, TheFiguresWaitForTheFileAndThePageDoesNot)
{
    putFile("[" + record(1h, "1") + "]");
    controller.refreshDashboardUsage();
    EXPECT_EQ(page.shown, 0);
    EXPECT_EQ(controller.content().todayUsageLabel, QString());

    background.drain();
    EXPECT_EQ(page.shown, 1);
    EXPECT_EQ(page.content->todayUsageLabel, u"1"_s);

    store.saveHistoryTranscript({.transcript = u"ten more .."_s});
    controller.refreshDashboardUsage();
    EXPECT_EQ(page.content->todayUsageLabel, u"12"_s); // Read already: at once.
}

TEST_F(OverviewControllerTest, WithoutAPageNothingIsRead)
{
    controller.setView(nullptr);
    controller.refreshDashboardUsage();
    controller.refreshShortcuts();
    EXPECT_EQ(background.pending(), 0);
    EXPECT_EQ(page.shown, 0);
}

TEST_F(OverviewControllerTest, APageThatIsGoneWhenTheFileIsReadIsNotDrawn)
{
    putFile("[" + record(1h, "1") + "]");
    controller.refreshDashboardUsage();
    controller.setView(nullptr);
    background.drain();
    EXPECT_EQ(page.shown, 0);
}

TEST_F(OverviewControllerTest, TheShortcutsOfTheMomentAreShown)
{
    controller.refreshShortcuts();
    EXPECT_EQ(page.content->instructionLabel,
        u"Dictation Right Option  ·  Translation ⌥ Space  ·  Chat ⇧⌘ Space"_s);

    preferences.setValue(keys::dictationShortcutIdentifiers, QVariantList());
    preferences.setValue(keys::interfaceLanguage, u"zh-Hans"_s);
    controller.refreshShortcuts();
    EXPECT_EQ(page.content->instructionLabel, u"语音 未设置  ·  翻译 ⌥ Space  ·  畅聊 ⇧⌘ Space"_s);
}

TEST_F(OverviewControllerTest, TheCaptionsAreThoseOfTheThreeLanguages)
{
    const auto inLanguage = [&](const char* language, const LocalizedText& text) {
        preferences.setValue(keys::interfaceLanguage, QString::fromLatin1(language));
        return localization.LT(text);
    };

    struct Row {
        LocalizedText text;
        QString zhHans, en;
    };

    const std::vector<Row> rows{
        {texts::overviewTitle, u"概览"_s, u"Overview"_s},
        {texts::overviewSubtitle, u"说出想法，Tavrin 将它整理成可直接使用的文字。"_s,
            u"Speak your thoughts. Tavrin turns them into ready-to-use text."_s},
        {texts::usageToday, u"今日"_s, u"Today"_s},
        {texts::usageThisWeek, u"本周"_s, u"This week"_s},
        {texts::usageThisMonth, u"本月"_s, u"This month"_s},
        {texts::charactersUnit, u"字"_s, u"chars"_s},
        {texts::totalDictation, u"累计口述"_s, u"Total dictation"_s},
        {texts::dictatedCharacters, u"口述字数"_s, u"Dictated characters"_s},
        {texts::timeSaved, u"节省时间（估算）"_s, u"Time saved (est.)"_s},
        {texts::averageSpeed, u"平均语速"_s, u"Average speed"_s},
        {texts::charactersPerMinuteUnit, u"字/分钟"_s, u"chars/min"_s},
        {texts::privateFigures, u"✦  本机统计，隐私优先"_s,
            u"✦  On-device stats, private by design"_s},
        {texts::figuresFootnote,
            u"节省时间 = 按 45 字/分钟估算的打字时间 − 口述时间 − AI 处理等待时间。旧记录没有时长时只计入字数。"_s,
            u"Time saved = estimated typing time at 45 chars/min minus dictation and AI processing. Legacy records count toward characters only."_s},
    };
    for (const auto& [text, zhHans, en] : rows) {
        EXPECT_EQ(inLanguage("zh-Hans", text), zhHans);
        EXPECT_EQ(inLanguage("en", text), en);
    }
    EXPECT_EQ(inLanguage("zh-Hant", texts::figuresFootnote),
        u"節省時間 = 按 45 字/分鐘估算的打字時間 − 口述時間 − AI 處理等待時間。舊記錄沒有時長時只計入字數。"_s);
    EXPECT_EQ(inLanguage("zh-Hant", texts::overviewTitle), u"概覽"_s);
}

} // namespace
} // namespace tavrin

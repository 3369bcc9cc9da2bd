#include "ui/pages/OverviewPage.h"

#include "app/pages/OverviewControllerFixture.h"
#include "ui/controls/Label.h"

#include <QFontMetricsF>
#include <gtest/gtest.h>

#include <optional>

using namespace Qt::StringLiterals;

namespace tavrin::ui {
namespace {

const QStringList languages{u"zh-Hans"_s, u"zh-Hant"_s, u"en"_s};

class OverviewPageTest : public testing::OverviewControllerFixture {
protected:
    QWidget window;
    std::optional<OverviewPage> page;

    void open()
    {
        page.emplace(window, controller, localization);
        window.resize(820, 640);
        window.show();
    }

    [[nodiscard]] const Label& label(const char* name) const
    {
        auto* const found = page->findChild<Label*>(QString::fromLatin1(name));
        EXPECT_NE(found, nullptr) << name;
        return *found;
    }

    [[nodiscard]] QString textOf(const char* name) const { return label(name).fullText(); }

    /// Every label with this text.
    [[nodiscard]] QList<const Label*> labelsWith(const QString& text) const
    {
        QList<const Label*> found;
        for (const Label* const label : page->findChildren<Label*>()) {
            if (label->fullText() == text)
                found.append(label);
        }
        return found;
    }
};

TEST_F(OverviewPageTest, EachFigureStandsInItsLabel)
{
    open();
    show(R"({"id":"A","mode":"chat","inputCharacters":10800,"audioSeconds":7260,
        "processingSeconds":60,"timestamp":1699000000})");

    EXPECT_EQ(textOf("todayUsageLabel"), u"0"_s);
    EXPECT_EQ(textOf("weekUsageLabel"), u"0"_s);
    EXPECT_EQ(textOf("monthUsageLabel"), u"10,800"_s);
    EXPECT_EQ(textOf("totalDictationTimeLabel"), u"2 h 1 min"_s);
    EXPECT_EQ(textOf("totalDictatedCharactersLabel"), u"10,800"_s);
    EXPECT_EQ(textOf("timeSavedLabel"), u"1 h 58 min"_s);
    EXPECT_EQ(textOf("averageDictationSpeedLabel"), u"89"_s);
    EXPECT_EQ(textOf("instructionLabel"),
        u"Dictation Right Option  ·  Translation ⌥ Space  ·  Chat ⇧⌘ Space"_s);
}

TEST_F(OverviewPageTest, InSightThePageFollowsTheDay)
{
    open();
    show(R"({"id":"A","mode":"chat","inputCharacters":5,"timestamp":1700000000})");
    EXPECT_EQ(textOf("todayUsageLabel"), u"5"_s);
    time.advance(std::chrono::hours(18));
    EXPECT_EQ(textOf("todayUsageLabel"), u"0"_s);
    page->hide();
    EXPECT_EQ(time.pending(), 0U);
}

TEST_F(OverviewPageTest, ScreenReadersHearWhatANumberIs)
{
    open();
    show(R"({"id":"A","mode":"chat","inputCharacters":1200,"audioSeconds":600,
        "timestamp":1700000000})");

    EXPECT_EQ(label("todayUsageLabel").accessibleName(), u"Today: 1,200 chars"_s);
    EXPECT_EQ(label("totalDictationTimeLabel").accessibleName(), u"Total dictation: 10 min"_s);
    EXPECT_EQ(
        label("averageDictationSpeedLabel").accessibleName(), u"Average speed: 120 chars/min"_s);
}

TEST_F(OverviewPageTest, ALargeNumberIsMadeSmallerBeforeItIsCut)
{
    open();
    show(R"({"id":"A","mode":"chat","inputCharacters":12345678,"timestamp":1700000000})");
    EXPECT_EQ(textOf("todayUsageLabel"), u"12,345,678"_s);
    EXPECT_EQ(label("todayUsageLabel").toolTip(), QString()); // Nothing is left out.

    show(R"({"id":"A","mode":"chat","inputCharacters":1e300,"timestamp":1700000000})");
    EXPECT_EQ(label("todayUsageLabel").toolTip(), u"1,000,000,000,000,000"_s);
}

TEST_F(OverviewPageTest, TheUnitOfTheSpeedStandsBehindTheNumber)
{
    open();
    const auto leftOfUnit = [&](const QByteArray& characters) {
        show(R"({"id":"A","mode":"chat","inputCharacters":)" + characters
            + R"(,"audioSeconds":60})");
        return labelsWith(u"chars/min"_s).first()->x();
    };
    const int short1 = leftOfUnit("120");
    const int long1 = leftOfUnit("120000");
    EXPECT_GT(short1, label("averageDictationSpeedLabel").x());
    EXPECT_GT(long1, short1 + 20);
    EXPECT_TRUE(labelsWith(u"chars/min"_s).first()->isVisible());

    leftOfUnit("1e300");
    EXPECT_FALSE(labelsWith(u"chars/min"_s).first()->isVisible());
}

TEST_F(OverviewPageTest, EveryCaptionFitsInEveryLanguage)
{
    for (const QString& language : languages) {
        preferences.setValue(keys::interfaceLanguage, language);
        open();
        show({});
        for (const Label* const one : page->findChildren<Label*>()) {
            EXPECT_EQ(one->toolTip(), QString()) << one->fullText().toStdString();
            EXPECT_LE(one->lineCount(), 2) << one->fullText().toStdString();
            EXPECT_TRUE(one->parentWidget()->rect().contains(one->geometry()))
                << one->fullText().toStdString();
        }
    }
}

TEST_F(OverviewPageTest, TheCaptionsAreShown)
{
    open();
    const char* const footnote =
        "Time saved = estimated typing time at 45 chars/min minus dictation and AI processing. "
        "Legacy records count toward characters only.";
    for (const char* text : {"Overview",
             "Speak your thoughts. Tavrin turns them into ready-to-use text.", "Today", "This week",
             "This month", "Total dictation", "Dictated characters", "Time saved (est.)",
             "Average speed", "chars/min", "✦  On-device stats, private by design", footnote})
        EXPECT_EQ(labelsWith(QString::fromUtf8(text)).size(), 1) << text;
    EXPECT_EQ(labelsWith(u"chars"_s).size(), 3);
}

TEST_F(OverviewPageTest, APageThatIsGoneIsNotShownAnything)
{
    open();
    page.reset();
    controller.refreshDashboardUsage();
    controller.refreshShortcuts();
    EXPECT_EQ(background.pending(), 0);
}

} // namespace
} // namespace tavrin::ui

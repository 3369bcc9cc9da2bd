#include "app/pages/PersonalizationController.h"

#include "app/pages/PersonalizationTexts.h"
#include "app/pages/WritingTones.h"
#include "platform/preferences/PreferenceKeys.h"
#include "support/QtPrinters.h"
#include "support/ports/InMemoryPreferences.h"

#include <QStringList>
#include <gtest/gtest.h>

#include <optional>

using namespace Qt::StringLiterals;

namespace tavrin {
namespace {

class PaperWindow final : public PersonalizationView {
public:
    std::optional<PersonalizationContent> shown;
    int fronts = 0;
    bool wasFilledFirst = false;

    void setContent(const PersonalizationContent& content) override { shown = content; }

    void bringToFront() override
    {
        ++fronts;
        wasFilledFirst = shown.has_value();
    }
};

class PersonalizationControllerTest : public ::testing::Test {
protected:
    testing::InMemoryPreferences preferences;
    QStringList sounds;
    PaperWindow window;
    PersonalizationController controller{
        {preferences, [this](const QString& name) { sounds.append(name); }}};

    PersonalizationControllerTest() { controller.setView(&window); }

    qsizetype toneShownFor(const QVariant& stored)
    {
        preferences.setValue(keys::writingTone, stored);
        controller.showPersonalizationWindow();
        return window.shown->tone;
    }

    QString toneStoredFor(qsizetype row)
    {
        controller.selectTone(row);
        controller.savePersonalization();
        return preferences.flushed(keys::writingTone).toString();
    }
};

TEST_F(PersonalizationControllerTest, TheWindowComesToTheFrontWithWhatIsStored)
{
    preferences.setValue(keys::writingStyleSample, u"  As I write.\n\n"_s);
    preferences.setValue(keys::writingTone, u"warm"_s);
    controller.showPersonalizationWindow();

    EXPECT_EQ(window.shown->sample, "  As I write.\n\n");
    EXPECT_EQ(window.shown->tone, 3);
    EXPECT_EQ(window.fronts, 1);
    EXPECT_TRUE(window.wasFilledFirst);
}

TEST_F(PersonalizationControllerTest, AtFirstTheToneIsNaturalAndTheSampleEmpty)
{
    controller.showPersonalizationWindow();

    EXPECT_EQ(*window.shown, (PersonalizationContent{.sample = {}, .tone = 0}));
}

TEST_F(PersonalizationControllerTest, EachToneIsShownByItsIdentifier)
{
    EXPECT_EQ(toneShownFor(u"concise"_s), 1);
    EXPECT_EQ(toneShownFor(u"professional"_s), 2);
    EXPECT_EQ(toneShownFor(u"warm"_s), 3);
    EXPECT_EQ(toneShownFor(u"natural"_s), 0);
    EXPECT_EQ(toneShownFor(u"Warm"_s), 0);
    EXPECT_EQ(toneShownFor(3), 0);
}

TEST_F(PersonalizationControllerTest, EachRowStoresItsTone)
{
    EXPECT_EQ(toneStoredFor(1), "concise");
    EXPECT_EQ(toneStoredFor(2), "professional");
    EXPECT_EQ(toneStoredFor(3), "warm");
    EXPECT_EQ(toneStoredFor(0), "natural");
    EXPECT_EQ(toneStoredFor(4), "warm");
    EXPECT_EQ(toneStoredFor(-1), "natural");
}

TEST_F(PersonalizationControllerTest, TheSampleIsStoredAsTypedAndASoundTellsSo)
{
    controller.showPersonalizationWindow();
    controller.changeSample(u" \t<b>so</b>\n"_s);
    EXPECT_FALSE(preferences.value(keys::writingStyleSample).isValid());
    controller.savePersonalization();

    EXPECT_EQ(preferences.flushed(keys::writingStyleSample), QVariant(u" \t<b>so</b>\n"_s));
    EXPECT_EQ(preferences.flushed(keys::writingTone), QVariant(u"natural"_s));
    EXPECT_EQ(sounds, QStringList{u"success"_s});
}

TEST_F(PersonalizationControllerTest, WhatWasNotSavedIsGoneAtTheNextOpening)
{
    preferences.setValue(keys::writingStyleSample, u"old"_s);
    controller.showPersonalizationWindow();
    controller.changeSample(u"new"_s);
    controller.selectTone(2);
    EXPECT_EQ(controller.content(), (PersonalizationContent{.sample = u"new"_s, .tone = 2}));

    controller.showPersonalizationWindow();
    EXPECT_EQ(*window.shown, (PersonalizationContent{.sample = u"old"_s, .tone = 0}));
    EXPECT_EQ(window.fronts, 2);
}

TEST_F(PersonalizationControllerTest, WithoutAWindowNothingIsShown)
{
    controller.setView(nullptr);
    controller.showPersonalizationWindow();

    EXPECT_FALSE(window.shown);
    EXPECT_EQ(window.fronts, 0);
}

TEST(PersonalizationTextsTest, TheWindowSpeaksSimplifiedChinese)
{
    const QList<std::pair<SimplifiedText, QStringView>> captions{
        {texts::personalizationTitle, u"Tavrin 写作风格"},
        {texts::personalizationHeading, u"写作风格"},
        {texts::personalizationNote, u"写作样例只用于学习句长、节奏和措辞，内容仅保存在本机。"},
        {texts::defaultTone, u"默认语气"},
        {texts::writingSample, u"写作样例"},
        {texts::pasteWritingSample, u"粘贴 2-3 段你满意的文字；模型只模仿风格，不复制内容"},
        {texts::saveWritingStyle, u"保存写作风格"},
    };
    for (const auto& [text, expected] : captions)
        EXPECT_EQ(text.zhHans, expected);

    QStringList tones;
    for (const WritingToneRow& tone : writingTones)
        tones.append(tone.label.toString());
    EXPECT_EQ(tones, (QStringList{u"自然"_s, u"简洁直接"_s, u"专业克制"_s, u"友好温和"_s}));
}

} // namespace
} // namespace tavrin

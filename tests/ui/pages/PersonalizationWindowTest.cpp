#include "ui/pages/PersonalizationWindow.h"

#include "app/pages/PersonalizationController.h"
#include "platform/preferences/PreferenceKeys.h"
#include "support/QtPrinters.h"
#include "support/ports/InMemoryPreferences.h"
#include "ui/controls/Button.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QComboBox>
#include <QKeyEvent>
#include <QLabel>
#include <QScreen>
#include <QScrollBar>
#include <QTextEdit>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace tavrin::ui {
namespace {

class PersonalizationWindowTest : public ::testing::Test {
protected:
    testing::InMemoryPreferences preferences;
    QStringList sounds;
    PersonalizationController controller{
        {preferences, [this](const QString& name) { sounds.append(name); }}};
    PersonalizationWindow window{controller};

    void open()
    {
        controller.showPersonalizationWindow();
        QApplication::processEvents();
    }

    QTextEdit& sample() const { return *window.findChild<QTextEdit*>(u"styleSampleTextView"_s); }

    QComboBox& tone() const { return *window.findChild<QComboBox*>(u"tonePopup"_s); }

    Button& saveButton() const { return *window.findChild<Button*>(u"saveWritingStyleButton"_s); }

    static void press(QWidget& receiver, int key, const QString& text = {})
    {
        QKeyEvent event(QEvent::KeyPress, key, Qt::NoModifier, text);
        QApplication::sendEvent(&receiver, &event);
    }

    void chooseSecondTone() const
    {
        press(tone(), Qt::Key_Down);
        press(*tone().view(), Qt::Key_Down);
        press(*tone().view(), Qt::Key_Return);
    }

    QRect frame(const QWidget& control) const
    {
        const QPoint topLeft = control.mapTo(&window, QPoint());
        return {
            topLeft.x(), 420 - topLeft.y() - control.height(), control.width(), control.height()};
    }
};

TEST_F(PersonalizationWindowTest, ItIsHiddenUntilItIsBroughtToTheFront)
{
    EXPECT_FALSE(window.isVisible());
    open();

    EXPECT_TRUE(window.isVisible());
    EXPECT_TRUE(window.isActiveWindow());
    EXPECT_TRUE(sample().hasFocus());
    EXPECT_EQ(window.windowTitle(), u"Tavrin 写作风格"_s);
}

TEST_F(PersonalizationWindowTest, ItHasItsSizeInTheMiddleOfTheScreen)
{
    EXPECT_EQ(window.size(), QSize(560, 420));
    EXPECT_EQ(window.minimumSize(), window.maximumSize());
    const QPoint middle = QGuiApplication::primaryScreen()->availableGeometry().center();
    EXPECT_LE((window.geometry().center() - middle).manhattanLength(), 2);
    EXPECT_EQ(frame(tone()), QRect(112, 290, 170, 30));
    EXPECT_EQ(frame(*sample().parentWidget()), QRect(32, 84, 496, 162));
    EXPECT_EQ(frame(saveButton()), QRect(388, 28, 140, 36));
}

TEST_F(PersonalizationWindowTest, ItSpeaksSimplifiedChinese)
{
    QStringList labels;
    for (const QLabel* const label : window.findChildren<QLabel*>())
        labels.append(label->text());
    EXPECT_EQ(labels,
        (QStringList{u"写作风格"_s, u"写作样例只用于学习句长、节奏和措辞，内容仅保存在本机。"_s,
            u"默认语气"_s, u"写作样例"_s}));
    EXPECT_EQ(sample().placeholderText(), u"粘贴 2-3 段你满意的文字；模型只模仿风格，不复制内容"_s);
    EXPECT_EQ(saveButton().text(), u"保存写作风格"_s);

    open();
    QStringList tones;
    for (int i = 0; i < tone().count(); ++i)
        tones.append(tone().itemText(i));
    EXPECT_EQ(tones, (QStringList{u"自然"_s, u"简洁直接"_s, u"专业克制"_s, u"友好温和"_s}));
}

TEST_F(PersonalizationWindowTest, WhatIsStoredIsShown)
{
    preferences.setValue(keys::writingStyleSample, u"one\n\n  two "_s);
    preferences.setValue(keys::writingTone, u"professional"_s);
    open();

    EXPECT_EQ(sample().toPlainText(), "one\n\n  two ");
    EXPECT_EQ(tone().currentIndex(), 2);
    EXPECT_EQ(controller.content().sample, "one\n\n  two ");
}

TEST_F(PersonalizationWindowTest, WhatIsTypedAndChosenIsStoredByTheButton)
{
    open();
    for (const QChar character : u" Hi"_s)
        press(sample(), 0, character);
    press(sample(), Qt::Key_Return, u"\r"_s);
    press(sample(), 0, u"\u00A0"_s); // A space that is none is stored as it is.
    chooseSecondTone();
    EXPECT_FALSE(preferences.value(keys::writingStyleSample).isValid());
    saveButton().click();

    EXPECT_EQ(preferences.flushed(keys::writingStyleSample), QVariant(u" Hi\n\u00A0"_s));
    EXPECT_EQ(preferences.flushed(keys::writingTone), QVariant(u"concise"_s));
    EXPECT_EQ(sounds, QStringList{u"success"_s});
    EXPECT_TRUE(window.isVisible());
}

TEST_F(PersonalizationWindowTest, SavingWithoutAChangeStoresTheSampleAsItWas)
{
    const QString odd = u"a\r\nb\u2028c\u00A0<b>d</b>"_s;
    preferences.setValue(keys::writingStyleSample, odd);
    open();
    saveButton().click();

    EXPECT_EQ(preferences.value(keys::writingStyleSample), QVariant(odd));
    EXPECT_TRUE(sample().toPlainText().contains(u"<b>d</b>"_s));
}

TEST_F(PersonalizationWindowTest, OpeningAgainBringsBackWhatIsStored)
{
    preferences.setValue(keys::writingStyleSample, u"stored"_s);
    open();
    press(sample(), 0, u"x"_s);
    chooseSecondTone();
    press(window, Qt::Key_Escape);
    EXPECT_FALSE(window.isVisible());

    open();
    EXPECT_EQ(sample().toPlainText(), "stored");
    EXPECT_EQ(tone().currentIndex(), 0);
    EXPECT_TRUE(window.isVisible());
}

TEST_F(PersonalizationWindowTest, TheTabKeyLeavesTheSample)
{
    open();
    press(sample(), Qt::Key_Tab, u"\t"_s);
    EXPECT_TRUE(saveButton().hasFocus());
    press(saveButton(), Qt::Key_Tab, u"\t"_s);
    EXPECT_TRUE(tone().hasFocus());
    EXPECT_EQ(sample().toPlainText(), "");
}

TEST_F(PersonalizationWindowTest, ItsControlsHaveNames)
{
    EXPECT_EQ(tone().accessibleName(), u"默认语气"_s);
    EXPECT_EQ(sample().accessibleName(), u"写作样例"_s);
}

TEST_F(PersonalizationWindowTest, ALongSampleIsShownAndSaved)
{
    preferences.setValue(keys::writingStyleSample, u"很长的一段文字。"_s.repeated(12'500));
    open();
    const QScrollBar& bar = *sample().verticalScrollBar();
    EXPECT_TRUE(bar.isVisible());
    EXPECT_FALSE(window.grab().isNull());
    saveButton().click();

    EXPECT_EQ(preferences.value(keys::writingStyleSample).toString().size(), 100'000);
}

} // namespace
} // namespace tavrin::ui

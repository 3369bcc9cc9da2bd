#include "ui/alerts/AlertWindow.h"

#include "ui/alerts/PlainText.h"
#include "ui/controls/Button.h"
#include "ui/controls/FocusRing.h"
#include "ui/controls/TextField.h"
#include "ui/style/BrandStyle.h"

#include <QImage>
#include <QLabel>
#include <QTest>
#include <gtest/gtest.h>

#include <memory>

using namespace Qt::StringLiterals;

namespace tavrin::ui {
namespace {

class AlertWindowTest : public ::testing::Test {
protected:
    void show(const Alert& alert)
    {
        window = std::make_unique<AlertWindow>(
            alert, [this](const AlertAnswer& answer) { answers.append(answer); });
        window->show();
        QCoreApplication::processEvents();
    }

    /// The button with this title; null when there is none.
    [[nodiscard]] Button* button(const QString& title) const
    {
        for (Button* const one : window->findChildren<Button*>()) {
            if (one->text() == title)
                return one;
        }
        return nullptr;
    }

    /// The colour in the middle of the left end of a button, where no letter stands.
    [[nodiscard]] QColor fillOf(const QString& title) const
    {
        const QImage image = button(title)->grab().toImage();
        return image.pixelColor(8, image.height() / 2);
    }

    std::unique_ptr<AlertWindow> window;
    QList<AlertAnswer> answers;
};

const Alert question{
    Alert::Style::Warning, u"Clear?"_s, u"Everything."_s, {u"Clear"_s, u"Cancel"_s}, {}};

TEST_F(AlertWindowTest, TextsAndButtonsStandAtTheirPlaces)
{
    show(question);
    EXPECT_EQ(window->size(), QSize(432, 24 + 48 + 22 + 34 + 22));
    const auto texts = window->findChildren<PlainText*>();
    ASSERT_EQ(texts.size(), 2);
    EXPECT_EQ(texts[0]->geometry(), QRect(88, 24, 320, 24));
    EXPECT_EQ(texts[1]->geometry(), QRect(88, 52, 320, 19));
    EXPECT_EQ(button(u"Clear"_s)->geometry(), QRect(316, 94, 92, 34));
    EXPECT_EQ(button(u"Cancel"_s)->geometry(), QRect(212, 94, 92, 34));
}

TEST_F(AlertWindowTest, AFieldStandsBelowTheTextsAndItsLabelAboveIt)
{
    Alert alert = question;
    alert.fields = {{.label = {}, .text = u"Ostrander"_s, .placeholder = {}},
        {.label = u"Key"_s, .text = {}, .placeholder = {}, .secure = true}};
    show(alert);
    const auto fields = window->findChildren<TextField*>();
    ASSERT_EQ(fields.size(), 2);
    EXPECT_EQ(fields[0]->geometry(), QRect(88, 81, 320, 28));
    EXPECT_EQ(fields[1]->geometry(), QRect(88, 139, 320, 28));
    const auto* const label = window->findChild<QLabel*>();
    EXPECT_EQ(label->text(), u"Key"_s);
    EXPECT_EQ(label->geometry(), QRect(88, 119, 320, 18));
    EXPECT_EQ(button(u"Clear"_s)->y(), 167 + 22);
    EXPECT_TRUE(fields[0]->hasFocus());
}

TEST_F(AlertWindowTest, AnAlertWithoutDetailsIsAsTallAsItsIcon)
{
    Alert alert = question;
    alert.informativeText.clear();
    show(alert);
    EXPECT_EQ(window->height(), 24 + 48 + 22 + 34 + 22);
}

TEST_F(AlertWindowTest, WhatAWarningWarnsOfIsRed)
{
    show(question);
    EXPECT_EQ(fillOf(u"Clear"_s).name(), brand::systemRed().name());
    EXPECT_EQ(fillOf(u"Cancel"_s).name(), u"#ffffff"_s);

    Alert error = question;
    error.buttons = {u"OK"_s};
    show(error);
    EXPECT_EQ(fillOf(u"OK"_s).name(), brand::tavPurple().name());

    Alert offer = question;
    offer.style = Alert::Style::Informational;
    show(offer);
    EXPECT_EQ(fillOf(u"Clear"_s).name(), brand::tavPurple().name());
}

TEST_F(AlertWindowTest, AWideButtonGrowsAndTooManyStandBelowOneAnother)
{
    Alert alert = question;
    alert.buttons = {u"Go on and learn more"_s, u"No"_s};
    show(alert);
    const QRect wide = button(alert.buttons[0])->geometry();
    EXPECT_GT(wide.width(), 92);
    EXPECT_EQ(wide.right() + 1, 408);
    EXPECT_EQ(button(u"No"_s)->geometry().right() + 1, wide.left() - 12);

    alert.buttons = {u"Save and try it at once"_s, u"Another time"_s, u"Never ask me again"_s};
    show(alert);
    int top = 94;
    for (const QString& title : alert.buttons) {
        EXPECT_EQ(button(title)->geometry(), QRect(88, top, 320, 34));
        top += 46;
    }
    EXPECT_EQ(window->height(), top - 12 + 22);
}

TEST_F(AlertWindowTest, AnAmpersandIsShownAsOneAndMarksNoShortcut)
{
    Alert alert = question;
    alert.buttons = {u"Save & go"_s, u"No"_s};
    show(alert);
    const Button* const save = button(u"Save && go"_s);
    ASSERT_NE(save, nullptr);
    EXPECT_TRUE(save->shortcut().isEmpty());
    QWidget peer;
    const Button same(peer, u"Save + go"_s, Button::Look::Primary);
    const Button doubled(peer, u"Save ++ go"_s, Button::Look::Primary);
    EXPECT_LT(save->sizeHint().width(), doubled.sizeHint().width());
    EXPECT_NEAR(save->sizeHint().width(), same.sizeHint().width(), 3);
}

TEST_F(AlertWindowTest, TabGoesThroughTheFieldsAndThenTheButtonsAsOneReads)
{
    Alert alert = question;
    alert.fields = {{.label = {}, .text = u"x"_s, .placeholder = {}}};
    show(alert);
    QTest::keyClick(window->focusWidget(), Qt::Key_Tab);
    EXPECT_EQ(window->focusWidget(), button(u"Cancel"_s));
    QTest::keyClick(window->focusWidget(), Qt::Key_Tab);
    EXPECT_EQ(window->focusWidget(), button(u"Clear"_s));
    QTest::keyClick(window->focusWidget(), Qt::Key_Tab);
    EXPECT_EQ(window->focusWidget(), window->findChild<TextField*>());
}

TEST_F(AlertWindowTest, TheRingIsThereOnceTheKeyboardHasMoved)
{
    show(question);
    EXPECT_EQ(window->focusWidget(), button(u"Clear"_s));
    EXPECT_EQ(window->findChild<FocusRing*>(), nullptr);
    QTest::keyClick(window->focusWidget(), Qt::Key_Tab);
    const auto* const ring = window->findChild<FocusRing*>();
    ASSERT_NE(ring, nullptr);
    EXPECT_TRUE(ring->isVisible());
    EXPECT_TRUE(ring->geometry().contains(button(u"Cancel"_s)->geometry()));
}

TEST_F(AlertWindowTest, ReturnOnAnotherButtonPressesThatOne)
{
    show(question);
    QTest::keyClick(window->focusWidget(), Qt::Key_Tab);
    QTest::keyClick(window->focusWidget(), Qt::Key_Return);
    EXPECT_EQ(answers, (QList<AlertAnswer>{{1, {}}}));
}

} // namespace
} // namespace tavrin::ui

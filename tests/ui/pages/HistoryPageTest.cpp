#include "platform/linux/LinuxTexts.h"
#include "ui/controls/Popup.h"
#include "ui/pages/HistoryPageFixture.h"

#include <QAccessible>
#include <QMouseEvent>

#include <utility>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace tavrin::ui {
namespace {

using testing::chevronButton;
using testing::copyButton;
using testing::deleteButton;
using testing::longText;
using testing::toggleButton;
using HistoryPageTest = testing::HistoryPageFixture;

const QStringList languages{u"zh-Hans"_s, u"zh-Hant"_s, u"en"_s};

TEST_F(HistoryPageTest, TheRecordsInSightAreShown)
{
    openThree();
    EXPECT_EQ(inSight(), (QStringList{u"An Answer"_s, u"周四的评审"_s, u"written"_s}));
    EXPECT_EQ(card(0).content().row.header, u"08:00  ·  Chat"_s);
    EXPECT_EQ(card(0).geometry(), QRect(16, 34, 538, 94));
    EXPECT_EQ(card(1).geometry(), QRect(16, 138, 538, 94));
    EXPECT_FALSE(bar().maximum() > 0);
    EXPECT_TRUE(labelText("historyStorageLabel").startsWith(u"3 records · "_s));
}

TEST_F(HistoryPageTest, AHundredThousandRecordsTakeSixCards)
{
    open(numbered(100'000));
    EXPECT_EQ(page->findChildren<RecordCard*>().size(), 6);
    EXPECT_EQ(bar().maximum(), 34 + 100'000 * 104 - 10 + 22 - 398);
    EXPECT_EQ(inSight(), (QStringList{u"result 0"_s, u"result 1"_s, u"result 2"_s, u"result 3"_s}));

    bar().setValue(34 + 50'000 * 104 + 90);
    EXPECT_EQ(inSight(),
        (QStringList{u"result 50000"_s, u"result 50001"_s, u"result 50002"_s, u"result 50003"_s,
            u"result 50004"_s}));
    EXPECT_EQ(card(0).y(), -90);
    bar().setValue(bar().maximum());
    EXPECT_EQ(inSight().last(), u"result 99999"_s);
}

TEST_F(HistoryPageTest, AListThatIsScrolledHasABorderOnTop)
{
    open(numbered(100));
    const auto topPixel = [&] { return list().grab().toImage().pixel(100, 0); };
    EXPECT_NE(topPixel(), brand::tavBorder().rgb());
    bar().setValue(90); // Within a card.
    EXPECT_EQ(topPixel(), brand::tavBorder().rgb());
    bar().setValue(0);
    EXPECT_NE(topPixel(), brand::tavBorder().rgb());
}

TEST_F(HistoryPageTest, WithoutRecordsThePageSaysSo)
{
    open({});
    QStringList shown;
    for (const Label* const label : page->findChildren<Label*>()) {
        if (label->isVisible())
            shown.append(label->fullText());
    }
    EXPECT_TRUE(shown.contains(u"No history yet"_s));
    EXPECT_FALSE(list().isVisible());
    showThree();
    EXPECT_TRUE(list().isVisible());
}

TEST_F(HistoryPageTest, EveryCaptionFitsInEveryLanguage)
{
    const Localization linux{preferences, workspace, KeyNames(), linuxTexts()};
    for (const QString& language : languages) {
        preferences.setValue(keys::interfaceLanguage, language);
        open({});
        const HistoryPage onLinux(window, controller, linux);
        for (const HistoryPage* const one : {&std::as_const(*page), &onLinux}) {
            for (const Label* const label : one->findChildren<Label*>()) {
                EXPECT_EQ(label->toolTip(), QString()) << label->fullText().toStdString();
                EXPECT_LE(label->lineCount(), 2);
            }
        }
    }
}

TEST_F(HistoryPageTest, AButtonActsOnItsRecord)
{
    openThree();
    button(1, copyButton).click();
    EXPECT_EQ(pasteboard.string(), u"周四的评审"_s);
    EXPECT_EQ(button(1, copyButton).accessibleName(), u"✓ Copied"_s);
    EXPECT_EQ(button(0, copyButton).accessibleName(), u"Copy · 1 月 1 日, 08:00  ·  Chat"_s);
    time.advance(1200ms);
    EXPECT_EQ(button(1, copyButton).accessibleName(), u"Copy · 1 月 1 日, 08:00  ·  Dictation"_s);

    button(2, toggleButton).click();
    EXPECT_EQ(inSight()[2], u"third"_s);
    EXPECT_EQ(button(2, toggleButton).text(), u"Result"_s);
    EXPECT_EQ(button(1, toggleButton).text(), u"Original"_s);

    button(0, deleteButton).click();
    EXPECT_EQ(inSight(), (QStringList{u"周四的评审"_s, u"third"_s}));
}

TEST_F(HistoryPageTest, TheConfirmationPushesNothingAside)
{
    openThree();
    const int right = button(0, copyButton).geometry().right();
    const int top = card(1).y();
    button(0, copyButton).click();
    EXPECT_EQ(button(0, copyButton).geometry().right(), right);
    EXPECT_EQ(card(1).y(), top);
}

TEST_F(HistoryPageTest, AButtonOfAScrolledListActsOnTheRecordBesideIt)
{
    open(numbered(100));
    bar().setValue(34 + 30 * 104);
    button(2, copyButton).click();
    EXPECT_EQ(pasteboard.string(), u"result 32"_s);
    button(1, deleteButton).click();
    EXPECT_EQ(inSight().first(), u"result 30"_s);
    EXPECT_EQ(inSight()[1], u"result 32"_s);
}

TEST_F(HistoryPageTest, ALongTextCanBeOpenedAndClosed)
{
    open({R"({"id":"A","mode":"chat","finalText":")" + longText() + R"("})",
        R"({"id":"B","mode":"chat","finalText":"short"})"});
    EXPECT_EQ(card(0).height(), 114);
    EXPECT_TRUE(button(0, chevronButton).isVisible());
    EXPECT_FALSE(button(1, chevronButton).isVisible());

    button(0, chevronButton).click();
    const int lines = RecordCard::countLines(QString::fromUtf8(longText()));
    EXPECT_GT(lines, 5);
    EXPECT_EQ(card(0).height(), 74 + 20 * lines);
    EXPECT_EQ(card(1).y(), card(0).y() + card(0).height() + 10);

    button(0, chevronButton).click();
    EXPECT_EQ(card(0).height(), 114);
}

TEST_F(HistoryPageTest, AClickOnALongTextOpensIt)
{
    open({R"({"id":"A","mode":"chat","finalText":")" + longText() + R"("})",
        R"({"id":"B","mode":"chat","finalText":"short"})"});
    const auto click = [&](RecordCard& on) {
        for (const QEvent::Type type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease}) {
            QMouseEvent event(type, QPointF(60, 80), on.mapToGlobal(QPointF(60, 80)),
                Qt::LeftButton, Qt::LeftButton, {});
            QApplication::sendEvent(&on, &event);
        }
    };
    click(card(0));
    EXPECT_GT(card(0).height(), 114);
    click(card(0));
    EXPECT_EQ(card(0).height(), 114);
    click(card(1));
    EXPECT_EQ(card(1).height(), 94);
}

TEST_F(HistoryPageTest, AnOpenedTextHas60LinesAtMost)
{
    open({R"({"id":"A","mode":"chat","finalText":")" + QByteArray("line\\n").repeated(500)
        + R"("})"});
    button(0, chevronButton).click();
    EXPECT_EQ(card(0).height(), 74 + 60 * 20);
    EXPECT_EQ(bar().maximum(), 34 + 74 + 60 * 20 + 22 - 398);
}

TEST_F(HistoryPageTest, TheListKeepsItsPlaceWhenARecordArrives)
{
    open(numbered(100));
    store.setSavedHandler([this] { controller.refreshHistoryView(); });
    bar().setValue(34 + 30 * 104 + 17);
    save(u"new"_s, u"a new one"_s);
    EXPECT_EQ(inSight().first(), u"result 30"_s);
    EXPECT_EQ(card(0).y(), -17);

    bar().setValue(0);
    save(u"new"_s, u"the newest"_s);
    EXPECT_EQ(inSight().first(), u"the newest"_s);
    EXPECT_EQ(bar().value(), 0);
}

TEST_F(HistoryPageTest, AnExpandedRecordStaysSoOutOfSight)
{
    open(numbered(100));
    button(1, toggleButton).click();
    bar().setValue(bar().maximum());
    bar().setValue(0);
    EXPECT_EQ(inSight()[1], u"original 1"_s);
    EXPECT_EQ(inSight()[2], u"result 2"_s);
}

// Bad input.

TEST_F(HistoryPageTest, WhateverARecordHoldsIsShownAsItIs)
{
    open(
        {R"({"id":"A","mode":"translation","targetLanguage":"<b>x</b>","finalText":"<b>bold</b><img src=a>"})",
            R"({"id":"B","mode":"chat","finalText":"\u202Eright to left\u0000\u0007"})",
            R"({"id":"C","timestamp":"soon","finalText":["a"],"transcript":7})", R"({"id":""})",
            R"({"id":"E","mode":"chat","finalText":")" + QByteArray(10'000, 'w') + R"("})"});
    EXPECT_EQ(card(0).content().row.text, u"<b>bold</b><img src=a>"_s);
    EXPECT_EQ(card(0).content().row.header, u"08:00  ·  Translation · <b>x</b>"_s);
    EXPECT_EQ(card(2).content().row.text, QString());
    EXPECT_FALSE(page->grab().isNull());
    for (std::size_t place = 0; place < 5; ++place) {
        button(place, toggleButton).click();
        button(place, copyButton).click();
    }
    EXPECT_EQ(alerts.beeps(), 5);
}

TEST_F(HistoryPageTest, ALongHeaderLeavesTheButtonsFree)
{
    open({R"({"id":"A","mode":"translation","targetLanguage":")" + QByteArray(10'000, 'W')
        + R"("})"});
    const QImage picture = card(0).grab().toImage();
    const QRect gap(button(0, copyButton).x() - 2, 12, 2, 24); // Before the first button.
    for (int x = gap.left(); x <= gap.right(); ++x) {
        for (int y = gap.top(); y <= gap.bottom(); ++y)
            ASSERT_EQ(picture.pixelColor(x, y), QColor(Qt::white)) << x << ',' << y;
    }
}

TEST_F(HistoryPageTest, PastMidnightTodayBecomesYesterdayOnAPageInSight)
{
    open({R"({"id":"A","mode":"chat","finalText":"short","timestamp":1700000000})"});
    const auto name = [this] {
        return QAccessible::queryAccessibleInterface(&card(0))->text(QAccessible::Name);
    };
    EXPECT_EQ(name(), u"Today, 06:13  ·  Chat"_s);
    time.advance(18h);
    EXPECT_EQ(name(), u"Yesterday, 06:13  ·  Chat"_s);
    page->hide();
    EXPECT_EQ(time.pending(), 0U);
}

// Screen readers.

TEST_F(HistoryPageTest, ARecordIsAnItemOfAList)
{
    open({R"({"id":"A","mode":"chat","finalText":")" + longText() + R"(","timestamp":1700000000})",
        R"({"id":"B","mode":"chat","finalText":"short","timestamp":1700000000})"});
    QAccessibleInterface* const item = QAccessible::queryAccessibleInterface(&card(0));
    ASSERT_NE(item, nullptr);
    EXPECT_EQ(item->role(), QAccessible::ListItem);
    EXPECT_EQ(item->text(QAccessible::Name), u"Today, 06:13  ·  Chat"_s);
    EXPECT_TRUE(item->text(QAccessible::Description).startsWith(u"Edited result: some words"_s));
    EXPECT_TRUE(item->state().expandable);
    EXPECT_TRUE(item->state().collapsed);
    EXPECT_TRUE(item->state().focusable);
    button(0, chevronButton).click();
    EXPECT_TRUE(item->state().expanded);
    EXPECT_FALSE(QAccessible::queryAccessibleInterface(&card(1))->state().expandable);
}

TEST_F(HistoryPageTest, EveryControlHasANameInEveryLanguage)
{
    for (const QString& language : languages) {
        preferences.setValue(keys::interfaceLanguage, language);
        open({R"({"id":"A","mode":"chat","finalText":")" + longText() + R"("})"});
        pressFindShortcut();
        for (QWidget* const widget : page->findChildren<QWidget*>()) {
            if (widget->focusPolicy() == Qt::NoFocus || !widget->isVisible())
                continue;
            QAccessibleInterface* const control = QAccessible::queryAccessibleInterface(widget);
            ASSERT_NE(control, nullptr);
            EXPECT_NE(control->text(QAccessible::Name), QString())
                << widget->metaObject()->className();
        }
    }
}

TEST_F(HistoryPageTest, TheRetentionIsChosenInItsPopup)
{
    openThree();
    auto* const popup = page->findChild<Popup*>(u"historyRetentionPopup"_s);
    EXPECT_EQ(popup->currentText(), u"Forever"_s);
    EXPECT_EQ(popup->count(), 5);
    Q_EMIT popup->activated(0);
    EXPECT_EQ(preferences.value(keys::historyRetention).toString(), u"none"_s);
    EXPECT_EQ(popup->currentText(), u"Don't save"_s);
    EXPECT_FALSE(list().isVisible());
}

TEST_F(HistoryPageTest, APageThatIsGoneIsNotShownAnything)
{
    openThree();
    page.reset();
    controller.refreshHistoryView();
    controller.toggleWholeText(u"A"_s);
    EXPECT_EQ(background.pending(), 0);
}

} // namespace
} // namespace tavrin::ui

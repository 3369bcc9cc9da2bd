#include "ui/pages/HistoryPageFixture.h"

using namespace Qt::StringLiterals;

namespace tavrin::ui {
namespace {

using testing::deleteButton;
using testing::longText;
using testing::pressKey;
using testing::typeText;
using HistoryPageKeyboardTest = testing::HistoryPageFixture;

TEST_F(HistoryPageKeyboardTest, TabReachesEveryControlInReadingOrder)
{
    openThree();
    page->firstControl()->setFocus(Qt::TabFocusReason);
    QStringList order;
    for (int i = 0; i < 16; ++i) {
        order.append(focused());
        pressKey(Qt::Key_Tab);
    }
    QStringList expected{u"Retention"_s, QString(), QString()}; // The buttons have their titles.
    for (const auto& [text, header] : {std::pair(u"An Answer"_s, u"1 月 1 日, 08:00  ·  Chat"_s),
             std::pair(u"周四的评审"_s, u"1 月 1 日, 08:00  ·  Dictation"_s),
             std::pair(u"written"_s, u"1 月 1 日, 08:00  ·  Dictation"_s)}) {
        expected.append(text);
        for (const QString& title : {u"Copy"_s, u"Original"_s, u"Delete"_s})
            expected.append(title + u" · "_s + header);
    }
    expected.append(u"Retention"_s);
    EXPECT_EQ(order, expected);
}

TEST_F(HistoryPageKeyboardTest, TheArrowKeysGoThroughAllRecords)
{
    open(numbered(50));
    EXPECT_TRUE(list().takeKeyboard(Qt::TabFocusReason));
    EXPECT_EQ(focused(), u"result 0"_s);
    for (int i = 0; i < 10; ++i)
        pressKey(Qt::Key_Down);
    EXPECT_EQ(focused(), u"result 10"_s);
    const QWidget* const widget = QApplication::focusWidget();
    EXPECT_TRUE(list().viewport()->rect().contains(widget->geometry()));

    pressKey(Qt::Key_Up);
    EXPECT_EQ(focused(), u"result 9"_s);
    pressKey(Qt::Key_End);
    EXPECT_EQ(focused(), u"result 49"_s);
    pressKey(Qt::Key_Down);
    EXPECT_EQ(focused(), u"result 49"_s);
    pressKey(Qt::Key_PageUp);
    EXPECT_EQ(focused(), u"result 45"_s);
    pressKey(Qt::Key_Home);
    EXPECT_EQ(focused(), u"result 0"_s);
    EXPECT_EQ(bar().value(), 0);
    pressKey(Qt::Key_PageDown);
    EXPECT_EQ(focused(), u"result 3"_s); // What was in sight last is so first.
}

TEST_F(HistoryPageKeyboardTest, TheArrowKeysKeepTheButton)
{
    open(numbered(50));
    button(0, deleteButton).setFocus(Qt::TabFocusReason);
    for (int i = 0; i < 7; ++i)
        pressKey(Qt::Key_Down);
    pressKey(Qt::Key_Return);
    EXPECT_EQ(controller.content().rows.size(), 49);
    EXPECT_FALSE(inSight().contains(u"result 7"_s));
    EXPECT_EQ(focused(), u"Delete · 1 月 1 日, 08:00  ·  Chat"_s);
    pressKey(Qt::Key_Return); // The next one took its place.
    EXPECT_FALSE(inSight().contains(u"result 8"_s));
    EXPECT_TRUE(inSight().contains(u"result 9"_s));
}

TEST_F(HistoryPageKeyboardTest, ReturnOpensARecordAndCtrlCCopiesIt)
{
    open({R"({"id":"A","mode":"chat","finalText":")" + longText() + R"("})"});
    EXPECT_TRUE(list().takeKeyboard(Qt::TabFocusReason));
    pressKey(Qt::Key_Return);
    EXPECT_GT(card(0).height(), 114);
    EXPECT_EQ(QApplication::focusWidget(), &card(0));
    pressKey(Qt::Key_Return);
    EXPECT_EQ(card(0).height(), 114);
    pressKey(Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(pasteboard.string(), QString::fromUtf8(longText()));
}

TEST_F(HistoryPageKeyboardTest, TheKeyboardStaysWithItsRecord)
{
    open(numbered(50));
    store.setSavedHandler([this] { controller.refreshHistoryView(); });
    card(2).setFocus(Qt::TabFocusReason);
    save(u"new"_s, u"a new one"_s);
    EXPECT_EQ(focused(), u"result 2"_s);

    bar().setValue(104);
    EXPECT_EQ(focused(), u"result 2"_s);
    bar().setValue(20 * 104);
    EXPECT_TRUE(list().hasFocus()); // No key presses a button that nobody sees.
    bar().setValue(0);
    EXPECT_EQ(focused(), u"result 2"_s);
}

TEST_F(HistoryPageKeyboardTest, DeletingTheLastRecordLosesNothing)
{
    open(numbered(2));
    button(1, deleteButton).setFocus(Qt::TabFocusReason);
    pressKey(Qt::Key_Return);
    EXPECT_EQ(inSight(), QStringList{u"result 0"_s});
    EXPECT_EQ(focused(), u"Delete · 1 月 1 日, 08:00  ·  Chat"_s);
    pressKey(Qt::Key_Return);
    EXPECT_FALSE(list().isVisible());
    EXPECT_EQ(controller.content().emptyText, u"No history yet"_s);
}

// Looking for a text.

TEST_F(HistoryPageKeyboardTest, CtrlFOpensTheFieldAndEscapeClosesIt)
{
    openThree();
    EXPECT_FALSE(findField().isVisible());
    pressFindShortcut();
    EXPECT_TRUE(findField().isVisible());
    EXPECT_TRUE(findField().hasFocus());
    EXPECT_FALSE(page->findChild<Label*>(u"historyStorageLabel"_s)->isVisible());

    typeText(u"评审"_s);
    EXPECT_EQ(inSight(), QStringList{u"周四的评审"_s});
    EXPECT_EQ(card(0).content().query, u"评审"_s);

    pressKey(Qt::Key_Escape);
    EXPECT_FALSE(findField().isVisible());
    EXPECT_EQ(inSight().size(), 3);
    EXPECT_EQ(focused(), u"An Answer"_s);
    EXPECT_EQ(findField().text(), QString());
    EXPECT_EQ(card(0).content().query, QString());
}

TEST_F(HistoryPageKeyboardTest, TheShortcutIsThatOfTheDesktop)
{
    openThree();
    EXPECT_EQ(page->findChild<QShortcut*>()->key(), QKeySequence(QKeySequence::Find));
}

TEST_F(HistoryPageKeyboardTest, ReturnAndTheArrowLeadFromTheFieldToTheFirstMatch)
{
    openThree();
    for (const int key : {Qt::Key_Return, Qt::Key_Down}) {
        pressFindShortcut();
        findField().clear();
        typeText(u"written"_s);
        pressKey(key);
        EXPECT_EQ(focused(), u"written"_s) << key;
    }
}

TEST_F(HistoryPageKeyboardTest, WhereNothingIsFoundThePageSaysSo)
{
    openThree();
    pressFindShortcut();
    typeText(u"nowhere"_s);
    EXPECT_FALSE(list().isVisible());
    pressKey(Qt::Key_Escape);
    EXPECT_TRUE(list().isVisible());
}

TEST_F(HistoryPageKeyboardTest, AnotherSearchBeginsAtTheTop)
{
    open(numbered(100));
    pressFindShortcut();
    bar().setValue(50 * 104);
    typeText(u"r"_s);
    EXPECT_EQ(bar().value(), 0);
    EXPECT_EQ(inSight().first(), u"result 0"_s);
}

} // namespace
} // namespace tavrin::ui

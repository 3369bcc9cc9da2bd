#include "ui/pages/DictionaryPageFixture.h"

using namespace Qt::StringLiterals;

namespace tavrin::ui {
namespace {

using testing::deleteButton;
using testing::editButton;
using DictionaryListTest = testing::DictionaryPageFixture;

TEST_F(DictionaryListTest, TwentyThousandTermsTakeSixRowsOfWidgets)
{
    storeMany(20'000);
    open();
    EXPECT_EQ(window.findChildren<TermRow*>().size(), 6);
    EXPECT_EQ(
        terms(), (QStringList{u"term 0"_s, u"term 1"_s, u"term 2"_s, u"term 3"_s, u"term 4"_s}));
    EXPECT_EQ(bar().maximum(), 20'000 * 66 - 330);

    bar().setValue(10'000 * 66 + 20);
    EXPECT_EQ(terms(),
        (QStringList{u"term 10000"_s, u"term 10001"_s, u"term 10002"_s, u"term 10003"_s,
            u"term 10004"_s, u"term 10005"_s}));
    EXPECT_EQ(list().rowsInSight()[0]->y(), -20);

    bar().setValue(bar().maximum());
    EXPECT_EQ(terms().last(), "term 19999");
}

TEST_F(DictionaryListTest, AButtonActsOnTheTermBesideIt)
{
    storeMany(100);
    open();
    bar().setValue(30 * 66);
    button(2, editButton).click();
    EXPECT_EQ(alerts.shown().last().fields.first().text, "term 32");
    alerts.answer(0, {u"renamed"_s});
    EXPECT_EQ(terms()[2], "renamed");

    button(1, deleteButton).click();
    EXPECT_EQ(terms(),
        (QStringList{u"term 30"_s, u"renamed"_s, u"term 33"_s, u"term 34"_s, u"term 35"_s}));
}

TEST_F(DictionaryListTest, TheListKeepsItsPlaceWhenATermIsLearned)
{
    storeMany(100);
    open();
    bar().setValue(30 * 66 + 10);
    QVariantList entries = preferences.value(keys::personalDictionaryEntries).toList();
    entries.prepend(entry(u"learned"_s, u"auto"_s));
    store(entries);
    controller.refreshDictionaryView();

    EXPECT_EQ(terms().first(), "term 30");
    EXPECT_EQ(bar().value(), 31 * 66 + 10);

    search().setFocus();
    type(u"t"_s);
    EXPECT_EQ(bar().value(), 0);
}

TEST_F(DictionaryListTest, TheLastRowsGoWhereTheListIsShorter)
{
    storeMany(7);
    open();
    bar().setValue(bar().maximum());
    storeMany(2);
    controller.refreshDictionaryView();

    EXPECT_EQ(terms(), (QStringList{u"term 0"_s, u"term 1"_s}));
    EXPECT_EQ(bar().maximum(), 0);
}

TEST_F(DictionaryListTest, TheArrowKeysGoThroughAllTerms)
{
    storeMany(20);
    open();
    button(0, deleteButton).setFocus(Qt::TabFocusReason);
    for (int i = 0; i < 7; ++i)
        press(Qt::Key_Down);
    EXPECT_EQ(focused(), "Delete term 7");
    EXPECT_EQ(terms().last(), "term 7");

    press(Qt::Key_Up);
    EXPECT_EQ(focused(), "Delete term 6");
    press(Qt::Key_End);
    EXPECT_EQ(focused(), "Delete term 19");
    press(Qt::Key_Down);
    EXPECT_EQ(focused(), "Delete term 19");
    press(Qt::Key_PageUp);
    EXPECT_EQ(focused(), "Delete term 14");
    press(Qt::Key_Home);
    EXPECT_EQ(focused(), "Delete term 0");
    EXPECT_EQ(bar().value(), 0);
    press(Qt::Key_PageDown);
    EXPECT_EQ(focused(), "Delete term 5");
    press(Qt::Key_Left);
    EXPECT_EQ(focused(), "Edit term 5");
}

TEST_F(DictionaryListTest, TheKeyboardStaysWithItsTermWhenTheListIsScrolled)
{
    storeMany(40);
    open();
    button(2, deleteButton).setFocus(Qt::TabFocusReason);
    bar().setValue(66);
    EXPECT_EQ(focused(), "Delete term 2");

    bar().setValue(20 * 66);
    EXPECT_TRUE(list().hasFocus()); // No key presses a button that nobody sees.
    press(Qt::Key_Space, u" "_s);
    EXPECT_EQ(controller.content().rows.size(), 40);

    bar().setValue(0);
    EXPECT_EQ(focused(), "Delete term 2");
}

TEST_F(DictionaryListTest, ARowHalfInSightMovesIntoItWithTheKeyboard)
{
    storeMany(40);
    open();
    bar().setValue(30);
    button(5, editButton).setFocus(Qt::TabFocusReason);

    EXPECT_EQ(focused(), "Edit term 5");
    EXPECT_EQ(bar().value(), 66);
    EXPECT_EQ(terms().first(), "term 1");
}

TEST_F(DictionaryListTest, APressOnOneTermNeverEndsOnAnother)
{
    storeMany(40);
    open();
    bar().setValue(30);
    Button& pressed = button(5, deleteButton); // Half in sight.
    mouse(pressed, QEvent::MouseButtonPress);
    EXPECT_EQ(bar().value(), 30);
    bar().setValue(96);
    mouse(pressed, QEvent::MouseButtonRelease);

    EXPECT_EQ(controller.content().rows.size(), 40);
}

TEST_F(DictionaryListTest, AfterADeletionTheKeyboardIsOnTheNextTerm)
{
    storeMany(3);
    open();
    button(1, deleteButton).setFocus(Qt::TabFocusReason);
    press(Qt::Key_Space, u" "_s);
    EXPECT_EQ(terms(), (QStringList{u"term 0"_s, u"term 2"_s}));
    EXPECT_EQ(focused(), "Delete term 2");

    press(Qt::Key_Return);
    EXPECT_EQ(terms(), QStringList{u"term 0"_s});
    EXPECT_EQ(focused(), "Delete term 0");
}

TEST_F(DictionaryListTest, OddTermsAreShownAsTheyAre)
{
    const QString markup = u"<b>bold</b><img src=x>"_s;
    const QString endless(10'000, u'长');
    store({entry(markup), entry(endless), entry(u"שלום עולם"_s), QVariantMap{}});
    open();

    const auto label = [this](std::size_t row) {
        return list().rowsInSight().at(row)->findChild<Label*>();
    };
    EXPECT_EQ(label(0)->text(), markup);
    EXPECT_EQ(label(0)->textFormat(), Qt::PlainText);
    EXPECT_EQ(label(1)->lineCount(), 1);
    EXPECT_EQ(label(1)->height(), 20);
    EXPECT_FALSE(label(1)->toolTip().isEmpty());
    EXPECT_EQ(button(1, editButton).accessibleName().size(), 5 + 200);
    EXPECT_EQ(label(3)->text(), "");
    EXPECT_FALSE(page->grab().isNull());
}

} // namespace
} // namespace tavrin::ui

#include "support/ScreenReader.h"
#include "ui/controls/Card.h"
#include "ui/controls/Segments.h"
#include "ui/pages/DictionaryPageFixture.h"

#include <QCheckBox>
#include <QRadioButton>

using namespace Qt::StringLiterals;

namespace tavrin::ui {
namespace {

using testing::deleteButton;
using testing::editButton;
using DictionaryPageTest = testing::DictionaryPageFixture;

TEST_F(DictionaryPageTest, EverythingHasItsFrame)
{
    storeMany(9);
    open();

    EXPECT_EQ(frameIn(search(), *page), QRect(36, 494, 300, 34));
    EXPECT_EQ(frameIn(named(u"dictionaryFilterControl"_s), *page), QRect(348, 494, 226, 34));
    EXPECT_EQ(frameIn(newTerm(), *page), QRect(36, 450, 418, 34));
    EXPECT_EQ(frameIn(named(u"addTermButton"_s), *page), QRect(464, 450, 110, 34));
    EXPECT_EQ(frameIn(named(u"writingStyleButton"_s), *page), QRect(444, 408, 130, 30));
    EXPECT_EQ(frameIn(named(u"learnCorrectionsBox"_s), *page).topLeft(), QPoint(36, 408));
    const Card& card = *window.findChild<Card*>();
    EXPECT_EQ(frameIn(card, *page), QRect(36, 62, 538, 332));
    EXPECT_EQ(frameIn(*list().rowsInSight()[0], card), QRect(1, 265, 536, 66));
    EXPECT_EQ(frameIn(*list().rowsInSight()[4], card), QRect(1, 1, 536, 66));
    EXPECT_EQ(frameIn(button(0, deleteButton), card).right(), 525);
    EXPECT_EQ(frameIn(button(0, deleteButton), card).y(), 285);
}

TEST_F(DictionaryPageTest, ARowShowsItsTermAndWhereItIsFrom)
{
    store({entry(u"Tavrin"_s), entry(u"Ostrander"_s, u"auto"_s)});
    open();

    EXPECT_EQ(labels(),
        (QStringList{u"Dictionary"_s,
            u"Save names and preferred spellings to improve recognition and AI editing."_s,
            u"Tavrin"_s, u"Manual"_s, u"Ostrander"_s, u"✦ Learned"_s, u"2 terms, 1 learned"_s}));
    EXPECT_EQ(button(1, editButton).text(), "Edit");
    EXPECT_EQ(button(1, editButton).accessibleName(), "Edit Ostrander");
    EXPECT_EQ(button(1, deleteButton).text(), "Delete");
    EXPECT_EQ(button(1, deleteButton).accessibleName(), "Delete Ostrander");
}

TEST_F(DictionaryPageTest, AnEmptyListSaysWhyInItsPlace)
{
    open();
    EXPECT_TRUE(
        labels().contains(u"No terms yet. Add your first name or preferred spelling above."_s));
    EXPECT_FALSE(list().isVisible());

    search().setFocus();
    type(u"x"_s);
    EXPECT_TRUE(labels().contains(u"No matching terms"_s));
}

TEST_F(DictionaryPageTest, TypingInTheSearchFieldFindsTermsAndEscapeEmptiesIt)
{
    store({entry(u"Tavrin"_s), entry(u"Ostrander"_s), entry(u"Travel"_s)});
    open();
    search().setFocus();
    type(u"TR"_s);
    EXPECT_EQ(terms(), (QStringList{u"Ostrander"_s, u"Travel"_s}));

    press(Qt::Key_Left);
    type(u"sn"_s); // Where the caret is, and stays.
    EXPECT_EQ(search().text(), "TsnR");
    EXPECT_TRUE(terms().isEmpty());

    press(Qt::Key_Escape);
    EXPECT_EQ(terms().size(), 3);
    EXPECT_EQ(search().text(), "");
}

TEST_F(DictionaryPageTest, TheArrowLeadsFromTheSearchFieldToTheTerms)
{
    storeMany(3);
    open();
    search().setFocus();
    type(u"1"_s);
    press(Qt::Key_Down);
    EXPECT_EQ(focused(), "Edit term 1");

    search().setText(u"nothing has this"_s);
    search().setFocus();
    press(Qt::Key_Down);
    EXPECT_TRUE(search().hasFocus());
}

TEST_F(DictionaryPageTest, ASegmentChoosesTheSource)
{
    store({entry(u"Tavrin"_s), entry(u"Ostrander"_s, u"auto"_s)});
    open();
    const QList<QRadioButton*>& segments =
        static_cast<Segments&>(named(u"dictionaryFilterControl"_s)).buttons();
    QStringList titles;
    for (const QRadioButton* const segment : segments)
        titles.append(segment->text());
    EXPECT_EQ(titles, (QStringList{u"All"_s, u"Learned"_s, u"Manual"_s}));
    EXPECT_TRUE(segments[0]->isChecked());

    segments[1]->click();
    EXPECT_EQ(terms(), QStringList{u"Ostrander"_s});
    segments[2]->click();
    EXPECT_EQ(terms(), QStringList{u"Tavrin"_s});
}

TEST_F(DictionaryPageTest, ReturnAddsTheTerm)
{
    storeMany(1);
    open();
    newTerm().setFocus();
    type(u"GitHub"_s);
    press(Qt::Key_Return);

    EXPECT_EQ(terms(), (QStringList{u"GitHub"_s, u"term 0"_s}));
    EXPECT_EQ(newTerm().text(), "");
    EXPECT_TRUE(newTerm().hasFocus());
    EXPECT_EQ(calls, QStringList{u"success"_s});
}

TEST_F(DictionaryPageTest, TheButtonAddsTheTermAndTheListShowsItOnTop)
{
    storeMany(50);
    open();
    bar().setValue(900);
    newTerm().setFocus();
    type(u"GitHub"_s);
    named<Button>(u"addTermButton"_s).click();

    EXPECT_EQ(terms().first(), "GitHub");
    EXPECT_EQ(bar().value(), 0);
}

TEST_F(DictionaryPageTest, ATermThatIsThereIsShownInTheSearch)
{
    storeMany(50);
    open();
    newTerm().setFocus();
    type(u"TERM 33"_s);
    press(Qt::Key_Return);

    EXPECT_EQ(search().text(), "TERM 33");
    EXPECT_EQ(terms(), QStringList{u"term 33"_s});
    EXPECT_EQ(alerts.beeps(), 1);
}

TEST_F(DictionaryPageTest, ATermOfAnyLengthCanBeTyped)
{
    open();
    newTerm().setText(QString(40'000, u'x'));
    named<Button>(u"addTermButton"_s).click();

    EXPECT_EQ(controller.content().rows.first().term.size(), 40'000);
}

TEST_F(DictionaryPageTest, TheBoxSwitchesLearning)
{
    open();
    auto& box = named<QCheckBox>(u"learnCorrectionsBox"_s);
    EXPECT_TRUE(box.isChecked());
    EXPECT_EQ(box.text(), "Learn corrections");

    box.click();
    EXPECT_EQ(preferences.value(keys::automaticDictionaryLearning), QVariant(false));
    EXPECT_FALSE(box.isChecked());

    ASSERT_TRUE(testing::pressByScreenReader(box));
    EXPECT_EQ(preferences.value(keys::automaticDictionaryLearning), QVariant(true));
    EXPECT_TRUE(box.isChecked());
}

TEST_F(DictionaryPageTest, WritingStyleOpensItsWindow)
{
    open();
    named<Button>(u"writingStyleButton"_s).click();
    EXPECT_EQ(calls, QStringList{u"personalization"_s});
}

TEST_F(DictionaryPageTest, TabReachesEverythingInReadingOrder)
{
    storeMany(2);
    open();

    EXPECT_EQ(tabOrder(search()),
        (QStringList{u"Search terms"_s, QString(), u"Enter a term, for example Tavrin"_s, QString(),
            QString(), QString(), u"Edit term 0"_s, u"Delete term 0"_s, u"Edit term 1"_s,
            u"Delete term 1"_s}));
}

TEST_F(DictionaryPageTest, EachLanguageHasItsCaptions)
{
    for (const auto& [language, subtitle, placeholder] :
        {std::tuple{
             u"zh-Hans"_s, u"保存人名和惯用写法，提升识别与 AI 整理的效果。"_s, u"搜索词条"_s},
            std::tuple{u"zh-Hant"_s, u"儲存人名與慣用寫法，提升辨識與 AI 整理的效果。"_s,
                u"搜尋詞條"_s}}) {
        preferences.setValue(keys::interfaceLanguage, language);
        open();
        EXPECT_TRUE(labels().contains(subtitle));
        EXPECT_EQ(search().placeholderText(), placeholder);
        page.reset();
    }
}

TEST_F(DictionaryPageTest, APageThatIsGoneIsShownNothing)
{
    open();
    page.reset();
    controller.searchTerms(u"x"_s);
    controller.enterNewTerm(u"GitHub"_s);
    controller.addDictionaryTerm();

    EXPECT_EQ(alerts.beeps(), 1); // There is no page to add from.
}

} // namespace
} // namespace tavrin::ui

#include "ui/pages/DictionaryPage.h"

#include "app/pages/DictionaryController.h"
#include "ui/controls/Button.h"
#include "ui/controls/Card.h"
#include "ui/controls/Label.h"
#include "ui/controls/Segments.h"
#include "ui/pages/DictionaryList.h"
#include "ui/pages/PageFixture.h"
#include "ui/pages/TermRow.h"

#include <QCheckBox>
#include <QLineEdit>
#include <QRadioButton>
#include <QScrollBar>

#include <optional>

using namespace Qt::StringLiterals;

namespace tavrin::ui {
namespace {

constexpr std::size_t edit = 0;
constexpr std::size_t remove = 1;

class DictionaryPageTest : public testing::PageFixture {
protected:
    QStringList calls;
    DictionaryController controller{{
        .alerts = alerts,
        .clock = time,
        .localization = localization,
        .preferences = preferences,
        .playSound = [this](const QString& name) { calls.append(name); },
        .endCorrectionWatch = [] {},
        .showPersonalizationWindow = [this] { calls.append(u"personalization"_s); },
    }};
    std::optional<DictionaryPage> page;

    static QVariantMap entry(const QString& term, const QString& source = u"manual"_s)
    {
        return {{u"id"_s, u"id of "_s + term}, {u"term"_s, term}, {u"source"_s, source}};
    }

    void store(const QVariantList& entries)
    {
        preferences.setValue(keys::personalDictionaryEntries, entries);
    }

    /// "term 0", "term 1", … from the top.
    void storeMany(int count)
    {
        QVariantList entries;
        for (int i = 0; i < count; ++i)
            entries.append(entry(u"term %1"_s.arg(i)));
        store(entries);
    }

    void open()
    {
        page.emplace(window, controller, localization);
        page->show();
        show();
    }

    DictionaryList& list() const { return *window.findChild<DictionaryList*>(); }

    QScrollBar& bar() const { return *list().verticalScrollBar(); }

    QLineEdit& search() const { return named<QLineEdit>(u"dictionarySearchField"_s); }

    QLineEdit& newTerm() const { return named<QLineEdit>(u"dictionaryNewTermField"_s); }

    /// The terms of the rows that are at least partly in sight.
    QStringList terms() const
    {
        QStringList shown;
        for (const TermRow* const row : list().rowsInSight()) {
            if (row->isVisible() && row->y() < list().height())
                shown.append(row->findChild<Label*>()->fullText());
        }
        return shown;
    }

    Button& button(std::size_t row, std::size_t which) const
    {
        return *list().rowsInSight().at(row)->buttons().at(which);
    }

    static QString focused()
    {
        const QWidget* const widget = QApplication::focusWidget();
        return widget ? widget->accessibleName() : QString();
    }
};

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
    EXPECT_EQ(frameIn(button(0, remove), card).right(), 525);
    EXPECT_EQ(frameIn(button(0, remove), card).y(), 285);
}

TEST_F(DictionaryPageTest, ARowShowsItsTermAndWhereItIsFrom)
{
    store({entry(u"Tavrin"_s), entry(u"Ostrander"_s, u"auto"_s)});
    open();

    EXPECT_EQ(labels(),
        (QStringList{u"Dictionary"_s,
            u"Save names and preferred spellings to improve recognition and AI editing."_s,
            u"Tavrin"_s, u"Manual"_s, u"Ostrander"_s, u"✦ Learned"_s, u"2 terms, 1 learned"_s}));
    EXPECT_EQ(button(1, edit).text(), "Edit");
    EXPECT_EQ(button(1, edit).accessibleName(), "Edit Ostrander");
    EXPECT_EQ(button(1, remove).text(), "Delete");
    EXPECT_EQ(button(1, remove).accessibleName(), "Delete Ostrander");
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
    type(u"s"_s); // Where the caret is.
    EXPECT_EQ(search().text(), "TsR");
    EXPECT_TRUE(terms().isEmpty());

    press(Qt::Key_Escape);
    EXPECT_EQ(terms().size(), 3);
    EXPECT_EQ(search().text(), "");
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
}

TEST_F(DictionaryPageTest, WritingStyleOpensItsWindow)
{
    open();
    named<Button>(u"writingStyleButton"_s).click();
    EXPECT_EQ(calls, QStringList{u"personalization"_s});
}

TEST_F(DictionaryPageTest, TwentyThousandTermsTakeSixRowsOfWidgets)
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

TEST_F(DictionaryPageTest, AButtonActsOnTheTermBesideIt)
{
    storeMany(100);
    open();
    bar().setValue(30 * 66);
    button(2, edit).click();
    EXPECT_EQ(alerts.shown().last().fields.first().text, "term 32");
    alerts.answer(0, {u"renamed"_s});
    EXPECT_EQ(terms()[2], "renamed");

    button(1, remove).click();
    EXPECT_EQ(terms(),
        (QStringList{u"term 30"_s, u"renamed"_s, u"term 33"_s, u"term 34"_s, u"term 35"_s}));
}

TEST_F(DictionaryPageTest, TheListKeepsItsPlaceWhenATermIsLearned)
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

TEST_F(DictionaryPageTest, TheLastRowsGoWhereTheListIsShorter)
{
    storeMany(7);
    open();
    bar().setValue(bar().maximum());
    storeMany(2);
    controller.refreshDictionaryView();

    EXPECT_EQ(terms(), (QStringList{u"term 0"_s, u"term 1"_s}));
    EXPECT_EQ(bar().maximum(), 0);
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

TEST_F(DictionaryPageTest, TheArrowKeysGoThroughAllTerms)
{
    storeMany(20);
    open();
    button(0, remove).setFocus(Qt::TabFocusReason);
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

TEST_F(DictionaryPageTest, TheKeyboardStaysWithItsTermWhenTheListIsScrolled)
{
    storeMany(40);
    open();
    button(2, remove).setFocus(Qt::TabFocusReason);
    bar().setValue(66);
    EXPECT_EQ(focused(), "Delete term 2");

    bar().setValue(20 * 66);
    EXPECT_TRUE(list().hasFocus()); // No key presses a button that nobody sees.
    press(Qt::Key_Space, u" "_s);
    EXPECT_EQ(controller.content().rows.size(), 40);

    bar().setValue(0);
    EXPECT_EQ(focused(), "Delete term 2");
}

TEST_F(DictionaryPageTest, ARowHalfInSightMovesIntoItWithTheKeyboard)
{
    storeMany(40);
    open();
    bar().setValue(30);
    button(5, edit).setFocus(Qt::TabFocusReason);

    EXPECT_EQ(focused(), "Edit term 5");
    EXPECT_EQ(bar().value(), 66);
    EXPECT_EQ(terms().first(), "term 1");
}

TEST_F(DictionaryPageTest, AfterADeletionTheKeyboardIsOnTheNextTerm)
{
    storeMany(3);
    open();
    button(1, remove).setFocus(Qt::TabFocusReason);
    press(Qt::Key_Space, u" "_s);
    EXPECT_EQ(terms(), (QStringList{u"term 0"_s, u"term 2"_s}));
    EXPECT_EQ(focused(), "Delete term 2");

    press(Qt::Key_Return);
    EXPECT_EQ(terms(), QStringList{u"term 0"_s});
    EXPECT_EQ(focused(), "Delete term 0");
}

TEST_F(DictionaryPageTest, OddTermsAreShownAsTheyAre)
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
    EXPECT_EQ(button(1, edit).accessibleName().size(), 5 + 200);
    EXPECT_EQ(label(3)->text(), "");
    EXPECT_FALSE(page->grab().isNull());
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

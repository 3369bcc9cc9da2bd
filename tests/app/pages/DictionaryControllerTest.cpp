#include "app/pages/DictionaryController.h"

#include "app/FakePanels.h"
#include "app/pages/Captions.h"
#include "app/pages/DictionaryTexts.h"
#include "app/settings/Localization.h"
#include "dictionary/DictionaryStore.h"
#include "platform/preferences/PreferenceKeys.h"
#include "support/QtPrinters.h"
#include "support/ports/InMemoryPreferences.h"
#include "support/ports/InMemoryWorkspace.h"
#include "support/ports/ScriptedAlerts.h"
#include "support/ports/VirtualTime.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace tavrin {
namespace {

QVariantMap entry(const QString& identifier, const QString& term, const QString& source)
{
    return {{u"id"_s, identifier}, {u"term"_s, term}, {u"source"_s, source}};
}

class DictionaryControllerTest : public ::testing::Test {
protected:
    testing::InMemoryPreferences preferences;
    testing::InMemoryWorkspace workspace;
    testing::VirtualTime time;
    testing::ScriptedAlerts alerts;
    Localization localization{preferences, workspace, KeyNames()};
    QStringList calls;
    testing::FakeView<DictionaryContent> page;
    DictionaryController controller{{
        .alerts = alerts,
        .clock = time,
        .localization = localization,
        .preferences = preferences,
        .playSound = [this](const QString& name) { calls.append(u"sound "_s + name); },
        .endCorrectionWatch = [this] { calls.append(u"end watch"_s); },
        .showPersonalizationWindow = [this] { calls.append(u"personalization"_s); },
    }};

    DictionaryControllerTest()
    {
        preferences.setValue(keys::interfaceLanguage, u"en"_s);
        controller.setView(&page);
    }

    void store(const QVariantList& entries)
    {
        preferences.setValue(keys::personalDictionaryEntries, entries);
    }

    void storeFour()
    {
        store({entry(u"A"_s, u"Tavrin"_s, u"manual"_s), entry(u"B"_s, u"Ostrander"_s, u"auto"_s),
            entry(u"C"_s, u"张晓鸥"_s, u"manual"_s), entry(u"D"_s, u"STRANGE Tools"_s, u"auto"_s)});
    }

    static QStringList terms(const DictionaryContent& content)
    {
        QStringList shown;
        for (const DictionaryRow& row : content.rows)
            shown.append(row.term);
        return shown;
    }

    QStringList shown() const { return terms(page.shown.value()); }

    QStringList shownFor(const QString& search)
    {
        controller.searchTerms(search);
        return shown();
    }
};

TEST_F(DictionaryControllerTest, TheTermsStandInStoredOrderWithTheirSources)
{
    storeFour();
    controller.refreshDictionaryView();

    EXPECT_EQ(page.shown->rows,
        (QList<DictionaryRow>{{u"A"_s, u"Tavrin"_s, false}, {u"B"_s, u"Ostrander"_s, true},
            {u"C"_s, u"张晓鸥"_s, false}, {u"D"_s, u"STRANGE Tools"_s, true}}));
    EXPECT_EQ(page.shown->emptyText, "");
    EXPECT_EQ(page.shown->searchText, "");
    EXPECT_EQ(page.shown->filter, DictionaryFilter::All);
    EXPECT_TRUE(page.shown->learnsCorrections);
}

TEST_F(DictionaryControllerTest, SearchingPaysNoRegardToLetterCase)
{
    storeFour();

    EXPECT_EQ(shownFor(u"stRAN"_s), (QStringList{u"Ostrander"_s, u"STRANGE Tools"_s}));
    EXPECT_EQ(shownFor(u"晓鸥"_s), QStringList{u"张晓鸥"_s});
    EXPECT_EQ(page.shown->searchText, u"晓鸥"_s);
    EXPECT_EQ(shownFor(QString()).size(), 4);
}

TEST_F(DictionaryControllerTest, ASpaceInTheSearchIsSearchedFor)
{
    storeFour();

    EXPECT_EQ(shownFor(u" tools"_s), QStringList{u"STRANGE Tools"_s});
    EXPECT_TRUE(shownFor(u" tavrin"_s).isEmpty());
    EXPECT_EQ(page.shown->emptyText, "No matching terms");
    EXPECT_EQ(shownFor(u" "_s), QStringList{u"STRANGE Tools"_s});
}

TEST_F(DictionaryControllerTest, TheFilterAdmitsTermsByTheirSource)
{
    storeFour();

    controller.selectFilter(1);
    EXPECT_EQ(shown(), (QStringList{u"Ostrander"_s, u"STRANGE Tools"_s}));
    EXPECT_EQ(page.shown->filter, DictionaryFilter::Learned);
    controller.selectFilter(2);
    EXPECT_EQ(shown(), (QStringList{u"Tavrin"_s, u"张晓鸥"_s}));
    EXPECT_EQ(page.shown->filter, DictionaryFilter::Manual);
    EXPECT_EQ(shownFor(u"tav"_s), QStringList{u"Tavrin"_s});
    controller.selectFilter(1);
    EXPECT_TRUE(shown().isEmpty());
    controller.selectFilter(0);
    EXPECT_EQ(shown(), QStringList{u"Tavrin"_s});
}

TEST_F(DictionaryControllerTest, ARowBeyondTheFilterIsTheNearestOne)
{
    controller.selectFilter(9);
    EXPECT_EQ(page.shown->filter, DictionaryFilter::Manual);
    controller.selectFilter(-1);
    EXPECT_EQ(page.shown->filter, DictionaryFilter::All);
}

TEST_F(DictionaryControllerTest, TheCountIsOfAllTermsWhateverIsShown)
{
    storeFour();
    controller.selectFilter(2);
    controller.searchTerms(u"nothing has this"_s);

    EXPECT_EQ(page.shown->count, "4 terms, 2 learned");
    preferences.setValue(keys::interfaceLanguage, u"zh-Hans"_s);
    EXPECT_EQ(controller.content().count, u"4 个词条，已学习 2 个"_s);
    preferences.setValue(keys::interfaceLanguage, u"zh-Hant"_s);
    EXPECT_EQ(controller.content().count, u"4 個詞條，已學習 2 個"_s);
}

TEST_F(DictionaryControllerTest, AnEmptyListSaysWhy)
{
    controller.refreshDictionaryView();
    EXPECT_EQ(
        page.shown->emptyText, "No terms yet. Add your first name or preferred spelling above.");
    EXPECT_EQ(page.shown->count, "0 terms, 0 learned");

    controller.searchTerms(u" "_s);
    EXPECT_EQ(page.shown->emptyText, "No matching terms");
}

TEST_F(DictionaryControllerTest, WithoutLearnedTermsTheFilterShowsThatThereAreNone)
{
    store({entry(u"A"_s, u"Tavrin"_s, u"manual"_s)});
    controller.selectFilter(1);

    EXPECT_TRUE(shown().isEmpty());
    EXPECT_EQ(
        page.shown->emptyText, "No terms yet. Add your first name or preferred spelling above.");
}

TEST_F(DictionaryControllerTest, MissingAndWrongFieldsAreShownAsWhatTheyAre)
{
    store({QVariantMap{{u"id"_s, u"A"_s}, {u"term"_s, u"no source"_s}},
        QVariantMap{{u"id"_s, 7}, {u"term"_s, 8}, {u"source"_s, 9}}, u"no entry"_s,
        entry(u"B"_s, u"imported"_s, u"import"_s)});
    controller.refreshDictionaryView();

    EXPECT_EQ(page.shown->rows,
        (QList<DictionaryRow>{
            {u"A"_s, u"no source"_s, false}, {{}, {}, false}, {u"B"_s, u"imported"_s, false}}));
    EXPECT_EQ(page.shown->count, "3 terms, 0 learned");
    controller.selectFilter(2);
    EXPECT_EQ(shown(), (QStringList{u"no source"_s, QString()}));
    controller.selectFilter(1);
    EXPECT_TRUE(shown().isEmpty());
}

TEST_F(DictionaryControllerTest, TermsAreNotChangedForShowing)
{
    const QStringList odd{u"<b>bold</b> & %1"_s, u"שלום עולם"_s, QString(10'000, u'长'), u"a\nb"_s};
    QVariantList entries;
    for (const QString& term : odd)
        entries.append(entry(term.left(9), term, u"auto"_s));
    store(entries);

    EXPECT_EQ(terms(controller.content()), odd);
    EXPECT_EQ(shownFor(QString(10'000, u'长')), QStringList{odd[2]});
}

TEST_F(DictionaryControllerTest, EveryChangeOfTheDictionaryShows)
{
    storeFour();
    controller.refreshDictionaryView();

    QList<DictionaryEntry> entries = DictionaryEntries(preferences, time);
    entries[0] = entries[0].renamed(u"Tavrin 2"_s, 5s);
    SaveDictionaryEntries(preferences, entries);
    controller.refreshDictionaryView();
    EXPECT_EQ(shown().first(), u"Tavrin 2"_s);
    EXPECT_EQ(shownFor(u"rin 2"_s), QStringList{u"Tavrin 2"_s});

    entries.prepend(DictionaryEntry::learned(u"Printer"_s, 6s));
    SaveDictionaryEntries(preferences, entries);
    controller.refreshDictionaryView();
    EXPECT_EQ(page.shown->count, "5 terms, 3 learned");
    EXPECT_EQ(shownFor(u"rin"_s), (QStringList{u"Printer"_s, u"Tavrin 2"_s}));

    SaveDictionaryEntries(preferences, {});
    controller.refreshDictionaryView();
    EXPECT_EQ(page.shown->count, "0 terms, 0 learned");
}

TEST_F(DictionaryControllerTest, ANewTermStandsOnTopAndTheFieldIsEmptyAgain)
{
    storeFour();
    controller.enterNewTerm(u" GitHub "_s);
    controller.addDictionaryTerm();

    EXPECT_EQ(page.shown->rows.first().term, "GitHub");
    EXPECT_FALSE(page.shown->rows.first().isLearned);
    EXPECT_EQ(page.shown->newTerm, "");
    EXPECT_EQ(page.shown->count, "5 terms, 2 learned");
    EXPECT_EQ(calls, QStringList{u"sound success"_s});
}

TEST_F(DictionaryControllerTest, TypingATermShowsNothingNew)
{
    controller.enterNewTerm(u"Gi"_s);

    EXPECT_FALSE(page.shown);
    EXPECT_EQ(controller.content().newTerm, "Gi");
}

TEST_F(DictionaryControllerTest, ATermThatIsThereIsSearchedForAmongAll)
{
    storeFour();
    controller.selectFilter(2);
    controller.enterNewTerm(u"  oSTRANDER "_s);
    controller.addDictionaryTerm();

    EXPECT_EQ(page.shown->searchText, "oSTRANDER");
    EXPECT_EQ(page.shown->filter, DictionaryFilter::All);
    EXPECT_EQ(shown(), QStringList{u"Ostrander"_s});
    EXPECT_EQ(page.shown->newTerm, "");
    EXPECT_EQ(page.shown->count, "4 terms, 2 learned");
    EXPECT_EQ(alerts.beeps(), 1);
    EXPECT_TRUE(calls.isEmpty());
}

TEST_F(DictionaryControllerTest, NothingTypedIsABeepAndStaysInTheField)
{
    controller.enterNewTerm(u" \n"_s);
    controller.addDictionaryTerm();

    EXPECT_EQ(alerts.beeps(), 1);
    EXPECT_EQ(controller.content().newTerm, " \n");
}

TEST_F(DictionaryControllerTest, EditsAndDeletionsShowAtOnce)
{
    storeFour();
    controller.editDictionaryTerm(u"B"_s);
    alerts.answer(0, {u"Ostrander & Søn"_s});
    EXPECT_EQ(page.shown->rows[1], (DictionaryRow{u"B"_s, u"Ostrander & Søn"_s, true}));

    controller.deleteDictionaryTerm(u"B"_s);
    EXPECT_EQ(shown(), (QStringList{u"Tavrin"_s, u"张晓鸥"_s, u"STRANGE Tools"_s}));
    EXPECT_EQ(page.shown->count, "3 terms, 1 learned");
}

TEST_F(DictionaryControllerTest, LearningIsSwitchedAndShown)
{
    controller.toggleAutomaticDictionaryLearning(false);
    EXPECT_FALSE(page.shown->learnsCorrections);
    EXPECT_EQ(preferences.flushed(keys::automaticDictionaryLearning), QVariant(false));
    EXPECT_EQ(calls, QStringList{u"end watch"_s});

    controller.toggleAutomaticDictionaryLearning(true);
    EXPECT_TRUE(page.shown->learnsCorrections);
    EXPECT_EQ(calls.size(), 1);
}

TEST_F(DictionaryControllerTest, WritingStyleOpensItsWindow)
{
    controller.showPersonalizationWindow();
    EXPECT_EQ(calls, QStringList{u"personalization"_s});
}

TEST_F(DictionaryControllerTest, WithoutAPageNothingIsShownAndNothingAdded)
{
    controller.setView(nullptr);
    controller.enterNewTerm(u"GitHub"_s);
    controller.addDictionaryTerm();
    controller.searchTerms(u"x"_s);
    controller.selectFilter(1);
    controller.refreshDictionaryView();

    EXPECT_FALSE(page.shown);
    EXPECT_EQ(alerts.beeps(), 1);
    EXPECT_TRUE(DictionaryEntries(preferences, time).isEmpty());
    EXPECT_EQ(controller.content().searchText, "x");
}

TEST(DictionaryTextsTest, TheCaptionsAreThereInThreeLanguages)
{
    testing::expectCaptions({
        {texts::dictionaryTitle, u"词典", u"詞典", u"Dictionary"},
        {texts::dictionarySubtitle, u"保存人名和惯用写法，提升识别与 AI 整理的效果。",
            u"儲存人名與慣用寫法，提升辨識與 AI 整理的效果。",
            u"Save names and preferred spellings to improve recognition and AI editing."},
        {texts::searchTerms, u"搜索词条", u"搜尋詞條", u"Search terms"},
        {texts::allTerms, u"全部", u"全部", u"All"},
        {texts::learnedTerms, u"已学习", u"已學習", u"Learned"},
        {texts::manualTerms, u"手动", u"手動", u"Manual"},
        {texts::enterTerm, u"输入词条，例如 Tavrin", u"輸入詞條，例如 Tavrin",
            u"Enter a term, for example Tavrin"},
        {texts::addTerm, u"添加词条", u"新增詞條", u"Add term"},
        {texts::learnCorrections, u"从修改中学习", u"從修改中學習", u"Learn corrections"},
        {texts::openWritingStyle, u"写作风格…", u"寫作風格…", u"Writing style…"},
        {texts::learnedBadge, u"✦ 已学习", u"✦ 已學習", u"✦ Learned"},
        {texts::manualBadge, u"手动", u"手動", u"Manual"},
        {texts::editRow, u"编辑", u"編輯", u"Edit"},
        {texts::deleteRow, u"删除", u"刪除", u"Delete"},
    });
}

} // namespace
} // namespace tavrin

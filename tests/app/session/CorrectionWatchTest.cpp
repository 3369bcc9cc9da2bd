#include "app/session/CorrectionWatch.h"

#include "delivery/TargetContext.h"
#include "dictionary/DictionaryStore.h"
#include "platform/preferences/PreferenceKeys.h"
#include "support/QtPrinters.h"
#include "support/ports/InMemoryAccessibility.h"
#include "support/ports/InMemoryPreferences.h"
#include "support/ports/InMemoryWordBreaker.h"
#include "support/ports/InMemoryWorkspace.h"
#include "support/ports/VirtualTime.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace tavrin {
namespace {

/// A field in front, into which "open ai" has just been inserted behind "We use ".
class CorrectionWatchTest : public ::testing::Test {
protected:
    static constexpr qint64 editorProcess = 7;

    testing::VirtualTime time;
    testing::InMemoryPreferences preferences;
    testing::InMemoryWorkspace workspace;
    testing::InMemoryAccessibility accessibility;
    testing::InMemoryWordBreaker wordBreaker;
    std::shared_ptr<testing::FakeElement> field = std::make_shared<testing::FakeElement>();
    TargetContext target{workspace, accessibility};
    int dictionaryChanges = 0;
    std::optional<CorrectionWatch> learning;

    CorrectionWatchTest()
    {
        field->processIdentifier = editorProcess;
        putText(u"We use open ai daily"_s, 14);
        accessibility.focusedElements[editorProcess] = field;
        workspace.frontmost = RunningApplication{editorProcess, u"Notes"_s, u"notes"_s, 0};
        target.capture();
        learning.emplace(
            CorrectionWatch::Ports{accessibility, time, time, preferences, wordBreaker}, target,
            [this] { ++dictionaryChanges; });
    }

    void putText(const QString& text, qint64 caret)
    {
        field->text = text;
        field->selection = {caret, 0};
    }

    void begin(const QString& text = u"open ai"_s)
    {
        learning->beginCorrectionLearningForInsertedText(text);
    }

    /// Everything that the end of a session leaves.
    void beginAndForgetTarget(const QString& text = u"open ai"_s)
    {
        begin(text);
        target.releaseElements();
    }

    [[nodiscard]] bool isWatching() const { return time.pending() > 0; }

    QStringList terms()
    {
        QStringList terms;
        for (const DictionaryEntry& entry : DictionaryEntries(preferences, time))
            terms.append(entry.term());
        return terms;
    }
};

TEST_F(CorrectionWatchTest, ACorrectedNameIsLearnedWhenTheUserHasStopped)
{
    beginAndForgetTarget();
    time.advance(4s);
    field->text = u"We use OpenAI daily"_s;
    time.advance(500ms); // The poll at 4.5 s sees it.
    EXPECT_EQ(terms(), QStringList());
    time.advance(2999ms); // Less than 2.5 s later was that of 6.75 s.
    EXPECT_EQ(terms(), QStringList());
    time.advance(1ms);

    EXPECT_EQ(terms(), QStringList(u"OpenAI"_s));
    EXPECT_EQ(dictionaryChanges, 1);
    EXPECT_FALSE(isWatching());
    EXPECT_EQ(accessibility.liveReferences, 0);
}

TEST_F(CorrectionWatchTest, TheFieldIsReadEvery750Milliseconds)
{
    begin();
    const int before = accessibility.reads;
    time.advance(749ms);
    EXPECT_EQ(accessibility.reads, before);
    time.advance(1ms);
    EXPECT_EQ(accessibility.reads, before + 1);
    time.advance(7500ms);
    EXPECT_EQ(accessibility.reads, before + 11);
}

TEST_F(CorrectionWatchTest, EveryCorrectionBeginsTheQuietAnew)
{
    begin();
    for (int i = 0; i < 5; ++i) {
        time.advance(2250ms);
        field->text.insert(12, u'x');
    }
    EXPECT_TRUE(isWatching());
    time.advance(750ms + 2250ms);
    EXPECT_TRUE(isWatching());
    time.advance(750ms);
    EXPECT_FALSE(isWatching());
}

TEST_F(CorrectionWatchTest, AWatchWithoutCorrectionsEndsAfter45Seconds)
{
    begin();
    time.advance(44'999ms);
    EXPECT_TRUE(isWatching());
    time.advance(1ms);
    EXPECT_FALSE(isWatching());
    EXPECT_FALSE(preferences.value(keys::dictionaryLearningCandidateCounts).isValid());
}

TEST_F(CorrectionWatchTest, WhatComesAtTheDeadlineIsNotReadAnyMore)
{
    begin();
    time.advance(44'500ms);
    field->text = u"We use OpenAI daily"_s;
    time.advance(500ms);

    EXPECT_FALSE(isWatching());
    EXPECT_EQ(terms(), QStringList());
}

TEST_F(CorrectionWatchTest, AnOrdinaryWordIsLearnedFromTheSecondWatch)
{
    for (const bool learned : {false, true}) {
        putText(u"We use open ai daily"_s, 14);
        begin();
        field->text = u"We use Anthea daily"_s;
        time.advance(10s);
        EXPECT_EQ(terms(), learned ? QStringList(u"Anthea"_s) : QStringList());
    }
    EXPECT_EQ(dictionaryChanges, 1);
}

TEST_F(CorrectionWatchTest, TypingAtTheEndIsNoCorrectionAndEndsNothing)
{
    begin();
    field->text = u"We use open aiX9 daily"_s;
    time.advance(10s);
    EXPECT_TRUE(isWatching());
    field->text = u"We use Open aiX9 daily"_s;
    time.advance(10s);

    EXPECT_FALSE(isWatching());
    EXPECT_EQ(preferences.value(keys::dictionaryLearningCandidateCounts).toMap(),
        (QVariantMap{{u"open"_s, 1}}));
}

TEST_F(CorrectionWatchTest, AnEditOverTheEdgeEndsTheWatchAndTeachesWhatWasTracked)
{
    begin();
    field->text = u"We use OpenAI daily"_s;
    time.advance(750ms);
    field->text = u"We use OpenA!ly"_s;
    time.advance(750ms);

    EXPECT_FALSE(isWatching());
    EXPECT_EQ(terms(), QStringList(u"OpenAI"_s));
}

TEST_F(CorrectionWatchTest, TextBeforeTheStretchMovesItAndIsNotLearned)
{
    begin();
    field->text = u"GPT4 and B52: We use open ai daily"_s;
    time.advance(750ms);
    field->text = u"GPT4 and B52: We use OpenAI daily"_s;
    time.advance(10s);

    EXPECT_EQ(terms(), QStringList(u"OpenAI"_s));
}

TEST_F(CorrectionWatchTest, AFieldThatCannotBeReadEndsTheWatchAndTeachesWhatWasTracked)
{
    begin();
    field->text = u"We use OpenAI daily"_s;
    time.advance(750ms);
    field->exposesText = false;
    time.advance(750ms);

    EXPECT_FALSE(isWatching());
    EXPECT_EQ(terms(), QStringList(u"OpenAI"_s));
}

TEST_F(CorrectionWatchTest, EndingAWatchTeachesWhereThatIsAsked)
{
    for (const bool analyze : {false, true}) {
        putText(u"We use open ai daily"_s, 14);
        begin();
        field->text = u"We use OpenAI daily"_s;
        time.advance(750ms);
        learning->finishCorrectionLearningAndAnalyze(analyze);

        EXPECT_FALSE(isWatching());
        EXPECT_EQ(accessibility.liveReferences, 1); // The target's own.
        EXPECT_EQ(terms(), analyze ? QStringList(u"OpenAI"_s) : QStringList());
        EXPECT_EQ(preferences.value(keys::dictionaryLearningCandidateCounts).isValid(), analyze);
    }
}

TEST_F(CorrectionWatchTest, EndingNoWatchIsNothing)
{
    learning->finishCorrectionLearningAndAnalyze(true);

    EXPECT_EQ(dictionaryChanges, 0);
    EXPECT_EQ(preferences.synchronizations(), 0);
}

TEST_F(CorrectionWatchTest, LearningThatIsSwitchedOffMeanwhileLearnsNothing)
{
    begin();
    field->text = u"We use OpenAI daily"_s;
    time.advance(750ms);
    preferences.setValue(keys::automaticDictionaryLearning, false);
    time.advance(10s);

    EXPECT_FALSE(isWatching());
    EXPECT_EQ(terms(), QStringList());
    EXPECT_FALSE(preferences.value(keys::dictionaryLearningCandidateCounts).isValid());
}

TEST_F(CorrectionWatchTest, ANewWatchEndsTheOneBeforeWithLearning)
{
    begin();
    field->text = u"We use OpenAI daily"_s;
    time.advance(750ms);
    putText(u"We use OpenAI daily. more"_s, 25);
    begin(u"more"_s);

    EXPECT_EQ(terms(), QStringList(u"OpenAI"_s));
    EXPECT_EQ(time.pending(), 1);
    field->text = u"We use OpenAI daily. m0re"_s;
    time.advance(10s);
    EXPECT_EQ(terms(), QStringList({u"m0re"_s, u"OpenAI"_s}));
}

TEST_F(CorrectionWatchTest, SwitchedOffNothingIsWatched)
{
    preferences.setValue(keys::automaticDictionaryLearning, false);
    begin();
    EXPECT_FALSE(isWatching());
    EXPECT_EQ(accessibility.reads, 0);
}

TEST_F(CorrectionWatchTest, WithoutTrustOrElementNothingIsWatched)
{
    accessibility.trusted = false;
    begin();
    EXPECT_FALSE(isWatching());

    accessibility.trusted = true;
    target.releaseElements();
    begin();
    EXPECT_FALSE(isWatching());
}

TEST_F(CorrectionWatchTest, TextsOf2To2000UnitsAreWatched)
{
    for (const int length : {1, 2, 2000, 2001}) {
        const QString text(length, u'k');
        putText(text, length);
        begin(text);
        EXPECT_EQ(isWatching(), length == 2 || length == 2000) << length;
    }
}

TEST_F(CorrectionWatchTest, APasswordFieldIsNeverWatched)
{
    field->isProtected = true;
    begin();

    EXPECT_FALSE(isWatching());
    EXPECT_EQ(accessibility.liveReferences, 1);
}

TEST_F(CorrectionWatchTest, AFieldWithoutTheTextIsNotWatched)
{
    for (const QString& text : {QString(), u"something else"_s}) {
        putText(text, 0);
        begin();
        EXPECT_FALSE(isWatching());
    }
    EXPECT_EQ(accessibility.liveReferences, 1);
}

TEST_F(CorrectionWatchTest, OfSeveralPlacesTheOneBeforeTheCaretIsWatched)
{
    putText(u"abc abc abc"_s, 7);
    begin(u"abc"_s);
    field->text = u"abc a9c abc"_s;
    time.advance(10s);
    EXPECT_EQ(terms(), QStringList(u"a9c"_s));
}

TEST_F(CorrectionWatchTest, WithoutAUsefulCaretTheLastPlaceIsWatched)
{
    struct Row {
        std::optional<TextRange> caret;
        bool exposed;
    };

    for (const Row& row :
        {Row{std::nullopt, false}, Row{TextRange{2, 0}, true}, Row{TextRange{5, 0}, true},
            Row{TextRange{1'000'000, 0}, true}, Row{TextRange{-3, 9}, true}}) {
        preferences.remove(keys::personalDictionaryEntries);
        preferences.remove(keys::personalDictionary);
        putText(u"abc abc abc"_s, 0);
        field->exposesSelection = row.exposed;
        field->claimedSelection = row.caret;
        begin(u"abc"_s);
        field->text = u"abc abc a9c"_s;
        time.advance(10s);
        EXPECT_EQ(terms(), QStringList(u"a9c"_s));
    }
}

TEST_F(CorrectionWatchTest, AnEndWhileWatchingLeavesNothing)
{
    begin();
    learning.reset();
    target.releaseElements();

    EXPECT_FALSE(isWatching());
    EXPECT_EQ(accessibility.liveReferences, 0);
}

} // namespace
} // namespace tavrin

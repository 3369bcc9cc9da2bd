#include "ui/hud/HudController.h"

#include "app/settings/Localization.h"
#include "app/settings/Settings.h"
#include "platform/preferences/PreferenceKeys.h"
#include "support/QtPrinters.h"
#include "support/ports/InMemoryPreferences.h"
#include "support/ports/InMemoryWorkspace.h"
#include "support/ports/VirtualTime.h"
#include "support/sound/InMemoryAudioRecorders.h"
#include "ui/hud/HudPanel.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace tavrin {
namespace {

/// A panel that only remembers.
class RecordingPanel final : public hud::Panel {
public:
    std::function<void()> confirm;
    std::function<void()> continueRecording;
    hud::Content content;
    bool visible = false;
    int shows = 0;

    void setActions(std::function<void()> first, std::function<void()> second) override
    {
        confirm = std::move(first);
        continueRecording = std::move(second);
    }

    void setContent(const hud::Content& shown) override { content = shown; }

    void positionAndShow() override
    {
        visible = true;
        ++shows;
    }

    void orderOut() override { visible = false; }
};

struct OperationRow {
    QString operation;
    QString language;
    QString listening;
    QString processing;
    QString processingDetail;
};

class HudControllerTest : public ::testing::Test {
protected:
    testing::VirtualTime time;
    testing::InMemoryPreferences preferences;
    testing::InMemoryWorkspace workspace;
    Localization localization{preferences, workspace, {}};
    Settings settings{preferences, localization};
    testing::InMemoryAudioRecorders recorders{time};
    RecordingPanel panel;
    HudController hud{{panel, time, time, localization, settings}};
    std::shared_ptr<AudioRecorder> recorder;

    void SetUp() override { speak(u"en"_s); }

    void TearDown() override
    {
        hud.hide();
        time.advance(4s); // The clipboard notice's call is never taken back.
        EXPECT_EQ(time.pending(), 0);
    }

    void speak(const QString& language) { preferences.setValue(keys::interfaceLanguage, language); }

    void showRecording(const QString& operation = u"dictation"_s)
    {
        recorder = *recorders.createRecorder(u"recording.m4a"_s, {1633772320, 16000, 1, 96});
        recorder->setMeteringEnabled(true);
        hud.setOperationName(operation);
        hud.setOperationShortcutName(u"Right Option"_s);
        hud.showRecordingWithRecorder(recorder);
    }

    void showCancelPrompt(QStringList& calls)
    {
        showRecording();
        hud.showCancelConfirmationWithConfirm(
            [&] { calls.append(u"confirm"_s); }, [&] { calls.append(u"continue"_s); });
    }
};

TEST_F(HudControllerTest, IsHiddenAtFirstWithItsInitialTexts)
{
    preferences.setValue(keys::dictationShortcutIdentifiers, QStringList{u"leftOption"_s});
    RecordingPanel fresh;
    const HudController first{{fresh, time, time, localization, settings}};

    EXPECT_EQ(fresh.shows, 0);
    EXPECT_EQ(fresh.content.titleLabel, u"正在收音"_s);
    EXPECT_EQ(fresh.content.detailLabel, u"再次轻按 Left Option 结束并输入"_s);
    EXPECT_EQ(fresh.content.timeLabel, u"00:00"_s);
    EXPECT_EQ(fresh.content.transcriptLabel, u"正在等待语音…"_s);
}

TEST_F(HudControllerTest, EachOperationHasItsTextsInEachLanguage)
{
    const QList<OperationRow> rows{
        {u"dictation"_s, u"en"_s, u"Listening · Dictation"_s, u"Editing text"_s,
            u"Analyzing context and generating polished text…"_s},
        {u"dictation"_s, u"zh-Hans"_s, u"正在收音 · 语音输入"_s, u"正在整理文字"_s,
            u"正在分析上下文并生成规范文本…"_s},
        {u"dictation"_s, u"zh-Hant"_s, u"正在收音 · 語音輸入"_s, u"正在整理文字"_s,
            u"正在分析上下文並產生規範文字…"_s},
        {u"translation"_s, u"en"_s, u"Listening · Translation"_s, u"Translating"_s,
            u"Recovering meaning and generating the target language…"_s},
        {u"translation"_s, u"zh-Hans"_s, u"正在收音 · 翻译"_s, u"正在翻译文字"_s,
            u"正在恢复语义并生成目标语言文本…"_s},
        {u"translation"_s, u"zh-Hant"_s, u"正在收音 · 翻譯"_s, u"正在翻譯文字"_s,
            u"正在還原語義並產生目標語言文字…"_s},
        {u"chat"_s, u"en"_s, u"Listening · Chat"_s, u"Generating chat answer"_s,
            u"Understanding the question and composing an answer…"_s},
        {u"chat"_s, u"zh-Hans"_s, u"正在收音 · 畅聊"_s, u"正在生成畅聊回答"_s,
            u"正在理解问题并组织回答…"_s},
        {u"chat"_s, u"zh-Hant"_s, u"正在收音 · 暢聊"_s, u"正在產生暢聊回答"_s,
            u"正在理解問題並組織回答…"_s},
        {u"anything"_s, u"en"_s, u"Listening · Dictation"_s, u"Editing text"_s,
            u"Analyzing context and generating polished text…"_s},
    };
    for (const OperationRow& row : rows) {
        speak(row.language);
        showRecording(row.operation);
        EXPECT_EQ(panel.content.titleLabel, row.listening);
        hud.showProcessing();
        EXPECT_EQ(panel.content.titleLabel, row.processing);
        EXPECT_EQ(panel.content.transcriptLabel, row.processingDetail);
    }
}

TEST_F(HudControllerTest, RecordingShowsHowToFinishInEachLanguage)
{
    showRecording();
    EXPECT_EQ(panel.content.detailLabel, u"Press Right Option again to finish and insert"_s);
    EXPECT_EQ(panel.content.transcriptLabel, u"Waiting for speech…"_s);
    speak(u"zh-Hans"_s);
    showRecording();
    EXPECT_EQ(panel.content.detailLabel, u"再次轻按 Right Option 结束并输入"_s);
    EXPECT_EQ(panel.content.transcriptLabel, u"正在等待语音…"_s);
    speak(u"zh-Hant"_s);
    showRecording();
    EXPECT_EQ(panel.content.detailLabel, u"再次輕按 Right Option 結束並輸入"_s);
    EXPECT_EQ(panel.content.transcriptLabel, u"正在等待語音…"_s);
}

TEST_F(HudControllerTest, WithoutAShortcutOfItsOwnTheFirstOfDictationIsNamed)
{
    preferences.setValue(keys::dictationShortcutIdentifiers, QVariantList{u"leftOption"_s});
    hud.setOperationShortcutName({});
    hud.showRecordingWithRecorder({});
    EXPECT_EQ(panel.content.detailLabel, u"Press Left Option again to finish and insert"_s);

    preferences.setValue(keys::dictationShortcutIdentifiers, QVariantList());
    hud.showRecordingWithRecorder({});
    EXPECT_EQ(panel.content.detailLabel, u"Press Not set again to finish and insert"_s);
}

TEST_F(HudControllerTest, RecordingIgnoresTheMouseAndShowsBars)
{
    showRecording();

    EXPECT_TRUE(panel.visible);
    EXPECT_EQ(panel.content.dot, hud::Dot::Recording);
    EXPECT_EQ(panel.content.timeLabel, u"00:00"_s);
    EXPECT_TRUE(panel.content.barsVisible);
    EXPECT_FALSE(panel.content.progressVisible);
    EXPECT_FALSE(panel.content.buttonsVisible);
    EXPECT_FALSE(panel.content.takesMouse);
}

TEST_F(HudControllerTest, TheMeterStepsTenTimesASecond)
{
    showRecording();
    recorders.last().level = -28;

    time.advance(99ms);
    EXPECT_DOUBLE_EQ(panel.content.lightX, -150);
    time.advance(1ms);

    EXPECT_NEAR(panel.content.lightX, -137.5, 1e-6);
    const hud::Bars expected = hud::waveBars(100ms, 0.1);
    for (std::size_t i = 0; i < expected.size(); ++i)
        EXPECT_NEAR(panel.content.bars.at(i).height, expected.at(i).height, 1e-6);
}

TEST_F(HudControllerTest, TheTimerCountsTheSecondsOfTheRecording)
{
    showRecording();

    time.advance(75.9s);

    EXPECT_EQ(panel.content.timeLabel, u"01:15"_s);
}

TEST_F(HudControllerTest, EachRecordingCountsFromItsOwnBeginning)
{
    showRecording();
    time.advance(42s);
    hud.hide();
    time.advance(1min);
    showRecording();

    time.advance(1200ms);

    EXPECT_EQ(panel.content.timeLabel, u"00:01"_s);
    EXPECT_NEAR(panel.content.lightX, 125 * 1.2 - 150, 1e-6);
}

TEST_F(HudControllerTest, ARecordingAfterAProcessedOneIsShownAsARecordingAgain)
{
    showRecording();
    hud.showProcessingWithEstimate(2s);
    time.advance(3s);
    hud.showSuccess();
    showRecording();

    time.advance(1200ms);

    EXPECT_EQ(panel.content.timeLabel, u"00:01"_s);
    EXPECT_NEAR(panel.content.lightX, 125 * 1.2 - 150, 1e-6);
}

TEST_F(HudControllerTest, ARecorderThatIsGoneDoesNoHarm)
{
    showRecording();
    recorder.reset();

    time.advance(1s);

    EXPECT_EQ(panel.content.timeLabel, u"00:01"_s);
}

TEST_F(HudControllerTest, LiveTextReplacesTheLineAndAnEmptyOneLeavesIt)
{
    showRecording();
    hud.updateTranscript(u"hello"_s);
    hud.updateTranscript(QString());
    EXPECT_EQ(panel.content.transcriptLabel, u"hello"_s);
    hud.updateTranscript(u"hello world"_s);
    EXPECT_EQ(panel.content.transcriptLabel, u"hello world"_s);
}

TEST_F(HudControllerTest, ARecordingThatBreaksOffIsToldAtOnceAndStays)
{
    showRecording();
    hud.updateTranscript(u"hello"_s);
    recorders.last().failure = {u"TavrinAudio"_s, 12, u"麦克风已断开。"_s};

    time.advance(100ms);
    hud.updateTranscript(u"hello world"_s);

    EXPECT_EQ(panel.content.transcriptLabel, u"麦克风已断开。"_s);
    EXPECT_EQ(panel.content.dot, hud::Dot::Attention);
    EXPECT_EQ(panel.content.timeLabel, u"00:00"_s);
    time.advance(5s);
    EXPECT_EQ(panel.content.timeLabel, u"00:00"_s) << "nothing is recorded any more";

    showRecording();
    EXPECT_EQ(panel.content.dot, hud::Dot::Recording);
    hud.updateTranscript(u"again"_s);
    EXPECT_EQ(panel.content.transcriptLabel, u"again"_s);
}

TEST_F(HudControllerTest, ProcessingWithAnEstimateShowsItsProgress)
{
    showRecording();
    hud.showProcessingWithEstimate(9.2s);

    EXPECT_EQ(panel.content.dot, hud::Dot::Processing);
    EXPECT_EQ(panel.content.detailLabel, u"根据近期速度，预计约 10 秒"_s);
    EXPECT_EQ(panel.content.timeLabel, QString());
    EXPECT_TRUE(panel.content.progressVisible);
    EXPECT_FALSE(panel.content.progressIndeterminate);
    EXPECT_DOUBLE_EQ(panel.content.progress, 3);
    EXPECT_EQ(panel.content.bars, hud::staircaseBars());
}

TEST_F(HudControllerTest, ProcessingStepsEvery60MillisecondsAtFullLevel)
{
    hud.showProcessingWithEstimate(10s);

    time.advance(59ms);
    EXPECT_EQ(panel.content.bars, hud::staircaseBars());
    time.advance(1ms);

    EXPECT_EQ(panel.content.timeLabel, u"≈ 10s"_s);
    EXPECT_NEAR(panel.content.lightX, 190 * 0.06 - 150, 1e-6);
    EXPECT_EQ(panel.content.bars, hud::waveBars(60ms, 1));

    time.advance(59ms);
    EXPECT_EQ(panel.content.bars, hud::waveBars(60ms, 1));
    time.advance(1ms);
    EXPECT_EQ(panel.content.bars, hud::waveBars(120ms, 1));
}

TEST_F(HudControllerTest, ProcessingCountsFromItsOwnBeginning)
{
    showRecording();
    time.advance(75s);
    hud.showProcessingWithEstimate(10s);

    time.advance(2400ms);

    EXPECT_EQ(panel.content.timeLabel, u"≈ 8s"_s);
    EXPECT_NEAR(panel.content.progress, hud::progressValue(2400ms, 10s), 1e-6);
    EXPECT_LT(panel.content.progress, 50);
}

TEST_F(HudControllerTest, ProcessingThatTakesLongerThanEstimatedWaits)
{
    hud.showProcessingWithEstimate(10s);

    time.advance(20s);

    EXPECT_EQ(panel.content.timeLabel, u"≈ 0s"_s);
    EXPECT_DOUBLE_EQ(panel.content.progress, 81.3);
}

TEST_F(HudControllerTest, ProcessingWithoutAnEstimateHasNoEnd)
{
    for (const std::optional<Seconds> none :
        {std::optional<Seconds>(), std::optional(Seconds(0))}) {
        hud.showProcessingWithEstimate(none);
        time.advance(1s);
        EXPECT_EQ(panel.content.detailLabel, u"正在转写并整理，首次使用暂无法估算"_s);
        EXPECT_TRUE(panel.content.progressVisible);
        EXPECT_TRUE(panel.content.progressIndeterminate);
        EXPECT_DOUBLE_EQ(panel.content.progress, 0);
        EXPECT_EQ(panel.content.timeLabel, QString());
    }
}

TEST_F(HudControllerTest, TheCancelPromptAsksWithTwoButtons)
{
    QStringList calls;
    showCancelPrompt(calls);

    EXPECT_EQ(panel.content.dot, hud::Dot::Attention);
    EXPECT_EQ(panel.content.titleLabel, u"是否取消本次输入？"_s);
    EXPECT_EQ(panel.content.detailLabel, u"录音已暂停，确认前不会丢失"_s);
    EXPECT_EQ(panel.content.transcriptLabel, u"再次按 Escape 也可以确认取消"_s);
    EXPECT_EQ(panel.content.timeLabel, u"Esc"_s);
    EXPECT_FALSE(panel.content.barsVisible);
    EXPECT_TRUE(panel.content.buttonsVisible);
    EXPECT_TRUE(panel.content.takesMouse);
    EXPECT_EQ(time.pending(), 0);
}

TEST_F(HudControllerTest, ASecondPressAfterADecisionDoesNothing)
{
    QStringList calls;
    showCancelPrompt(calls);
    panel.confirm();
    panel.confirm();
    panel.continueRecording();
    EXPECT_EQ(calls, QStringList{u"confirm"_s});

    calls.clear();
    showCancelPrompt(calls);
    panel.continueRecording();
    panel.confirm();
    EXPECT_EQ(calls, QStringList{u"continue"_s});
}

TEST_F(HudControllerTest, AHandlerMayShowSomethingElse)
{
    showRecording();
    hud.showCancelConfirmationWithConfirm([] {}, [&] { hud.showRecordingWithRecorder(recorder); });

    panel.continueRecording();

    EXPECT_FALSE(panel.content.buttonsVisible);
    EXPECT_FALSE(panel.content.takesMouse);
    EXPECT_EQ(panel.content.titleLabel, u"Listening · Dictation"_s);
}

TEST_F(HudControllerTest, HidingDropsTheHandlers)
{
    QStringList calls;
    showCancelPrompt(calls);
    hud.hide();
    panel.confirm();
    panel.continueRecording();

    EXPECT_TRUE(calls.isEmpty());
    EXPECT_FALSE(panel.visible);
    EXPECT_FALSE(panel.content.buttonsVisible);
    EXPECT_FALSE(panel.content.takesMouse);
}

TEST_F(HudControllerTest, SuccessHidesAtOnce)
{
    showRecording();
    hud.showProcessingWithEstimate(2s);
    hud.showSuccess();
    EXPECT_FALSE(panel.visible);
    EXPECT_EQ(time.pending(), 0);
}

TEST_F(HudControllerTest, TheClipboardNoticeShowsItsReasonForThreeAndAHalfSeconds)
{
    hud.showProcessingWithEstimate(2s);
    hud.showClipboardFallbackWithReason(u"无法重新激活目标应用；请按 ⌘V"_s);

    EXPECT_EQ(panel.content.dot, hud::Dot::Attention);
    EXPECT_EQ(panel.content.titleLabel, u"未能确认自动粘贴"_s);
    EXPECT_EQ(panel.content.detailLabel, u"无法重新激活目标应用；请按 ⌘V"_s);
    EXPECT_EQ(panel.content.transcriptLabel, u"内容没有丢失，可从剪贴板或最近记录中找回"_s);
    EXPECT_EQ(panel.content.timeLabel, u"⌘V"_s);
    EXPECT_FALSE(panel.content.barsVisible);
    EXPECT_FALSE(panel.content.progressVisible);
    const hud::Content notice = panel.content;
    time.advance(3499ms);
    EXPECT_TRUE(panel.visible);
    EXPECT_EQ(panel.content, notice);
    time.advance(1ms);
    EXPECT_FALSE(panel.visible);
}

TEST_F(HudControllerTest, TheClipboardNoticeShowsTheKeysUntilItsEnd)
{
    hud.showProcessingWithEstimate(2s);
    hud.showClipboardFallbackWithReason(QString());

    time.advance(3s);

    EXPECT_EQ(panel.content.timeLabel, u"⌘V"_s);
    EXPECT_EQ(time.pending(), 1); // Only the notice's end.
}

TEST_F(HudControllerTest, TheClipboardNoticeWithoutAReasonSaysWhereTheTextIs)
{
    hud.showClipboardFallbackWithReason(QString());
    EXPECT_EQ(panel.content.detailLabel, u"文字已保存在剪贴板，请按 ⌘V"_s);
}

TEST_F(HudControllerTest, TheNoticeEndsWhateverIsShownByThen)
{
    hud.showClipboardFallbackWithReason(QString());
    time.advance(1s);
    showRecording();
    time.advance(2500ms);
    EXPECT_FALSE(panel.visible);
}

TEST_F(HudControllerTest, KeysAreNamedAsOnTheKeyboardOfTheDesktop)
{
    const Localization translated{preferences, workspace,
        KeyNames({{u"⌘V"_s, u"Ctrl+V"_s}, {u"Right Option"_s, u"Right Alt"_s}})};
    Settings translatedSettings(preferences, translated);
    HudController other{{panel, time, time, translated, translatedSettings}};
    other.setOperationShortcutName(u"Right Option"_s);
    other.showRecordingWithRecorder({});
    EXPECT_EQ(panel.content.detailLabel, u"Press Right Alt again to finish and insert"_s);

    other.showClipboardFallbackWithReason(QString());
    EXPECT_EQ(panel.content.detailLabel, u"文字已保存在剪贴板，请按 Ctrl+V"_s);
    EXPECT_EQ(panel.content.timeLabel, u"Ctrl+V"_s);
    other.hide();
}

} // namespace
} // namespace tavrin

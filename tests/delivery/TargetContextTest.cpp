#include "delivery/TargetContext.h"

#include "support/QtPrinters.h"
#include "support/ports/InMemoryAccessibility.h"
#include "support/ports/InMemoryWorkspace.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace tavrin {
namespace {

using testing::FakeElement;

constexpr qint64 editorProcess = 4711;
constexpr qint64 otherProcess = 815;

/// In the order in which they are tried.
const QStringList hints{u"gmail"_s, u"outlook mail"_s, u"proton mail"_s, u"google docs"_s,
    u"google slides"_s, u"chatgpt"_s, u"claude"_s, u"gemini"_s, u"perplexity"_s, u"grok"_s,
    u"slack"_s, u"discord"_s, u"whatsapp"_s, u"telegram"_s, u"notion"_s};

class TargetContextTest : public ::testing::Test {
protected:
    testing::InMemoryWorkspace workspace;
    testing::InMemoryAccessibility accessibility;
    TargetContext target{workspace, accessibility};

    void SetUp() override
    {
        workspace.frontmost =
            RunningApplication{editorProcess, u"Editor"_s, u"Org.Example.Editor"_s, 0};
    }

    static std::shared_ptr<FakeElement> element(qint64 process)
    {
        auto fake = std::make_shared<FakeElement>();
        fake->processIdentifier = process;
        return fake;
    }

    void openWindow(const QString& title)
    {
        const auto window = element(editorProcess);
        window->title = title;
        accessibility.focusedWindows[editorProcess] = window;
    }

    QString windowHint(const QString& title)
    {
        openWindow(title);
        target.capture();
        return target.applicationContext().windowHint;
    }

    QString failureReason()
    {
        const auto found = target.copyFocusedElementForTargetApplication();
        return found.has_value() ? QString() : found.error();
    }
};

TEST_F(TargetContextTest, CapturesTheApplicationItsElementAndItsWindow)
{
    accessibility.focusedElements[editorProcess] = element(editorProcess);
    openWindow(u"Letter"_s);

    target.capture();

    EXPECT_EQ(target.targetApplication(), workspace.frontmost);
    EXPECT_NE(target.targetFocusedElement(), nullptr);
    EXPECT_NE(target.targetFocusedWindow(), nullptr);
}

TEST_F(TargetContextTest, WithoutTrustOnlyTheApplicationIsCaptured)
{
    accessibility.trusted = false;
    accessibility.focusedElements[editorProcess] = element(editorProcess);
    openWindow(u"gmail"_s);

    target.capture();

    EXPECT_EQ(target.targetFocusedElement(), nullptr);
    EXPECT_EQ(target.targetFocusedWindow(), nullptr);
    const ApplicationContext context = target.applicationContext();
    EXPECT_EQ(context.focusedRole, QString());
    EXPECT_EQ(context.windowHint, QString());
}

TEST_F(TargetContextTest, ATrustThatIsTakenAwayAfterTheElementLeavesTheWindowEmpty)
{
    accessibility.focusedElements[editorProcess] = element(editorProcess);
    openWindow(u"gmail"_s);
    accessibility.onFocusedElement = [this] { accessibility.trusted = false; };

    target.capture();

    EXPECT_NE(target.targetFocusedElement(), nullptr);
    EXPECT_EQ(target.targetFocusedWindow(), nullptr);
}

TEST_F(TargetContextTest, ANewCaptureReleasesTheReferencesOfTheOldOne)
{
    accessibility.focusedElements[editorProcess] = element(editorProcess);
    openWindow(u"Letter"_s);
    target.capture();
    EXPECT_EQ(accessibility.liveReferences, 2);

    target.capture();
    EXPECT_EQ(accessibility.liveReferences, 2);

    target.releaseElements();
    EXPECT_EQ(accessibility.liveReferences, 0);
    EXPECT_TRUE(target.targetApplication().has_value());

    target.clear();
    EXPECT_FALSE(target.targetApplication().has_value());
}

TEST_F(TargetContextTest, WithoutTrustTheReferencesOfTheOldCaptureAreReleasedToo)
{
    accessibility.focusedElements[editorProcess] = element(editorProcess);
    openWindow(u"Letter on slack"_s);
    target.capture();
    EXPECT_EQ(accessibility.liveReferences, 2);

    accessibility.trusted = false;
    target.capture();

    EXPECT_EQ(accessibility.liveReferences, 0);
    EXPECT_EQ(target.targetFocusedElement(), nullptr);
    EXPECT_EQ(target.applicationContext().windowHint, QString());
}

TEST_F(TargetContextTest, WithoutAFrontmostApplicationTheContextSaysUnknown)
{
    workspace.frontmost.reset();
    target.capture();

    EXPECT_EQ(target.applicationContext(), (ApplicationContext{u"未知应用"_s, {}, {}, {}}));
    EXPECT_EQ(failureReason(), u"没有记录到目标应用"_s);
    EXPECT_EQ(target.copyFocusedWindowForTargetApplication(), nullptr);
}

TEST_F(TargetContextTest, AnApplicationWithoutANameIsUnknown)
{
    workspace.frontmost->localizedName.clear();
    target.capture();

    EXPECT_EQ(target.applicationContext().name, u"未知应用"_s);
}

TEST_F(TargetContextTest, TheBundleIdentifierIsLowerCased)
{
    target.capture();

    EXPECT_EQ(target.applicationContext().bundleId, u"org.example.editor"_s);
}

TEST_F(TargetContextTest, TheContextHasExactlyFourEntries)
{
    accessibility.focusedElements[editorProcess] = element(editorProcess);
    openWindow(u"Inbox - GMail"_s);
    target.capture();

    EXPECT_EQ(target.applicationContext().toVariantMap(),
        (QVariantMap{{u"name"_s, u"Editor"_s}, {u"bundleId"_s, u"org.example.editor"_s},
            {u"windowHint"_s, u"gmail"_s}, {u"focusedRole"_s, u"AXTextArea"_s}}));
}

TEST_F(TargetContextTest, TheRoleIsThatOfTheElementCapturedAtTheStart)
{
    accessibility.focusedElements[editorProcess] = element(editorProcess);
    target.capture();
    const auto later = element(editorProcess);
    later->role = u"AXTextField"_s;
    accessibility.focusedElements[editorProcess] = later;

    EXPECT_EQ(target.applicationContext().focusedRole, u"AXTextArea"_s);
}

TEST_F(TargetContextTest, AnElementWithoutARoleGivesNone)
{
    const auto mute = element(editorProcess);
    mute->role.reset();
    accessibility.focusedElements[editorProcess] = mute;
    target.capture();

    EXPECT_EQ(target.applicationContext().focusedRole, QString());
}

TEST_F(TargetContextTest, EveryHintIsFoundInATitle)
{
    for (const QString& hint : hints)
        EXPECT_EQ(windowHint(u"A – "_s + hint.toUpper() + u" – B"_s), hint);
}

TEST_F(TargetContextTest, TheEarlierHintOfTheListWins)
{
    for (qsizetype i = 0; i + 1 < hints.size(); ++i)
        EXPECT_EQ(windowHint(hints[i + 1] + u" – "_s + hints[i]), hints[i]);
}

TEST_F(TargetContextTest, AHintInsideALongerWordCounts)
{
    EXPECT_EQ(windowHint(u"Telegrammatically yours"_s), u"telegram"_s);
}

TEST_F(TargetContextTest, AnyOtherTitleGivesNoHint)
{
    EXPECT_EQ(windowHint(u"Untitled 1"_s), QString());
    EXPECT_EQ(windowHint(QString()), QString());
}

TEST_F(TargetContextTest, TheSystemWideFocusServesWhenTheApplicationExposesNone)
{
    accessibility.systemFocus = element(editorProcess);
    target.capture();

    EXPECT_NE(target.targetFocusedElement(), nullptr);
    EXPECT_TRUE(target.copyFocusedElementForTargetApplication().has_value());
}

TEST_F(TargetContextTest, AFocusInAnotherProcessIsRefused)
{
    target.capture();
    accessibility.systemFocus = element(otherProcess);

    EXPECT_EQ(failureReason(), u"焦点没有回到开始录音时的应用"_s);
    EXPECT_EQ(accessibility.liveReferences, 0);
}

TEST_F(TargetContextTest, AnElementWhoseProcessCannotBeReadIsRefused)
{
    const auto mute = element(editorProcess);
    mute->exposesProcess = false;
    accessibility.focusedElements[editorProcess] = mute;
    target.capture();

    EXPECT_EQ(failureReason(), u"焦点没有回到开始录音时的应用"_s);
}

TEST_F(TargetContextTest, NoFocusAnywhereHasAReasonOfItsOwn)
{
    target.capture();

    EXPECT_EQ(failureReason(), u"目标应用没有暴露可写入的焦点控件"_s);
}

TEST_F(TargetContextTest, TheWindowHasNoSystemWideFallback)
{
    accessibility.systemFocus = element(editorProcess);
    target.capture();

    EXPECT_EQ(target.targetFocusedWindow(), nullptr);
}

} // namespace
} // namespace tavrin

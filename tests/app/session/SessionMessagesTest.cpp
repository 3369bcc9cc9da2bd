#include "app/session/SessionMessages.h"

#include "app/settings/Localization.h"
#include "app/vocabulary/OperationMode.h"
#include "app/vocabulary/SessionState.h"
#include "delivery/ApplicationContext.h"
#include "delivery/TextDelivery.h"
#include "platform/linux/LinuxKeyNames.h"
#include "platform/preferences/PreferenceKeys.h"
#include "support/QtPrinters.h"
#include "support/ports/InMemoryPreferences.h"
#include "support/ports/InMemoryWorkspace.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace tavrin {
namespace {

class SessionMessagesTest : public ::testing::Test {
protected:
    testing::InMemoryPreferences preferences;
    testing::InMemoryWorkspace workspace;
    Localization localization{preferences, workspace, KeyNames()};

    static DeliveryOutcome failureBecauseOf(const QString& reason) { return {false, reason}; }

    static QString contextOf(const QString& name, const QString& identifier)
    {
        ApplicationContext application;
        application.name = name;
        application.bundleId = identifier;
        return chatContext(application);
    }
};

TEST_F(SessionMessagesTest, OperationsHaveTheirNames)
{
    EXPECT_EQ(operationName(OperationMode::Dictation), u"dictation"_s);
    EXPECT_EQ(operationName(OperationMode::Translation), u"translation"_s);
    EXPECT_EQ(operationName(OperationMode::Chat), u"chat"_s);
}

TEST_F(SessionMessagesTest, OperationsAndStatesHaveTheirNumbers)
{
    EXPECT_EQ(static_cast<int>(OperationMode::Dictation), 0);
    EXPECT_EQ(static_cast<int>(OperationMode::Translation), 1);
    EXPECT_EQ(static_cast<int>(OperationMode::Chat), 2);
    EXPECT_EQ(static_cast<int>(SessionState::Idle), 0);
    EXPECT_EQ(static_cast<int>(SessionState::Recording), 1);
    EXPECT_EQ(static_cast<int>(SessionState::Processing), 2);
}

TEST_F(SessionMessagesTest, AQuestionNamesItsApplication)
{
    EXPECT_EQ(contextOf(u"Notes"_s, u"org.example.notes"_s), u"应用：Notes（org.example.notes）"_s);
    EXPECT_EQ(contextOf(u"100%2"_s, u"%1"_s), u"应用：100%2（%1）"_s);
}

TEST_F(SessionMessagesTest, AnUnknownApplicationIsCalledSo)
{
    EXPECT_EQ(contextOf({}, {}), u"应用：未知应用（无 Bundle ID）"_s);
    EXPECT_EQ(contextOf(u"Notes"_s, u""_s), u"应用：Notes（无 Bundle ID）"_s);
}

TEST_F(SessionMessagesTest, TheHistorySaysHowTheDeliveryWent)
{
    EXPECT_EQ(historyDelivery({true, {}}), u"自动输入已完成"_s);
    EXPECT_EQ(historyDelivery(failureBecauseOf(u"没有记录到目标应用"_s)),
        u"保存在剪贴板 · 没有记录到目标应用"_s);
    EXPECT_EQ(historyDelivery(failureBecauseOf({})), u"保存在剪贴板 · 自动输入失败"_s);
    EXPECT_EQ(historyDelivery(failureBecauseOf(u""_s)), u"保存在剪贴板 · "_s);
}

TEST_F(SessionMessagesTest, TheNoticeGivesTheReasonAndTheKeys)
{
    EXPECT_EQ(clipboardNotice(failureBecauseOf(u"没有记录到目标应用"_s), localization),
        u"没有记录到目标应用；请按 ⌘V"_s);
    for (const QString& none : {QString(), u""_s})
        EXPECT_EQ(clipboardNotice(failureBecauseOf(none), localization),
            u"文字已保存在剪贴板，请按 ⌘V"_s);
}

TEST_F(SessionMessagesTest, TheTextsStaySimplifiedChineseInEveryLanguage)
{
    preferences.setValue(keys::interfaceLanguage, u"en"_s);

    EXPECT_EQ(
        clipboardNotice(failureBecauseOf({}), localization), u"文字已保存在剪贴板，请按 ⌘V"_s);
}

TEST_F(SessionMessagesTest, OnLinuxTheNoticeNamesItsOwnKeys)
{
    const Localization linuxLocalization{preferences, workspace, linuxKeyNames()};

    EXPECT_EQ(clipboardNotice(failureBecauseOf(u"⌘V"_s), linuxLocalization), u"⌘V；请按 Ctrl+V"_s);
    EXPECT_EQ(clipboardNotice(failureBecauseOf({}), linuxLocalization),
        u"文字已保存在剪贴板，请按 Ctrl+V"_s);
}

} // namespace
} // namespace tavrin

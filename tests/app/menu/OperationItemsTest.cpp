#include "app/menu/OperationItems.h"

#include "app/settings/Localization.h"
#include "app/settings/Settings.h"
#include "platform/preferences/PreferenceKeys.h"
#include "support/QtPrinters.h"
#include "support/ports/InMemoryPreferences.h"
#include "support/ports/InMemoryWorkspace.h"

#include <QStringList>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace tavrin {
namespace {

struct Row {
    SessionState state;
    OperationMode mode;
    std::array<bool, 3> enabled;
    QStringList zhHans;
    QStringList zhHant;
    QStringList en;
};

constexpr std::array all{true, true, true};
constexpr std::array none{false, false, false};

const QList<Row> rows{
    {SessionState::Idle, OperationMode::Dictation, all,
        {u"开始语音输入（右 Option）"_s, u"开始翻译（⌥ Space → 日语）"_s,
            u"开始畅聊（⇧⌘ Space）"_s},
        {u"開始語音輸入（右 Option）"_s, u"開始翻譯（⌥ Space → 日語）"_s,
            u"開始暢聊（⇧⌘ Space）"_s},
        {u"Start dictation (Right Option)"_s, u"Start translation (⌥ Space → Japanese)"_s,
            u"Start chat (⇧⌘ Space)"_s}},
    {SessionState::Recording, OperationMode::Dictation, {true, false, false},
        {u"结束并输入（右 Option）"_s, u"翻译不可用（语音输入进行中）"_s,
            u"畅聊不可用（语音输入进行中）"_s},
        {u"結束並輸入（右 Option）"_s, u"翻譯不可用（正在語音輸入）"_s,
            u"暢聊不可用（正在語音輸入）"_s},
        {u"Finish and insert (Right Option)"_s, u"Translation unavailable during dictation"_s,
            u"Chat unavailable during dictation"_s}},
    {SessionState::Recording, OperationMode::Translation, {false, true, false},
        {u"语音输入不可用（翻译进行中）"_s, u"结束翻译（⌥ Space）"_s,
            u"畅聊不可用（翻译进行中）"_s},
        {u"語音輸入不可用（正在翻譯）"_s, u"結束翻譯（⌥ Space）"_s, u"暢聊不可用（正在翻譯）"_s},
        {u"Dictation unavailable during translation"_s, u"Finish translation (⌥ Space)"_s,
            u"Chat unavailable during translation"_s}},
    {SessionState::Recording, OperationMode::Chat, {false, false, true},
        {u"语音输入不可用（畅聊进行中）"_s, u"翻译不可用（畅聊进行中）"_s,
            u"结束畅聊（⇧⌘ Space）"_s},
        {u"語音輸入不可用（正在暢聊）"_s, u"翻譯不可用（正在暢聊）"_s, u"結束暢聊（⇧⌘ Space）"_s},
        {u"Dictation unavailable during chat"_s, u"Translation unavailable during chat"_s,
            u"Finish chat (⇧⌘ Space)"_s}},
    {SessionState::Processing, OperationMode::Dictation, none,
        {u"正在整理文字…"_s, u"正在整理文字…"_s, u"正在整理文字…"_s},
        {u"正在整理文字…"_s, u"正在整理文字…"_s, u"正在整理文字…"_s},
        {u"Editing text…"_s, u"Editing text…"_s, u"Editing text…"_s}},
    {SessionState::Processing, OperationMode::Translation, none,
        {u"正在翻译文字…"_s, u"正在翻译文字…"_s, u"正在翻译文字…"_s},
        {u"正在翻譯文字…"_s, u"正在翻譯文字…"_s, u"正在翻譯文字…"_s},
        {u"Translating…"_s, u"Translating…"_s, u"Translating…"_s}},
    {SessionState::Processing, OperationMode::Chat, none,
        {u"正在生成畅聊回答…"_s, u"正在生成畅聊回答…"_s, u"正在生成畅聊回答…"_s},
        {u"正在產生暢聊回答…"_s, u"正在產生暢聊回答…"_s, u"正在產生暢聊回答…"_s},
        {u"Generating chat answer…"_s, u"Generating chat answer…"_s, u"Generating chat answer…"_s}},
};

TEST(OperationItemsTest, EveryStateAndOperationHasItsTitlesInEveryLanguage)
{
    testing::InMemoryPreferences preferences;
    const testing::InMemoryWorkspace workspace;
    const Localization localization{preferences, workspace, KeyNames()};
    Settings settings{preferences, localization};
    preferences.setValue(keys::translationTarget, "japanese");

    for (const Row& row : rows) {
        for (const auto& [language, titles] : {std::pair{u"zh-Hans"_s, row.zhHans},
                 std::pair{u"zh-Hant"_s, row.zhHant}, std::pair{u"en"_s, row.en}}) {
            preferences.setValue(keys::interfaceLanguage, language);
            const auto items = operationItems(row.state, row.mode, settings, localization);
            for (std::size_t i = 0; i < items.size(); ++i) {
                EXPECT_EQ(items.at(i).title, titles.at(static_cast<qsizetype>(i)));
                EXPECT_EQ(items.at(i).enabled, row.enabled.at(i));
            }
        }
    }
}

} // namespace
} // namespace tavrin

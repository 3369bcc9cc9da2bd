#pragma once

#include "base/LocalizedText.h"

#include <array>

/// Texts of the status item and its menu. Rows of three belong to dictation, translation and chat,
/// in this order.
namespace tavrin::texts {

inline constexpr LocalizedText statusItemLabel{
    u"Tavrin 语音输入", u"Tavrin 語音輸入", u"Tavrin voice input"};

/// The first shortcut of each operation.
inline constexpr LocalizedText shortcutsToolTip{u"语音输入 %1 · 翻译 %2 · 畅聊 %3",
    u"語音輸入 %1 · 翻譯 %2 · 暢聊 %3", u"Dictation %1 · Translation %2 · Chat %3"};
/// The same with the language to translate into (%3).
inline constexpr LocalizedText targetToolTip{u"语音 %1 · 翻译 %2 → %3 · 畅聊 %4",
    u"語音 %1 · 翻譯 %2 → %3 · 暢聊 %4", u"Dictation %1 · Translation %2 → %3 · Chat %4"};

inline constexpr LocalizedText startDictation{
    u"开始语音输入（%1）", u"開始語音輸入（%1）", u"Start dictation (%1)"};
inline constexpr LocalizedText startTranslation{
    u"开始翻译（%1 → %2）", u"開始翻譯（%1 → %2）", u"Start translation (%1 → %2)"};
inline constexpr LocalizedText startChat{u"开始畅聊（%1）", u"開始暢聊（%1）", u"Start chat (%1)"};

inline constexpr std::array finishOperation{
    LocalizedText{u"结束并输入（%1）", u"結束並輸入（%1）", u"Finish and insert (%1)"},
    LocalizedText{u"结束翻译（%1）", u"結束翻譯（%1）", u"Finish translation (%1)"},
    LocalizedText{u"结束畅聊（%1）", u"結束暢聊（%1）", u"Finish chat (%1)"},
};

inline constexpr LocalizedText translationUnavailableDuringDictation{
    u"翻译不可用（语音输入进行中）", u"翻譯不可用（正在語音輸入）",
    u"Translation unavailable during dictation"};
inline constexpr LocalizedText chatUnavailableDuringDictation{u"畅聊不可用（语音输入进行中）",
    u"暢聊不可用（正在語音輸入）", u"Chat unavailable during dictation"};
inline constexpr LocalizedText dictationUnavailableDuringTranslation{
    u"语音输入不可用（翻译进行中）", u"語音輸入不可用（正在翻譯）",
    u"Dictation unavailable during translation"};
inline constexpr LocalizedText chatUnavailableDuringTranslation{
    u"畅聊不可用（翻译进行中）", u"暢聊不可用（正在翻譯）", u"Chat unavailable during translation"};
inline constexpr LocalizedText dictationUnavailableDuringChat{u"语音输入不可用（畅聊进行中）",
    u"語音輸入不可用（正在暢聊）", u"Dictation unavailable during chat"};
inline constexpr LocalizedText translationUnavailableDuringChat{
    u"翻译不可用（畅聊进行中）", u"翻譯不可用（正在暢聊）", u"Translation unavailable during chat"};

inline constexpr std::array processing{
    LocalizedText{u"正在整理文字…", u"正在整理文字…", u"Editing text…"},
    LocalizedText{u"正在翻译文字…", u"正在翻譯文字…", u"Translating…"},
    LocalizedText{u"正在生成畅聊回答…", u"正在產生暢聊回答…", u"Generating chat answer…"},
};

/// In place of the icon while recording, and while processing.
inline constexpr std::array recordingTitle{
    SimplifiedText{u"●"}, SimplifiedText{u"译"}, SimplifiedText{u"聊"}};
inline constexpr SimplifiedText processingTitle{u"…"};

inline constexpr LocalizedText writingStyle{u"文本风格", u"文字風格", u"Writing style"};
inline constexpr LocalizedText translationTarget{u"翻译目标", u"翻譯目標", u"Translation target"};
inline constexpr LocalizedText showTavrin{u"显示 Tavrin", u"顯示 Tavrin", u"Show Tavrin"};
inline constexpr LocalizedText history{u"历史记录…", u"歷史記錄…", u"History…"};
inline constexpr LocalizedText writingStyleSettings{
    u"写作风格设置…", u"寫作風格設定…", u"Writing style settings…"};
inline constexpr LocalizedText checkForUpdates{u"检查更新…", u"檢查更新…", u"Check for updates…"};
inline constexpr LocalizedText quitTavrin{u"退出 Tavrin", u"結束 Tavrin", u"Quit Tavrin"};

} // namespace tavrin::texts

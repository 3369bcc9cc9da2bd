#pragma once

#include "base/LocalizedText.h"

/// Texts of the page for input and output.
namespace tavrin::texts {

inline constexpr LocalizedText inputOutputTitle{u"输入与输出", u"輸入與輸出", u"Input & Output"};
inline constexpr LocalizedText inputOutputSubtitle{
    u"语音输入、翻译与畅聊各用独立触发键，最多两个快捷键。",
    u"語音輸入、翻譯與暢聊各用獨立觸發鍵，最多兩個快捷鍵。",
    u"Dictation, translation, and chat use separate triggers with up to two shortcuts each."};

inline constexpr LocalizedText dictationCard{u"语音输入", u"語音輸入", u"Dictation"};
inline constexpr LocalizedText dictationExplanation{u"保留原语言，去除口语杂质，并套用你的风格。",
    u"保留原語言，去除口語雜質，並套用你的風格。",
    u"Keep the source language, remove speech clutter, and apply your style."};
inline constexpr LocalizedText translationCard{u"翻译", u"翻譯", u"Translation"};
inline constexpr LocalizedText translationExplanation{u"单独触发，还原意图并以目标语言输出。",
    u"單獨觸發，還原意圖並以目標語言輸出。",
    u"Trigger separately to recover intent and output in the target language."};
inline constexpr LocalizedText chatCard{u"畅聊", u"暢聊", u"Chat"};
inline constexpr LocalizedText chatExplanation{u"回答你说出的问题，并把答案写入当前光标。",
    u"回答你說出的問題，並把答案寫入目前游標。",
    u"Answer a spoken question and insert the response at the current cursor."};

inline constexpr LocalizedText shortcuts{u"快捷键", u"快捷鍵", u"Shortcuts"};
inline constexpr LocalizedText targetLanguage{u"目标语言", u"目標語言", u"Target language"};

/// The name of a popup for those who hear it: the operation, and which of its shortcuts.
inline constexpr LocalizedText firstShortcut{
    u"%1：第一个快捷键", u"%1：第一個快捷鍵", u"%1: first shortcut"};
inline constexpr LocalizedText secondShortcut{
    u"%1：第二个快捷键", u"%1：第二個快捷鍵", u"%1: second shortcut"};

} // namespace tavrin::texts

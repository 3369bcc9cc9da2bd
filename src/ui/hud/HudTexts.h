#pragma once

#include "base/LocalizedText.h"

/// Texts of the recording panel.
namespace tavrin::texts {

// Listening and processing: in the interface language.
inline constexpr LocalizedText listeningDictation{
    u"正在收音 · 语音输入", u"正在收音 · 語音輸入", u"Listening · Dictation"};
inline constexpr LocalizedText listeningTranslation{
    u"正在收音 · 翻译", u"正在收音 · 翻譯", u"Listening · Translation"};
inline constexpr LocalizedText listeningChat{
    u"正在收音 · 畅聊", u"正在收音 · 暢聊", u"Listening · Chat"};
inline constexpr LocalizedText pressAgainToFinish{
    u"再次轻按 %1 结束并输入", u"再次輕按 %1 結束並輸入", u"Press %1 again to finish and insert"};
inline constexpr LocalizedText waitingForSpeech{
    u"正在等待语音…", u"正在等待語音…", u"Waiting for speech…"};

// Traditional Chinese shows the Simplified title here, on purpose.
inline constexpr LocalizedText editingText{u"正在整理文字", u"正在整理文字", u"Editing text"};
inline constexpr LocalizedText editingTextDetail{u"正在分析上下文并生成规范文本…",
    u"正在分析上下文並產生規範文字…", u"Analyzing context and generating polished text…"};
inline constexpr LocalizedText translating{u"正在翻译文字", u"正在翻譯文字", u"Translating"};
inline constexpr LocalizedText translatingDetail{u"正在恢复语义并生成目标语言文本…",
    u"正在還原語義並產生目標語言文字…", u"Recovering meaning and generating the target language…"};
inline constexpr LocalizedText answering{
    u"正在生成畅聊回答", u"正在產生暢聊回答", u"Generating chat answer"};
inline constexpr LocalizedText answeringDetail{u"正在理解问题并组织回答…",
    u"正在理解問題並組織回答…", u"Understanding the question and composing an answer…"};

// Everything else: in Simplified Chinese in every interface language.
inline constexpr SimplifiedText initialTitle{u"正在收音"};
inline constexpr SimplifiedText initialDetail{u"再次轻按 %1 结束并输入"};
inline constexpr SimplifiedText initialTranscript{u"正在等待语音…"};
inline constexpr SimplifiedText estimatedDuration{u"根据近期速度，预计约 %1 秒"};
inline constexpr SimplifiedText noEstimate{u"正在转写并整理，首次使用暂无法估算"};

inline constexpr SimplifiedText cancelQuestion{u"是否取消本次输入？"};
inline constexpr SimplifiedText cancelDetail{u"录音已暂停，确认前不会丢失"};
inline constexpr SimplifiedText cancelHint{u"再次按 Escape 也可以确认取消"};
inline constexpr SimplifiedText cancelTime{u"Esc"};
inline constexpr SimplifiedText continueButton{u"继续输入"};
inline constexpr SimplifiedText confirmCancelButton{u"确认取消"};

inline constexpr SimplifiedText pasteUnconfirmed{u"未能确认自动粘贴"};
inline constexpr SimplifiedText textOnPasteboard{u"文字已保存在剪贴板，请按 ⌘V"};
inline constexpr SimplifiedText nothingLost{u"内容没有丢失，可从剪贴板或最近记录中找回"};
inline constexpr SimplifiedText pasteShortcut{u"⌘V"};

} // namespace tavrin::texts

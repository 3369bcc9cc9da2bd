#pragma once

#include "base/LocalizedText.h"

/// Texts of the history page; the question before it is cleared stands in ClearHistoryTexts.h.
namespace tavrin::texts {

inline constexpr LocalizedText historyTitle{u"历史记录", u"歷史記錄", u"History"};
inline constexpr LocalizedText historySubtitle{
    u"默认显示整理结果，需要时可查看原文。仅保存在本机。",
    u"預設顯示整理結果，需要時可查看原文。僅保存在本機。",
    u"Shows edited text by default. Reveal the original transcript when needed. Stored only on "
    u"this Mac."};

inline constexpr LocalizedText retention{u"保留时间", u"保留時間", u"Retention"};
inline constexpr LocalizedText retentionExplanation{u"选择文字在本机保留多久。录音从不保存。",
    u"選擇文字在本機保留多久。錄音從不保存。",
    u"Choose how long text stays on this Mac. Audio recordings are never kept."};

/// %1 is a number, %2 one with a decimal.
inline constexpr LocalizedText historyStorage{u"%1 条记录 · %2 KB · 仅保存在本机",
    u"%1 筆記錄 · %2 KB · 僅保存在本機", u"%1 records · %2 KB · stored on this Mac"};
inline constexpr LocalizedText showFiles{u"显示文件", u"顯示檔案", u"Show files"};
inline constexpr LocalizedText clearHistoryRecords{u"清空", u"清空", u"Clear"};

inline constexpr LocalizedText noHistory{u"暂无历史记录", u"暫無歷史記錄", u"No history yet"};
inline constexpr LocalizedText today{u"今天", u"今天", u"Today"};
inline constexpr LocalizedText yesterday{u"昨天", u"昨天", u"Yesterday"};
/// Month and day, the same in every interface language.
inline constexpr QStringView monthAndDay = u"M 月 d 日";

/// %1 is the time, %2 the operation.
inline constexpr QStringView recordHeader = u"%1  ·  %2";
/// %1 is the operation, %2 the language.
inline constexpr QStringView translationInto = u"%1 · %2";
inline constexpr LocalizedText dictationRecord{u"语音输入", u"語音輸入", u"Dictation"};
inline constexpr LocalizedText translationRecord{u"翻译", u"翻譯", u"Translation"};
inline constexpr LocalizedText chatRecord{u"畅聊", u"暢聊", u"Chat"};
inline constexpr LocalizedText editedResult{u"整理结果", u"整理結果", u"Edited result"};
inline constexpr LocalizedText originalTranscript{u"原始转写", u"原始轉寫", u"Original transcript"};

inline constexpr LocalizedText copyRecord{u"复制", u"複製", u"Copy"};
inline constexpr LocalizedText recordCopied{u"✓ 已复制", u"✓ 已複製", u"✓ Copied"};
inline constexpr LocalizedText showOriginal{u"原文", u"原文", u"Original"};
inline constexpr LocalizedText showResult{u"结果", u"結果", u"Result"};
inline constexpr LocalizedText deleteRecord{u"删除", u"刪除", u"Delete"};
/// For screen readers.
inline constexpr LocalizedText showWholeText{u"展开全文", u"展開全文", u"Show the whole text"};
inline constexpr LocalizedText showLessText{u"收起", u"收合", u"Show less"};

inline constexpr LocalizedText searchHistory{u"搜索历史记录", u"搜尋歷史記錄", u"Search history"};
inline constexpr LocalizedText findMatches{u"%1 条匹配", u"%1 筆符合", u"%1 matches"};
inline constexpr LocalizedText noMatchingRecords{
    u"没有匹配的记录", u"沒有符合的記錄", u"No matching records"};

} // namespace tavrin::texts

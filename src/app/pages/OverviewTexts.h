#pragma once

#include "base/LocalizedText.h"

/// Texts of the overview page.
namespace tavrin::texts {

inline constexpr LocalizedText overviewTitle{u"概览", u"概覽", u"Overview"};
inline constexpr LocalizedText overviewSubtitle{u"说出想法，Tavrin 将它整理成可直接使用的文字。",
    u"說出想法，Tavrin 將它整理成可直接使用的文字。",
    u"Speak your thoughts. Tavrin turns them into ready-to-use text."};

inline constexpr LocalizedText usageToday{u"今日", u"今日", u"Today"};
inline constexpr LocalizedText usageThisWeek{u"本周", u"本週", u"This week"};
inline constexpr LocalizedText usageThisMonth{u"本月", u"本月", u"This month"};
inline constexpr LocalizedText charactersUnit{u"字", u"字", u"chars"};

inline constexpr LocalizedText totalDictation{u"累计口述", u"累計口述", u"Total dictation"};
inline constexpr LocalizedText dictatedCharacters{u"口述字数", u"口述字數", u"Dictated characters"};
inline constexpr LocalizedText timeSaved{
    u"节省时间（估算）", u"節省時間（估算）", u"Time saved (est.)"};
inline constexpr LocalizedText averageSpeed{u"平均语速", u"平均語速", u"Average speed"};
inline constexpr LocalizedText charactersPerMinuteUnit{u"字/分钟", u"字/分鐘", u"chars/min"};

inline constexpr LocalizedText privateFigures{
    u"✦  本机统计，隐私优先", u"✦  本機統計，隱私優先", u"✦  On-device stats, private by design"};
inline constexpr LocalizedText figuresFootnote{
    u"节省时间 = 按 45 字/分钟估算的打字时间 − 口述时间 − AI 处理等待时间。"
    u"旧记录没有时长时只计入字数。",
    u"節省時間 = 按 45 字/分鐘估算的打字時間 − 口述時間 − AI 處理等待時間。"
    u"舊記錄沒有時長時只計入字數。",
    u"Time saved = estimated typing time at 45 chars/min minus dictation and AI processing. "
    u"Legacy records count toward characters only."};

/// The same in every interface language.
inline constexpr QStringView minutesDuration = u"%1 min";
inline constexpr QStringView hoursDuration = u"%1 h %2 min";

} // namespace tavrin::texts

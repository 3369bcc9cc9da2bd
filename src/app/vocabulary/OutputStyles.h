#pragma once

#include "base/LocalizedText.h"

#include <array>

namespace tavrin {

struct OutputStyleRow {
    QStringView identifier; ///< What is stored, and sent to the cloud service.
    LocalizedText title;
};

/// The writing styles, in the order of every menu and popup.
inline constexpr std::array outputStyles{
    OutputStyleRow{u"professional",
        LocalizedText{u"专业正文（默认）", u"專業正文（預設）", u"Professional (Default)"}},
    OutputStyleRow{
        u"xiaohongshu", LocalizedText{u"小红书 · Emoji", u"小紅書 · Emoji", u"Social · Emoji"}},
    OutputStyleRow{u"businessEmail", LocalizedText{u"商务邮件", u"商務郵件", u"Business email"}},
    OutputStyleRow{u"casual", LocalizedText{u"自然聊天", u"自然聊天", u"Casual chat"}},
    OutputStyleRow{u"meeting", LocalizedText{u"会议行动项", u"會議行動項", u"Meeting actions"}},
    OutputStyleRow{u"aiPrompt", LocalizedText{u"AI 指令", u"AI 指令", u"AI prompt"}},
};

} // namespace tavrin

#pragma once

#include "base/LocalizedText.h"

#include <QString>

#include <algorithm>
#include <array>

namespace tavrin {

struct SpeechLanguageRow {
    /// BCP 47; a language alone stands for all its regions but those named above it.
    QStringView tag;
    LocalizedText name;
};

/// The languages that speech is recognised in, by their names.
inline constexpr std::array speechLanguages{
    SpeechLanguageRow{
        u"zh-TW", LocalizedText{u"普通话（台湾）", u"國語（台灣）", u"Mandarin (Taiwan)"}},
    SpeechLanguageRow{u"zh", LocalizedText{u"普通话", u"普通話", u"Mandarin"}},
    SpeechLanguageRow{u"cmn", LocalizedText{u"普通话", u"普通話", u"Mandarin"}},
    SpeechLanguageRow{u"yue", LocalizedText{u"粤语", u"粵語", u"Cantonese"}},
    SpeechLanguageRow{u"en", LocalizedText{u"英语", u"英語", u"English"}},
    SpeechLanguageRow{u"ja", LocalizedText{u"日语", u"日語", u"Japanese"}},
    SpeechLanguageRow{u"ko", LocalizedText{u"韩语", u"韓語", u"Korean"}},
    SpeechLanguageRow{u"fr", LocalizedText{u"法语", u"法語", u"French"}},
    SpeechLanguageRow{u"de", LocalizedText{u"德语", u"德語", u"German"}},
    SpeechLanguageRow{u"es", LocalizedText{u"西班牙语", u"西班牙語", u"Spanish"}},
    SpeechLanguageRow{u"pt", LocalizedText{u"葡萄牙语", u"葡萄牙語", u"Portuguese"}},
    SpeechLanguageRow{u"it", LocalizedText{u"意大利语", u"義大利語", u"Italian"}},
    SpeechLanguageRow{u"nl", LocalizedText{u"荷兰语", u"荷蘭語", u"Dutch"}},
    SpeechLanguageRow{u"ru", LocalizedText{u"俄语", u"俄語", u"Russian"}},
    SpeechLanguageRow{u"uk", LocalizedText{u"乌克兰语", u"烏克蘭語", u"Ukrainian"}},
    SpeechLanguageRow{u"pl", LocalizedText{u"波兰语", u"波蘭語", u"Polish"}},
    SpeechLanguageRow{u"tr", LocalizedText{u"土耳其语", u"土耳其語", u"Turkish"}},
    SpeechLanguageRow{u"ar", LocalizedText{u"阿拉伯语", u"阿拉伯語", u"Arabic"}},
    SpeechLanguageRow{u"hi", LocalizedText{u"印地语", u"印地語", u"Hindi"}},
    SpeechLanguageRow{u"th", LocalizedText{u"泰语", u"泰語", u"Thai"}},
    SpeechLanguageRow{u"vi", LocalizedText{u"越南语", u"越南語", u"Vietnamese"}},
    SpeechLanguageRow{u"id", LocalizedText{u"印度尼西亚语", u"印尼語", u"Indonesian"}},
    SpeechLanguageRow{u"cs", LocalizedText{u"捷克语", u"捷克語", u"Czech"}},
    SpeechLanguageRow{u"da", LocalizedText{u"丹麦语", u"丹麥語", u"Danish"}},
    SpeechLanguageRow{u"sv", LocalizedText{u"瑞典语", u"瑞典語", u"Swedish"}},
    SpeechLanguageRow{u"nb", LocalizedText{u"挪威语", u"挪威語", u"Norwegian"}},
    SpeechLanguageRow{u"fi", LocalizedText{u"芬兰语", u"芬蘭語", u"Finnish"}},
    SpeechLanguageRow{u"el", LocalizedText{u"希腊语", u"希臘語", u"Greek"}},
    SpeechLanguageRow{u"ro", LocalizedText{u"罗马尼亚语", u"羅馬尼亞語", u"Romanian"}},
    SpeechLanguageRow{u"hu", LocalizedText{u"匈牙利语", u"匈牙利語", u"Hungarian"}},
    SpeechLanguageRow{u"he", LocalizedText{u"希伯来语", u"希伯來語", u"Hebrew"}},
    SpeechLanguageRow{u"fa", LocalizedText{u"波斯语", u"波斯語", u"Persian"}},
};

/// The row of the language with this tag: of "en-GB" its own, else that of "en"; null when it has
/// no name here.
[[nodiscard]] inline const SpeechLanguageRow* speechLanguage(const QString& tag)
{
    for (const QString& known : {tag, tag.section(u'-', 0, 0)}) {
        const auto* const found =
            std::ranges::find_if(speechLanguages, [&](const SpeechLanguageRow& row) {
                return row.tag.compare(known, Qt::CaseInsensitive) == 0;
            });
        if (found != speechLanguages.end())
            return found;
    }
    return nullptr;
}

} // namespace tavrin

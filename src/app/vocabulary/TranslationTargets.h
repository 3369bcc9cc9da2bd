#pragma once

#include "base/LocalizedText.h"

#include <array>

namespace tavrin {

struct TranslationTargetRow {
    QStringView identifier; ///< What is stored, sent to the cloud service and kept in the history.
    LocalizedText name;
};

/// The languages to translate into, in the order of every menu and popup.
inline constexpr std::array translationTargets{
    TranslationTargetRow{u"english", LocalizedText{u"英语", u"英語", u"English"}},
    TranslationTargetRow{
        u"chinese_simplified", LocalizedText{u"简体中文", u"簡體中文", u"Chinese (Simplified)"}},
    TranslationTargetRow{
        u"chinese_traditional", LocalizedText{u"繁体中文", u"繁體中文", u"Chinese (Traditional)"}},
    TranslationTargetRow{
        u"cantonese", LocalizedText{u"粤语（香港）", u"粵語（香港）", u"Cantonese (Hong Kong)"}},
    TranslationTargetRow{u"japanese", LocalizedText{u"日语", u"日語", u"Japanese"}},
    TranslationTargetRow{u"korean", LocalizedText{u"韩语", u"韓語", u"Korean"}},
    TranslationTargetRow{u"french", LocalizedText{u"法语", u"法語", u"French"}},
    TranslationTargetRow{u"german", LocalizedText{u"德语", u"德語", u"German"}},
    TranslationTargetRow{u"spanish", LocalizedText{u"西班牙语", u"西班牙語", u"Spanish"}},
    TranslationTargetRow{u"portuguese_brazil",
        LocalizedText{u"葡萄牙语（巴西）", u"葡萄牙語（巴西）", u"Portuguese (Brazil)"}},
    TranslationTargetRow{u"italian", LocalizedText{u"意大利语", u"義大利語", u"Italian"}},
    TranslationTargetRow{u"dutch", LocalizedText{u"荷兰语", u"荷蘭語", u"Dutch"}},
    TranslationTargetRow{u"russian", LocalizedText{u"俄语", u"俄語", u"Russian"}},
    TranslationTargetRow{u"ukrainian", LocalizedText{u"乌克兰语", u"烏克蘭語", u"Ukrainian"}},
    TranslationTargetRow{u"polish", LocalizedText{u"波兰语", u"波蘭語", u"Polish"}},
    TranslationTargetRow{u"czech", LocalizedText{u"捷克语", u"捷克語", u"Czech"}},
    TranslationTargetRow{u"danish", LocalizedText{u"丹麦语", u"丹麥語", u"Danish"}},
    TranslationTargetRow{u"swedish", LocalizedText{u"瑞典语", u"瑞典語", u"Swedish"}},
    TranslationTargetRow{u"norwegian", LocalizedText{u"挪威语", u"挪威語", u"Norwegian"}},
    TranslationTargetRow{u"finnish", LocalizedText{u"芬兰语", u"芬蘭語", u"Finnish"}},
    TranslationTargetRow{u"greek", LocalizedText{u"希腊语", u"希臘語", u"Greek"}},
    TranslationTargetRow{u"romanian", LocalizedText{u"罗马尼亚语", u"羅馬尼亞語", u"Romanian"}},
    TranslationTargetRow{u"hungarian", LocalizedText{u"匈牙利语", u"匈牙利語", u"Hungarian"}},
    TranslationTargetRow{u"turkish", LocalizedText{u"土耳其语", u"土耳其語", u"Turkish"}},
    TranslationTargetRow{u"arabic", LocalizedText{u"阿拉伯语", u"阿拉伯語", u"Arabic"}},
    TranslationTargetRow{u"hebrew", LocalizedText{u"希伯来语", u"希伯來語", u"Hebrew"}},
    TranslationTargetRow{u"persian", LocalizedText{u"波斯语", u"波斯語", u"Persian"}},
    TranslationTargetRow{u"hindi", LocalizedText{u"印地语", u"印地語", u"Hindi"}},
    TranslationTargetRow{u"bengali", LocalizedText{u"孟加拉语", u"孟加拉語", u"Bengali"}},
    TranslationTargetRow{u"tamil", LocalizedText{u"泰米尔语", u"泰米爾語", u"Tamil"}},
    TranslationTargetRow{u"telugu", LocalizedText{u"泰卢固语", u"泰盧固語", u"Telugu"}},
    TranslationTargetRow{u"urdu", LocalizedText{u"乌尔都语", u"烏爾都語", u"Urdu"}},
    TranslationTargetRow{u"thai", LocalizedText{u"泰语", u"泰語", u"Thai"}},
    TranslationTargetRow{u"vietnamese", LocalizedText{u"越南语", u"越南語", u"Vietnamese"}},
    TranslationTargetRow{u"indonesian", LocalizedText{u"印度尼西亚语", u"印尼語", u"Indonesian"}},
    TranslationTargetRow{u"malay", LocalizedText{u"马来语", u"馬來語", u"Malay"}},
    TranslationTargetRow{u"filipino", LocalizedText{u"菲律宾语", u"菲律賓語", u"Filipino"}},
    TranslationTargetRow{u"khmer", LocalizedText{u"高棉语", u"高棉語", u"Khmer"}},
    TranslationTargetRow{u"burmese", LocalizedText{u"缅甸语", u"緬甸語", u"Burmese"}},
    TranslationTargetRow{u"nepali", LocalizedText{u"尼泊尔语", u"尼泊爾語", u"Nepali"}},
    TranslationTargetRow{u"lao", LocalizedText{u"老挝语", u"寮語", u"Lao"}},
    TranslationTargetRow{u"swahili", LocalizedText{u"斯瓦希里语", u"斯瓦希里語", u"Swahili"}},
};

} // namespace tavrin

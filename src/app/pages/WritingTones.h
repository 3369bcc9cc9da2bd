#pragma once

#include "base/LocalizedText.h"

#include <array>

namespace tavrin {

struct WritingToneRow {
    QStringView identifier; ///< What is stored.
    SimplifiedText label;
};

/// The tones to write in, in the order of their popup; the first one unless the user chooses.
inline constexpr std::array writingTones{
    WritingToneRow{u"natural", SimplifiedText{u"自然"}},
    WritingToneRow{u"concise", SimplifiedText{u"简洁直接"}},
    WritingToneRow{u"professional", SimplifiedText{u"专业克制"}},
    WritingToneRow{u"warm", SimplifiedText{u"友好温和"}},
};

} // namespace tavrin

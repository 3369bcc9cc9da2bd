#pragma once

#include "app/vocabulary/SettingsTexts.h"
#include "base/LocalizedText.h"

#include <array>

namespace tavrin {

struct ShortcutItemRow {
    QStringView identifier;
    LocalizedText name;
};

/// The shortcuts that an operation can have, in the order of the popups; the first one leaves a
/// slot empty. What each stands for is decided by ShortcutMonitor.
inline constexpr std::array shortcutItems{
    ShortcutItemRow{u"none", texts::notSet},
    ShortcutItemRow{u"rightOption", LocalizedText{u"右 Option", u"右 Option", u"Right Option"}},
    ShortcutItemRow{u"leftOption", LocalizedText{u"左 Option", u"左 Option", u"Left Option"}},
    ShortcutItemRow{u"optionSpace", LocalizedText{u"⌥ Space"}},
    ShortcutItemRow{u"controlOptionSpace", LocalizedText{u"⌃⌥ Space"}},
    ShortcutItemRow{u"commandShiftSpace", LocalizedText{u"⇧⌘ Space"}},
};

} // namespace tavrin

#pragma once

#include "base/LocalizedText.h"

/// Texts of the audio settings.
namespace tavrin::texts {

inline constexpr LocalizedText followSystemDefault{
    u"跟随系统默认", u"跟隨系統預設", u"Follow system default"};

} // namespace tavrin::texts

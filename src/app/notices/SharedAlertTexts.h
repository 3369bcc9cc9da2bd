#pragma once

#include "base/LocalizedText.h"

/// Texts that the alerts of several features share. The localised "OK" stands in SettingsTexts.h.
namespace tavrin::texts {

inline constexpr SimplifiedText unknownError{u"未知错误"};
inline constexpr SimplifiedText allRight{u"好"};

} // namespace tavrin::texts

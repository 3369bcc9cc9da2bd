#pragma once

#include "base/LocalizedText.h"

/// What a new record says of itself. Stored as it stands, and therefore the same in every interface
/// language.
namespace tavrin::texts {

/// How the text was delivered, where nobody said.
inline constexpr SimplifiedText keptOnClipboard{u"保存在剪贴板"};

} // namespace tavrin::texts

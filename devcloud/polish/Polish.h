#pragma once

#include "devcloud/polish/Style.h"

#include <string>
#include <string_view>

namespace tavrin::devcloud {

/// Polishes a transcript, Chinese or English, by rules: fillers and stammered repeats go, marks,
/// capitals and spacing are restored, and the text takes the form of @p style.
///
/// Every content word stays, once and in its order; the only words added are the fixed frame of a
/// style, such as the greeting of an e-mail. Text of other languages is only tidied.
std::string polish(std::string_view transcript, Style style);

} // namespace tavrin::devcloud

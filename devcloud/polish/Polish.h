#pragma once

#include "devcloud/polish/Style.h"

#include <string>
#include <string_view>

namespace tavrin::devcloud {

/// Polishes a transcript, Chinese or English, by rules: sounds and stammered words that stand alone
/// go, marks and capitals that nobody could doubt are put in, and the text takes the form of
/// @p style. What is not sure stays as it was said: every word, once and in its order, every
/// address, command and number, and every text that is not surely Chinese or English. Only white
/// space around a text and control characters go wherever they are.
///
/// The only words added are the fixed frame of a style, such as the greeting of an e-mail.
std::string polish(std::string_view transcript, Style style);

} // namespace tavrin::devcloud

#pragma once

#include "devcloud/polish/EnglishLine.h"

#include <span>
#include <string_view>

namespace tavrin::devcloud {

/// The mark that ends an English text whose last sentence these runs are: a question mark when its
/// form can be nothing but a question, a full stop when it can be none, nothing when either is
/// possible, when it is no sentence, or when it ends in an address, a number or a mark.
std::u32string_view englishEndMark(std::span<const Run> sentence);

/// Whether the form of these runs may be that of a question.
bool mayAskInEnglish(std::span<const Run> sentence);

} // namespace tavrin::devcloud

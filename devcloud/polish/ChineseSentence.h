#pragma once

#include <string_view>

namespace tavrin::devcloud {

/// Whether a text says something; a name, a list or a phrase such as 我的电话 is no sentence. Its
/// characters are to be simplified.
bool isChineseSentence(std::u32string_view simple);

/// The mark that ends a Chinese text: a question mark when its form can be nothing but a question,
/// a full stop when it can be none, nothing when either is possible or it is no sentence.
std::u32string_view chineseEndMark(std::u32string_view text);

} // namespace tavrin::devcloud

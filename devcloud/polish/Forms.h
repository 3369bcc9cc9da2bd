#pragma once

#include "devcloud/polish/Language.h"
#include "devcloud/polish/Style.h"

#include <string>
#include <string_view>

namespace tavrin::devcloud {

/// Sets a clean text in the form of a style: line by line, between a greeting and a close … What
/// the form adds is fixed, in the language and script of the text, and says nothing about it.
/// A text of Language::Other keeps its form.
std::u32string setInForm(std::u32string_view text, Style style, Language language);

} // namespace tavrin::devcloud

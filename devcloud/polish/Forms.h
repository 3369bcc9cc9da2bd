#pragma once

#include "devcloud/polish/Style.h"

#include <string>
#include <vector>

namespace tavrin::devcloud {

/// A finished sentence, ready to be set.
struct Clause {
    std::u32string body;
    std::u32string end;
    bool isChinese = false;
    bool startsParagraph = false;
};

/// Sets sentences in the form of a style. @p chinese chooses the language of the style's frame.
std::u32string setInForm(const std::vector<Clause>& clauses, Style style, bool chinese);

} // namespace tavrin::devcloud

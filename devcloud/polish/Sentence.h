#pragma once

#include "devcloud/polish/Token.h"

#include <string>
#include <string_view>
#include <vector>

namespace tavrin::devcloud {

/// A sentence under way: its tokens without the mark that ends it.
struct Sentence {
    Tokens tokens;
    std::u32string end; ///< "." "？" …; empty while nobody has decided.
    bool isChinese = false;
    bool startsParagraph = false; ///< A line break stood before it.
};

/// Cuts tokens into sentences at line breaks and at the marks that end one; a full stop after an
/// abbreviation such as "Dr." ends none.
std::vector<Sentence> splitSentences(const Tokens& tokens);

/// Whether Han characters outweigh words of other scripts.
bool isMostlyChinese(const Tokens& tokens);

} // namespace tavrin::devcloud

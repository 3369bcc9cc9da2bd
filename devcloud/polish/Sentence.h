#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tavrin::devcloud {

/// A sentence of a finished text, with its marks, and the white space between it and the one
/// before.
struct Sentence {
    std::u32string gap;
    std::u32string text;
};

/// Cuts a text where a sentence ends beyond doubt: at line breaks, and at marks outside quotation
/// and brackets that neither belong to an abbreviation nor to a number.
std::vector<Sentence> splitSentences(std::u32string_view text);

/// Without the plain full stop at the end, which would be stiff in a line that stands alone. The
/// one of an abbreviation stays.
std::u32string withoutStop(std::u32string_view sentence);

} // namespace tavrin::devcloud

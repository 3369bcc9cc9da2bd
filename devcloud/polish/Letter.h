#pragma once

#include "devcloud/polish/Sentence.h"

#include <cstddef>
#include <span>
#include <string_view>

namespace tavrin::devcloud {

/// How many sentences at the beginning and at the end of a letter greet and close it, and do
/// nothing else. At least one remains between them.
struct LetterParts {
    std::size_t greeting = 0;
    std::size_t closing = 0;
};

LetterParts partsOfLetter(std::span<const Sentence> sentences);

/// Whether a text begins like a greeting, whatever follows: one more would be too much.
bool mayGreet(std::u32string_view text);

/// Whether the last sentence of a text looks like a close or a signature, whatever else it says.
bool mayClose(std::span<const Sentence> sentences);

} // namespace tavrin::devcloud

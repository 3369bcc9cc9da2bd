#pragma once

#include "devcloud/polish/Style.h"

#include <string>
#include <vector>

namespace tavrin::devcloud::testing {

enum class Removal { AllOf, AnyOf };

/// Compares what was said with what was written of it, with the characters and words of ICU and
/// nothing of the service's own. Says what is wrong: a word was added, lost, reordered or torn
/// apart, two were joined, a letter other than the first became a capital, or something other than
/// plain letters did not arrive as it was. Empty when all is well.
///
/// @p removed are the only words that may be missing, in their order: all of them, or any.
std::string faultOf(const std::string& said, const std::string& written,
    const std::vector<std::string>& removed = {}, Removal removal = Removal::AllOf);

/// A written text without the words and signs that @p style has put around it.
std::string insideFrame(const std::string& said, const std::string& written, Style style);

} // namespace tavrin::devcloud::testing

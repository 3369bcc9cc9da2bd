#pragma once

#include "devcloud/polish/Style.h"

#include <string>
#include <vector>

namespace tavrin::devcloud::testing {

/// A line of tests/devcloud/corpus; README.md there tells how they are written.
struct CorpusEntry {
    std::string place; ///< "negations.txt:12"
    Style style = Style::Professional;
    std::string said;
    std::string wanted;
    std::vector<std::string> removed; ///< What may go, in its order.
};

/// Every entry of every file, in order; throws std::runtime_error at what is no entry.
const std::vector<CorpusEntry>& corpus();

} // namespace tavrin::devcloud::testing

#pragma once

#include <vector>

namespace bench {

/// Milliseconds of each round: what the watch for corrections does with a field of 2 MB in which a
/// word was changed; std::mismatch over the same two texts; and finding the candidates in a stretch
/// of 2,000 units.
struct CorrectionTimes {
    std::vector<double> poll, mismatch, candidates;
};

[[nodiscard]] CorrectionTimes measureCorrections(int rounds);

} // namespace bench

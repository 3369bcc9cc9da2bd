#include "Alignment.h"

#include <cmath>
#include <numeric>

namespace bench {
namespace {

constexpr std::size_t stretch = 2'048; // Samples compared.
constexpr double clear = 0.5; // Correlation; noise that is not the same has some 0.02.

double product(std::span<const qint16> a, std::span<const qint16> b)
{
    const auto sum = std::transform_reduce(a.begin(), a.end(), b.begin(), qint64{0}, std::plus<>(),
        [](qint16 x, qint16 y) { return qint64{x} * y; });
    return static_cast<double>(sum);
}

} // namespace

std::optional<qint64> positionIn(
    std::span<const qint16> reference, std::span<const qint16> recording, std::size_t skipped)
{
    if (recording.size() < skipped + stretch || reference.size() < stretch)
        return std::nullopt;
    const auto wanted = recording.subspan(skipped, stretch);
    const double wantedEnergy = product(wanted, wanted);
    double best = 0;
    std::size_t place = 0;
    for (std::size_t i = 0; i + stretch <= reference.size(); ++i) {
        const auto candidate = reference.subspan(i, stretch);
        const double energy = product(candidate, candidate);
        const double likeness =
            energy > 0 ? product(wanted, candidate) / std::sqrt(energy * wantedEnergy) : 0;
        if (likeness > best) {
            best = likeness;
            place = i;
        }
    }
    if (best < clear)
        return std::nullopt;
    return static_cast<qint64>(place) - static_cast<qint64>(skipped);
}

} // namespace bench

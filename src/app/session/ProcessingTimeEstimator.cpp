#include "app/session/ProcessingTimeEstimator.h"

#include "platform/preferences/PreferenceKeys.h"
#include "platform/preferences/PreferenceValues.h"

#include <QVariantList>
#include <QVariantMap>

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace tavrin {
namespace {

constexpr qsizetype minSamples = 2;
constexpr qsizetype maxSamples = 20;
constexpr Seconds shortestAudio = 1s;
constexpr Seconds shortestEstimate = 1.5s;
constexpr Seconds longestEstimate = 45s;
constexpr double weightOffset = 0.35; // Keeps a sample of equal length from outweighing all others.
constexpr double growthExponent = 0.22; // Processing time grows only weakly with audio length.

QVariantList storedSamples(const Preferences& preferences)
{
    return valueOf(preferences, keys::processingTimingSamples);
}

bool isPositive(Seconds duration)
{
    return std::isfinite(duration.count()) && duration > 0s;
}

Seconds secondsIn(const QVariantMap& sample, const QString& key)
{
    return Seconds{storedNumber(sample.value(key)).value_or(0)};
}

} // namespace

ProcessingTimeEstimator::ProcessingTimeEstimator(Preferences& preferences)
    : m_preferences(preferences)
{
}

std::optional<Seconds> ProcessingTimeEstimator::estimatedProcessingDurationForAudio(
    Seconds audio) const
{
    const QVariantList samples = storedSamples(m_preferences);
    if (samples.size() < minSamples)
        return std::nullopt;

    // An unknown length (not a number) counts as the shortest: it compares as not greater.
    const Seconds flooredAudio = std::max(shortestAudio, audio);
    Seconds weightedSum{0};
    double totalWeight = 0;
    for (const QVariant& stored : samples) {
        const QVariantMap sample = stored.toMap();
        const Seconds processing = secondsIn(sample, u"processing"_s);
        if (processing <= 0s)
            continue;
        const Seconds sampleAudio = secondsIn(sample, u"audio"_s);
        const double ratio = flooredAudio / std::max(sampleAudio, shortestAudio);
        const double weight = 1 / (std::abs(std::log(ratio)) + weightOffset);
        weightedSum += processing * std::pow(ratio, growthExponent) * weight;
        totalWeight += weight;
    }
    if (totalWeight <= 0)
        return std::nullopt;
    return std::clamp(weightedSum / totalWeight, shortestEstimate, longestEstimate);
}

void ProcessingTimeEstimator::recordProcessingDuration(Seconds processing, Seconds audio)
{
    if (!isPositive(processing) || !isPositive(audio))
        return;

    QVariantList samples = storedSamples(m_preferences);
    samples.append(QVariantMap{{u"audio"_s, audio.count()}, {u"processing"_s, processing.count()}});
    if (samples.size() > maxSamples)
        samples.remove(0, samples.size() - maxSamples);
    m_preferences.setValue(keys::processingTimingSamples, samples);
}

} // namespace tavrin

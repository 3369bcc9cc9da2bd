#include "ui/hud/HudMovement.h"

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace tavrin::hud {
namespace {

constexpr double decibelsPerDecade = 28;
constexpr double lowestBarLevel = 0.08;
constexpr double highestBar = 24;
constexpr double barBase = 76;

constexpr double lightWay = 540; // The track and the light on either side of it.
constexpr double lightWidth = 150;
constexpr double lightSpeedRecording = 125; // Points a second.
constexpr double lightSpeedProcessing = 190;

constexpr Seconds shortestEstimate = 200ms;
constexpr double firstProgress = 3;
constexpr double progressSpan = 87;
constexpr double greatestShare = 0.9;

} // namespace

double levelForPower(double power)
{
    return std::pow(10, power / decibelsPerDecade);
}

double barLevel(double level)
{
    return std::clamp(level, lowestBarLevel, 1.0);
}

Bars waveBars(Seconds elapsed, double barLevel)
{
    Bars bars;
    for (int i = 0; i < barCount; ++i) {
        const double wave = 0.48 + 0.52 * std::sin(9 * elapsed.count() + 1.17 * i);
        const double height = std::min(7 + 25 * barLevel * wave, highestBar);
        bars.at(static_cast<std::size_t>(i)) = {barBase + (highestBar - height) / 2, height};
    }
    return bars;
}

Bars staircaseBars()
{
    Bars bars;
    for (int i = 0; i < barCount; ++i)
        bars.at(static_cast<std::size_t>(i)) = {24, ((4 * i) % 16) + 8.0};
    return bars;
}

double lightX(Seconds elapsed, bool processing)
{
    const double speed = processing ? lightSpeedProcessing : lightSpeedRecording;
    return std::fmod(speed * elapsed.count(), lightWay) - lightWidth;
}

double progressValue(Seconds elapsed, Seconds estimate)
{
    const double share = elapsed / std::max(estimate, shortestEstimate);
    return firstProgress + progressSpan * std::min(share, greatestShare);
}

QString recordingTime(Seconds elapsed)
{
    const auto seconds = static_cast<qint64>(elapsed.count());
    return u"%1:%2"_s.arg(seconds / 60, 2, 10, QChar(u'0')).arg(seconds % 60, 2, 10, QChar(u'0'));
}

QString remainingTime(Seconds elapsed, Seconds estimate)
{
    const double remaining = std::ceil(std::max(estimate - elapsed, Seconds(0)).count());
    return u"≈ %1s"_s.arg(remaining, 0, 'f', 0);
}

} // namespace tavrin::hud

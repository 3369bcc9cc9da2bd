#pragma once

#include "base/Seconds.h"

#include <QString>

#include <array>

/// The numbers behind the recording panel's movement. Points; y counts upwards.
namespace tavrin::hud {

inline constexpr int barCount = 7;

/// A level bar's vertical extent; its place and width never change.
struct Bar {
    double y = 0;
    double height = 0;

    friend bool operator==(const Bar&, const Bar&) = default;
};

using Bars = std::array<Bar, barCount>;

/// 0 to 1 for a mean power in dBFS (at most 0).
[[nodiscard]] double levelForPower(double power);

/// @p level as the bars show it: silence still moves them a little.
[[nodiscard]] double barLevel(double level);

/// The bars' wave at @p elapsed.
[[nodiscard]] Bars waveBars(Seconds elapsed, double barLevel);

/// The bars before the first step of processing.
[[nodiscard]] Bars staircaseBars();

/// Left edge of the light that travels along the track.
[[nodiscard]] double lightX(Seconds elapsed, bool processing);

/// How far the progress bar is, of 100: from 3 towards an end that it never reaches on its own.
[[nodiscard]] double progressValue(Seconds elapsed, Seconds estimate);

/// "01:15": minutes and seconds, cut off.
[[nodiscard]] QString recordingTime(Seconds elapsed);

/// "≈ 3s": whole seconds that remain, rounded up.
[[nodiscard]] QString remainingTime(Seconds elapsed, Seconds estimate);

} // namespace tavrin::hud

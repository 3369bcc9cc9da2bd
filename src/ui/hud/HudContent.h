#pragma once

#include "ui/hud/HudMovement.h"

#include <QString>

namespace tavrin::hud {

/// The status dot's colour, by what it says.
enum class Dot { Recording, Processing, Attention };

/// Everything that the recording panel shows at one moment.
struct Content {
    Dot dot = Dot::Recording;
    QString titleLabel;
    QString detailLabel;
    QString timeLabel;
    QString transcriptLabel; ///< Two lines at most; the beginning gives way.

    bool barsVisible = true;
    Bars bars{};
    double lightX = -150;

    bool progressVisible = false;
    bool progressIndeterminate = false;
    double progress = 0; ///< Of 100.

    bool buttonsVisible = false;
    bool takesMouse = false;

    friend bool operator==(const Content&, const Content&) = default;
};

} // namespace tavrin::hud

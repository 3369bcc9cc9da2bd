#pragma once

#include "platform/StatusItem.h"

namespace tavrin {

/// `menuBarIcon`: "Tav" in a rounded frame, 34 × 18 points.
[[nodiscard]] inline StatusImage createMenuBarIcon()
{
    return StatusImage{
        .width = 34,
        .height = 18,
        .frameX = 1.25,
        .frameY = 2.25,
        .frameWidth = 31.5,
        .frameHeight = 13.5,
        .cornerRadius = 3.5,
        .lineWidth = 1.8,
        .text = QStringLiteral("Tav"),
        .fontSize = 8.5,
        .textOffsetY = -0.3,
        .accessibilityDescription = QStringLiteral("Tavrin"),
    };
}

} // namespace tavrin

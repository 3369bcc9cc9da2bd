#pragma once

#include "app/windows/View.h"
#include "ui/hud/HudContent.h"

#include <functional>

namespace tavrin::hud {

/// The window of the recording panel: draws what it is given and decides nothing. Main thread only.
class Panel : public View<Content> {
public:
    /// What the two buttons do.
    virtual void setActions(
        std::function<void()> confirm, std::function<void()> continueRecording) = 0;

    /// Puts the panel at its place on the screen and in front, without taking the keyboard.
    virtual void positionAndShow() = 0;

    virtual void orderOut() = 0;
};

} // namespace tavrin::hud

#pragma once

#include "base/Seconds.h"

#include <memory>

class QString;

namespace tavrin {

/// A loaded sound. Main thread only; playing goes on in the background and never blocks.
class Sound {
public:
    virtual ~Sound() = default;

    virtual void stop() = 0;
    virtual void setCurrentTime(Seconds position) = 0;

    /// 0.0 to 1.0.
    virtual void setVolume(float volume) = 0;
    virtual void play() = 0;
};

/// Loads the sounds that are installed with the program. Main thread only.
class SoundPlayer {
public:
    virtual ~SoundPlayer() = default;

    /// The sound of the resource "Sounds/<name>.wav"; null when it is missing or no sound.
    [[nodiscard]] virtual std::unique_ptr<Sound> soundNamed(const QString& name) = 0;
};

} // namespace tavrin

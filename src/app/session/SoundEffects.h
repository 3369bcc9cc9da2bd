#pragma once

#include <QString>

#include <map>
#include <memory>

namespace tavrin {

class Sound;
class SoundPlayer;

/// The short sounds of a session: "start", "stop", "success", "error", "cancel".
/// Main thread only.
class SoundEffects {
public:
    /// @param player must outlive this object.
    explicit SoundEffects(SoundPlayer& player);
    ~SoundEffects();

    SoundEffects(const SoundEffects&) = delete;
    SoundEffects& operator=(const SoundEffects&) = delete;

    /// Plays the sound from its beginning; one that still plays starts again instead of sounding
    /// twice. A sound that is not installed plays nothing.
    void playSoundNamed(const QString& name);

private:
    /// The sound, loaded when it is first asked for and found; null when it is not installed.
    [[nodiscard]] Sound* soundCache(const QString& name);

    SoundPlayer& m_player;
    std::map<QString, std::unique_ptr<Sound>> m_sounds; ///< Those that were found.
};

} // namespace tavrin

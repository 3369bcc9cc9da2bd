#include "app/SoundEffects.h"

#include "platform/SoundPlayer.h"

#include <utility>

namespace tavrin {
namespace {

constexpr float volume = 0.55F;

} // namespace

SoundEffects::SoundEffects(SoundPlayer& player)
    : m_player(player)
{
}

SoundEffects::~SoundEffects() = default;

void SoundEffects::playSoundNamed(const QString& name)
{
    auto cached = m_soundCache.find(name);
    if (cached == m_soundCache.end()) {
        std::unique_ptr<Sound> loaded = m_player.soundNamed(name);
        if (!loaded)
            return;
        cached = m_soundCache.emplace(name, std::move(loaded)).first;
    }
    Sound& sound = *cached->second;
    sound.stop();
    sound.setCurrentTime(Seconds::zero());
    sound.setVolume(volume);
    sound.play();
}

} // namespace tavrin

#include "app/session/SoundEffects.h"

#include "platform/audio/SoundPlayer.h"

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
    Sound* const sound = soundCache(name);
    if (!sound)
        return;
    sound->stop();
    sound->setCurrentTime(Seconds::zero());
    sound->setVolume(volume);
    sound->play();
}

Sound* SoundEffects::soundCache(const QString& name)
{
    auto cached = m_sounds.find(name);
    if (cached == m_sounds.end()) {
        std::unique_ptr<Sound> loaded = m_player.soundNamed(name);
        if (!loaded)
            return nullptr;
        cached = m_sounds.emplace(name, std::move(loaded)).first;
    }
    return cached->second.get();
}

} // namespace tavrin

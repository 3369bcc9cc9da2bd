#include "app/session/SoundEffects.h"

#include "support/QtPrinters.h"
#include "support/sound/InMemorySoundPlayer.h"

#include <gtest/gtest.h>

namespace tavrin {
namespace {

class SoundEffectsTest : public ::testing::Test {
protected:
    testing::InMemorySoundPlayer player;
    SoundEffects sounds{player};
};

TEST_F(SoundEffectsTest, ASoundPlaysFromItsBeginningAtItsVolume)
{
    sounds.playSoundNamed("start");

    EXPECT_EQ(player.calls,
        QStringList(
            {"load start", "start: stop", "start: at 0", "start: volume 0.55", "start: play"}));
}

TEST_F(SoundEffectsTest, ARepeatStartsTheSameSoundAgainInsteadOfLoadingASecond)
{
    sounds.playSoundNamed("stop");
    player.calls.clear();

    sounds.playSoundNamed("stop");

    EXPECT_EQ(
        player.calls, QStringList({"stop: stop", "stop: at 0", "stop: volume 0.55", "stop: play"}));
}

TEST_F(SoundEffectsTest, EverySoundIsLoadedOnce)
{
    for (int round = 0; round < 2; ++round) {
        for (const char* name : {"start", "stop", "success", "error", "cancel"})
            sounds.playSoundNamed(name);
    }

    EXPECT_EQ(player.calls.filter("load "),
        QStringList({"load start", "load stop", "load success", "load error", "load cancel"}));
    EXPECT_EQ(player.played().size(), 10);
}

TEST_F(SoundEffectsTest, AMissingSoundPlaysNothingAndIsLookedForAgain)
{
    player.installed.clear();
    sounds.playSoundNamed("start");
    EXPECT_EQ(player.calls, QStringList({"load start"}));

    player.installed = {"start"};
    sounds.playSoundNamed("start");
    EXPECT_EQ(player.played(), QStringList({"start"}));
}

} // namespace
} // namespace tavrin

#pragma once

#include "platform/audio/AudioRecorder.h"
#include "support/QtPrinters.h"

#include <QFileInfo>
#include <QTemporaryDir>
#include <gtest/gtest.h>

/// What every implementation of AudioRecorder does. A Studio has `recorders` and lets them record:
/// `record(recorder, length)` returns when that much more has been recorded, `pass(length)` lets
/// time go by, `settle(recorder)` returns when what was under way has arrived.
namespace tavrin::testing {

template <class Studio>
class AudioRecorderContract : public ::testing::Test {
protected:
    static constexpr AudioRecorderSettings settings{1633772320, 16'000, 1, 96};

    QTemporaryDir folder;
    QString path = folder.filePath("recording.m4a");
    Studio studio;

    std::unique_ptr<AudioRecorder> create()
    {
        auto recorder = studio.recorders->createRecorder(path, settings);
        EXPECT_TRUE(recorder.has_value());
        return std::move(*recorder);
    }
};

TYPED_TEST_SUITE_P(AudioRecorderContract);

TYPED_TEST_P(AudioRecorderContract, ARecordingGrowsUntilItIsStopped)
{
    const auto recorder = this->create();

    EXPECT_TRUE(recorder->prepareToRecord());
    EXPECT_EQ(recorder->currentTime(), Seconds{0});
    EXPECT_TRUE(recorder->record());
    this->studio.record(*recorder, Seconds{0.3});
    EXPECT_GE(recorder->currentTime(), Seconds{0.3});

    recorder->stop();
    EXPECT_EQ(recorder->currentTime(), Seconds{0});
    EXPECT_EQ(recorder->failure(), Error{});
    EXPECT_TRUE(QFileInfo::exists(this->path));
    recorder->stop();
    EXPECT_FALSE(recorder->record());
    EXPECT_FALSE(recorder->prepareToRecord());
}

TYPED_TEST_P(AudioRecorderContract, RecordingPreparesByItself)
{
    const auto recorder = this->create();

    EXPECT_TRUE(recorder->record());
    this->studio.record(*recorder, Seconds{0.1});
}

TYPED_TEST_P(AudioRecorderContract, APauseIsNotCounted)
{
    const auto recorder = this->create();
    ASSERT_TRUE(recorder->record());
    this->studio.record(*recorder, Seconds{0.2});

    recorder->pause();
    this->studio.settle(*recorder);
    const Seconds atPause = recorder->currentTime();
    this->studio.pass(Seconds{0.3});
    EXPECT_EQ(recorder->currentTime(), atPause);

    EXPECT_TRUE(recorder->record());
    this->studio.record(*recorder, Seconds{0.2});
    EXPECT_GE(recorder->currentTime(), atPause + Seconds{0.2});
}

TYPED_TEST_P(AudioRecorderContract, LevelsAreWithinTheScaleAndOnlyOfKnownChannels)
{
    const auto recorder = this->create();
    ASSERT_TRUE(recorder->record());
    this->studio.record(*recorder, Seconds{0.2});

    recorder->updateMeters();
    EXPECT_EQ(recorder->averagePower(0), -160); // Metering is off.

    recorder->setMeteringEnabled(true);
    recorder->updateMeters();
    EXPECT_GE(recorder->averagePower(0), -160);
    EXPECT_LE(recorder->averagePower(0), 0);
    EXPECT_EQ(recorder->averagePower(1), -160);
    EXPECT_EQ(recorder->averagePower(-1), -160);
}

TYPED_TEST_P(AudioRecorderContract, ImpossiblePathsAndSettingsGetNoRecorder)
{
    AudioRecorderSettings noRate = this->settings;
    noRate.sampleRate = 0;
    AudioRecorderSettings noChannels = this->settings;
    noChannels.numberOfChannels = 0;

    EXPECT_FALSE(this->studio.recorders->createRecorder({}, this->settings));
    EXPECT_FALSE(this->studio.recorders->createRecorder(this->path, noRate));
    EXPECT_FALSE(this->studio.recorders->createRecorder(this->path, noChannels));
}

REGISTER_TYPED_TEST_SUITE_P(AudioRecorderContract, ARecordingGrowsUntilItIsStopped,
    RecordingPreparesByItself, APauseIsNotCounted, LevelsAreWithinTheScaleAndOnlyOfKnownChannels,
    ImpossiblePathsAndSettingsGetNoRecorder);

} // namespace tavrin::testing

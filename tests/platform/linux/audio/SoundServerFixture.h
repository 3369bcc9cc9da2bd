#pragma once

#include "platform/linux/audio/AudioDecoder.h"
#include "platform/linux/audio/PulseAudioDevices.h"
#include "platform/linux/audio/PulseAudioRecorder.h"
#include "support/QtPrinters.h"

#include <QElapsedTimer>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <functional>
#include <thread>

namespace tavrin::testing {

/// The product's microphones and recorders on a sound server of the test's own.
template <class Base>
class SoundServerFixture : public Base {
public:
    static constexpr AudioRecorderSettings settings{1633772320, 16'000, 1, 96};

    static bool waitUntil(const std::function<bool()>& condition)
    {
        const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(20);
        while (!condition() && std::chrono::steady_clock::now() < deadline)
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
        return condition();
    }

protected:
    /// Half a second for everything, and work for a busy machine. In milliseconds.
    static constexpr qint64 halfASecond = 500 + 200;

    QTemporaryDir folder;

    static void recordAWhile(AudioRecorder& recorder)
    {
        ASSERT_TRUE(recorder.prepareToRecord());
        ASSERT_TRUE(recorder.record());
        ASSERT_TRUE(waitUntil([&] { return recorder.currentTime() > Seconds{0.5}; }));
    }

    static qint64 millisecondsOf(const std::function<void()>& call)
    {
        QElapsedTimer timer;
        timer.start();
        call();
        return timer.elapsed();
    }

    /// Seconds of sound in a finished file.
    static double decodedSeconds(const QString& path)
    {
        auto decoder = AudioDecoder::open(path);
        EXPECT_TRUE(decoder);
        std::size_t samples = 0;
        if (!decoder)
            return 0;
        for (auto piece = decoder->read(); piece && !piece->empty(); piece = decoder->read())
            samples += piece->size();
        return static_cast<double>(samples) / AudioDecoder::sampleRate;
    }
};

} // namespace tavrin::testing

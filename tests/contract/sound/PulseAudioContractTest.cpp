#include "contract/sound/AudioDevicesContract.h"
#include "contract/sound/AudioRecorderContract.h"
#include "platform/linux/audio/PulseAudioDevices.h"
#include "platform/linux/audio/PulseAudioRecorder.h"

#include <thread>

using namespace std::chrono_literals;

namespace tavrin::testing {
namespace {

/// The sound server of the desktop that the test runs on.
struct PulseMachine {
    std::unique_ptr<PulseAudioDevices> devices =
        std::make_unique<PulseAudioDevices>(std::make_shared<PulseConnection>());
};

struct PulseStudio {
    std::unique_ptr<PulseAudioRecorders> recorders =
        std::make_unique<PulseAudioRecorders>(std::make_shared<PulseConnection>());

    static void record(const AudioRecorder& recorder, Seconds length)
    {
        const Seconds wanted = recorder.currentTime() + length;
        const auto deadline = std::chrono::steady_clock::now() + 10s;
        while (recorder.currentTime() < wanted && std::chrono::steady_clock::now() < deadline)
            std::this_thread::sleep_for(5ms);
        EXPECT_GE(recorder.currentTime(), wanted);
    }

    static void pass(Seconds length) { std::this_thread::sleep_for(length); }

    static void settle(const AudioRecorder& recorder)
    {
        Seconds before{-1};
        while (recorder.currentTime() != before) {
            before = recorder.currentTime();
            std::this_thread::sleep_for(300ms);
        }
    }
};

} // namespace

INSTANTIATE_TYPED_TEST_SUITE_P(Pulse, AudioDevicesContract, PulseMachine);
INSTANTIATE_TYPED_TEST_SUITE_P(Pulse, AudioRecorderContract, PulseStudio);

} // namespace tavrin::testing

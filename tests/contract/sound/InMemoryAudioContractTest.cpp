#include "contract/sound/AudioDevicesContract.h"
#include "contract/sound/AudioRecorderContract.h"
#include "support/ports/VirtualTime.h"
#include "support/sound/InMemoryAudioDevices.h"
#include "support/sound/InMemoryAudioRecorders.h"

namespace tavrin::testing {
namespace {

struct InMemoryMachine {
    std::unique_ptr<InMemoryAudioDevices> devices = std::make_unique<InMemoryAudioDevices>();

    InMemoryMachine()
    {
        devices->addMicrophone(1, "Built-in", "pci-built-in");
        devices->addMicrophone(2, "Headset", "usb-headset");
        devices->addLoudspeaker(3, "pci-speakers");
        devices->defaultInput = 1;
        devices->defaultOutput = 3;
    }
};

struct InMemoryStudio {
    VirtualTime time;
    std::unique_ptr<InMemoryAudioRecorders> recorders =
        std::make_unique<InMemoryAudioRecorders>(time);

    void record(const AudioRecorder&, Seconds length) { time.advance(length); }

    void pass(Seconds length) { time.advance(length); }

    void settle(const AudioRecorder&) { time.advance(Seconds{0.1}); } // As others need.
};

} // namespace

INSTANTIATE_TYPED_TEST_SUITE_P(InMemory, AudioDevicesContract, InMemoryMachine);
INSTANTIATE_TYPED_TEST_SUITE_P(InMemory, AudioRecorderContract, InMemoryStudio);

} // namespace tavrin::testing

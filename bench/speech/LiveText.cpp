#include "Figures.h"
#include "Sounds.h"
#include "platform/linux/speech/engine/EngineLiveRecognizer.h"
#include "speech/SpeechContextualTerms.h"

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <thread>
#include <vector>

using namespace std::chrono_literals;

namespace tavrin::bench {
namespace {

constexpr qint16 audible = 300; // The first sample beyond it is where the voice sets in.
constexpr std::size_t samplesPerBlock = 320; // 20 ms, as they come from the microphone.

class NoDevice final : public SpeechCapture { };

/// Speaks in real time until a text comes, and returns how long after the voice set in that was.
Seconds timeToFirstText(OwnRecognizer& own, const QStringList& terms, const QString& path)
{
    std::function<void(std::span<const qint16>)> microphone;
    EngineLiveRecognizer recognizer(
        own.thread(), [&](auto handler) -> Result<std::unique_ptr<SpeechCapture>> {
            microphone = handler;
            return std::make_unique<NoDevice>();
        });
    std::atomic<double> heardAt = 0;
    const auto task =
        recognizer.start({.shouldReportPartialResults = true, .contextualStrings = terms},
            [&](const Result<SpeechResult>&) {
                double never = 0;
                heardAt.compare_exchange_strong(never, now().count());
            });
    const std::vector<qint16> samples = samplesOf(path);
    const auto onset =
        static_cast<std::size_t>(std::find_if(samples.begin(), samples.end(), [](qint16 sample) {
            return std::abs(sample) > audible;
        }) - samples.begin());
    const Seconds begin = now();
    const auto timeOf = [&](std::size_t sample) {
        return begin + Seconds{static_cast<double>(sample) / speechSampleRate};
    };
    for (std::size_t i = 0; i + samplesPerBlock <= samples.size() && heardAt == 0;
         i += samplesPerBlock) {
        std::this_thread::sleep_for(timeOf(i + samplesPerBlock) - now());
        microphone(std::span(samples).subspan(i, samplesPerBlock));
    }
    for (int wait = 0; heardAt == 0 && wait < 100; ++wait)
        std::this_thread::sleep_for(10ms);
    return (heardAt == 0 ? now() : Seconds{heardAt.load()}) - timeOf(onset);
}

} // namespace

void printLiveText(OwnRecognizer& own, const QString& folder)
{
    std::vector<Seconds> times;
    for (const QString& sentence : sentences()) {
        const Spoken spoken = speak(sentence, voices().first(), folder);
        times.push_back(timeToFirstText(own, SpeechContextualTerms({}), spoken.decoded));
    }
    std::sort(times.begin(), times.end());
    const auto at = [&](double share) {
        return times[static_cast<std::size_t>(share * static_cast<double>(times.size() - 1))];
    };
    std::printf("\nLive text: first text after the voice sets in, %zu sentences.\n\n"
                "median %.0f ms, p95 %.0f ms, worst %.0f ms\n",
        times.size(), at(0.5).count() * 1e3, at(0.95).count() * 1e3, times.back().count() * 1e3);
}

} // namespace tavrin::bench

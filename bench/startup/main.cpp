// tavrin_bench_startup BARE PROGRAM RUNS IDLE_SECONDS
//
// Starts the two programs in turn, RUNS times each, and prints the medians side by side with the
// limits; then lets both stand idle. Ends with 1 when a limit is missed.

#include "Desktop.h"
#include "Process.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <span>
#include <string>
#include <thread>
#include <vector>

namespace bench {

namespace {

constexpr double mostTime = 1.3; ///< Times the bare program's.
constexpr double mostMemory = 15; ///< MB above the bare program's.
constexpr double mostWakeUps =
    0.1; ///< A second above the bare program's: none of our own, but for noise.
/// Before the program gets ready for its first session, a second after the start: what it then
/// holds is told apart.
constexpr auto settling = std::chrono::milliseconds(500);

/// What one start gave: milliseconds since the program was executed, and MB after it settled.
struct Start {
    double statusItem = 0;
    double window = 0;
    double ready = 0;
    double cpu = 0; ///< Used when both were shown; tells more than `ready` on a busy machine.
    double memory = 0;
};

struct Idle {
    double wakeUpsPerSecond = 0;
    double cpuMilliseconds = 0;
};

Start startOnce(Desktop& desktop, const std::string& path)
{
    const auto began = std::chrono::steady_clock::now();
    const auto since = [began](Moment moment) {
        return std::chrono::duration<double, std::milli>(moment - began).count();
    };
    const Process process(path);
    const Appearance appearance = desktop.awaitAppearance(process.pid());
    const double cpu = usedSince({}, process.threads()).cpuTime;
    std::this_thread::sleep_for(settling);
    return {since(appearance.statusItem), since(appearance.window),
        since(std::max(appearance.statusItem, appearance.window)), cpu, process.residentMemory()};
}

double median(std::span<const Start> starts, double Start::*figure)
{
    std::vector<double> values;
    for (const Start& start : starts)
        values.push_back(start.*figure);
    std::ranges::sort(values);
    const std::size_t middle = values.size() / 2;
    return values.size() % 2 == 1 ? values[middle] : (values[middle - 1] + values[middle]) / 2;
}

std::array<Idle, 2> standIdle(
    Desktop& desktop, const std::array<std::string, 2>& paths, int seconds)
{
    const Process bare(paths[0]);
    desktop.awaitAppearance(bare.pid());
    const Process program(paths[1]);
    desktop.awaitAppearance(program.pid());
    // What follows the start, the first notice for one, is no idling.
    std::this_thread::sleep_for(std::chrono::seconds(3));

    const std::array<const Process*, 2> processes{&bare, &program};
    std::array<std::map<std::string, ThreadUse>, 2> before;
    for (std::size_t i = 0; i < processes.size(); ++i)
        before[i] = processes[i]->threads();
    std::this_thread::sleep_for(std::chrono::seconds(seconds));
    std::array<Idle, 2> result;
    for (std::size_t i = 0; i < processes.size(); ++i) {
        const ThreadUse used = usedSince(before[i], processes[i]->threads());
        result[i] = {static_cast<double>(used.wakeUps) / seconds, used.cpuTime};
    }
    return result;
}

const char* verdict(bool kept)
{
    return kept ? "kept" : "MISSED";
}

bool printStarts(std::span<const Start> bare, std::span<const Start> program)
{
    std::printf("Medians of %zu starts each   %10s %10s\n", bare.size(), "bare Qt", "Tavrin");
    std::printf("  status item shown          %7.1f ms %7.1f ms\n",
        median(bare, &Start::statusItem), median(program, &Start::statusItem));
    std::printf("  window shown               %7.1f ms %7.1f ms\n", median(bare, &Start::window),
        median(program, &Start::window));
    const double bareReady = median(bare, &Start::ready);
    const double ready = median(program, &Start::ready);
    const bool fast = ready <= mostTime * bareReady;
    std::printf(
        "  both, from exec            %7.1f ms %7.1f ms   %5.2f x   (at most %.1f x)     %s\n",
        bareReady, ready, ready / bareReady, mostTime, verdict(fast));
    std::printf("  processor time until then  %7.1f ms %7.1f ms\n", median(bare, &Start::cpu),
        median(program, &Start::cpu));
    const double bareMemory = median(bare, &Start::memory);
    const double memory = median(program, &Start::memory);
    const bool small = memory <= bareMemory + mostMemory;
    std::printf(
        "  resident memory            %7.1f MB %7.1f MB   %+5.1f MB  (at most %+.0f MB)    %s\n",
        bareMemory, memory, memory - bareMemory, mostMemory, verdict(small));
    return fast && small;
}

bool printIdle(const std::array<Idle, 2>& idle, int seconds)
{
    const bool quiet = idle[1].wakeUpsPerSecond <= idle[0].wakeUpsPerSecond + mostWakeUps;
    std::printf("Idle for %d s\n", seconds);
    std::printf(
        "  wake-ups a second          %10.2f %10.2f   %+5.2f     (at most %+.1f)       %s\n",
        idle[0].wakeUpsPerSecond, idle[1].wakeUpsPerSecond,
        idle[1].wakeUpsPerSecond - idle[0].wakeUpsPerSecond, mostWakeUps, verdict(quiet));
    std::printf("  processor time             %7.1f ms %7.1f ms\n", idle[0].cpuMilliseconds,
        idle[1].cpuMilliseconds);
    return quiet;
}

/// Whether every limit was kept.
bool compare(const std::array<std::string, 2>& paths, int runs, int idleSeconds)
{
    Desktop desktop;
    // The first start of each reads its files from the disk: not counted.
    for (const auto& path : paths)
        startOnce(desktop, path);
    std::array<std::vector<Start>, 2> starts;
    for (int run = 0; run < runs; ++run) {
        // The two take turns at going first.
        for (const int turn : {run % 2, 1 - run % 2}) {
            const auto i = static_cast<std::size_t>(turn);
            starts[i].push_back(startOnce(desktop, paths[i]));
        }
    }
    const bool started = printStarts(starts[0], starts[1]);
    const bool idled = printIdle(standIdle(desktop, paths, idleSeconds), idleSeconds);
    return started && idled;
}

} // namespace

} // namespace bench

int main(int argc, char** argv)
try {
    const std::span<char*> arguments(argv, static_cast<std::size_t>(argc));
    const int runs = argc == 5 ? std::atoi(arguments[3]) : 0;
    const int idleSeconds = argc == 5 ? std::atoi(arguments[4]) : 0;
    if (runs < 1 || idleSeconds < 1) {
        std::fprintf(stderr, "usage: tavrin_bench_startup BARE PROGRAM RUNS IDLE_SECONDS\n");
        return 2;
    }
    return bench::compare({arguments[1], arguments[2]}, runs, idleSeconds) ? 0 : 1;

} catch (const std::exception& error) {
    std::fprintf(stderr, "tavrin_bench_startup: %s\n", error.what());
    return 1;
}

// tavrin_bench_history ROUNDS
//
// Measures the history at three sizes, ROUNDS times each in turn with its peers, and prints the
// medians in one table with the limits. Ends with 1 when a limit is missed.

#include "Peer.h"
#include "Stage.h"
#include "platform/preferences/PreferenceKeys.h"

#include <QCoreApplication>

#include <algorithm>
#include <array>
#include <cstdio>
#include <vector>

using namespace Qt::StringLiterals;

namespace bench {
namespace {

constexpr double mostRepeatedRead = 1; // In milliseconds.
constexpr double mostSave = 2; // Times the rewrite, at the largest size.
constexpr double mostBlocking = 50; // In milliseconds, the worst of all rounds.

using Times = std::vector<double>;

struct Figures {
    qint64 bytes = 0;
    Times parse, firstRead, repeatedRead, rewrite, save, saveCall, prune, pruneCall, blocking;
};

double median(Times times)
{
    std::ranges::sort(times);
    return times.at(times.size() / 2);
}

double worst(const Times& times)
{
    return *std::ranges::max_element(times);
}

template <class Work>
double timeOf(const Work& work)
{
    const double began = now();
    work();
    return now() - began;
}

void measureReads(Stage& stage, int records, Figures& figures)
{
    const QByteArray content = stage.content();
    figures.bytes = content.size();
    figures.parse.push_back(parse(content));
    const auto read = [&] {
        if (stage.store().historyRecords().size() != records)
            stop("a record is missing");
    };
    figures.firstRead.push_back(timeOf(read));
    figures.repeatedRead.push_back(timeOf(read));
}

void measureSave(Stage& stage, int index, Figures& figures)
{
    const qsizetype before = stage.store().historyRecords().size();
    const double began = now();
    stage.store().saveHistoryTranscript(result(index));
    figures.saveCall.push_back(now() - began);
    stage.awaitWritten();
    figures.save.push_back(now() - began);
    if (stage.store().historyRecords().size() != before + 1)
        stop("the record was not saved");
    figures.rewrite.push_back(rewrite(stage.folder() + u"/rewritten"_s, stage.content()));
}

void measureBlocking(Stage& stage, int index, Figures& figures)
{
    figures.blocking.push_back(
        stage.longestBlocking([&] { stage.store().saveHistoryTranscript(result(index)); }));
    // While a write is under way its records are shared: the next save has to copy the list.
    figures.blocking.push_back(stage.longestBlocking([&] {
        stage.store().saveHistoryTranscript(result(index));
        stage.store().saveHistoryTranscript(result(index + 1));
    }));
}

void measurePrune(Stage& stage, Figures& figures)
{
    const qsizetype before = stage.store().historyRecords().size();
    stage.preferences().setValue(tavrin::keys::historyRetention, u"7"_s);
    const double began = now();
    const qsizetype after = stage.store().historyRecords().size();
    figures.pruneCall.push_back(now() - began);
    stage.awaitWritten();
    figures.prune.push_back(now() - began);
    if (after == 0 || after >= before / 2)
        stop("the old records are still there");
    stage.preferences().remove(tavrin::keys::historyRetention);
}

Figures measure(int records, int rounds)
{
    Stage stage(records);
    Figures figures;
    for (int round = -1; round < rounds; ++round) {
        Figures warmUp; // The first round is not counted.
        Figures& counted = round < 0 ? warmUp : figures;
        stage.reset();
        measureReads(stage, records, counted);
        measureSave(stage, round + 1, counted);
        measureBlocking(stage, round + 1, counted);
        measurePrune(stage, counted);
        figures.bytes = counted.bytes;
    }
    return figures;
}

const char* verdict(bool kept)
{
    return kept ? "kept" : "MISSED";
}

} // namespace

int compare(int rounds)
{
    constexpr std::array sizes{1'000, 10'000, 100'000};
    std::vector<Figures> all;
    all.reserve(sizes.size());
    for (const int records : sizes)
        all.push_back(measure(records, rounds));

    std::printf("History, milliseconds, medians of %d rounds\n", rounds);
    const auto line = [&](const char* name, const auto& figure, const char* format) {
        std::printf("  %-34s", name);
        for (const Figures& figures : all)
            std::printf(format, figure(figures));
        std::printf("\n");
    };
    std::printf("  %-34s", "records");
    for (const int records : sizes)
        std::printf("%11d", records);
    std::printf("\n");
    constexpr const char* time = "%11.3f";
    line(
        "file, MB", [](const Figures& f) { return static_cast<double>(f.bytes) / 1e6; }, time);
    line(
        "plain parse (simdjson)", [](const Figures& f) { return median(f.parse); }, time);
    line(
        "first read", [](const Figures& f) { return median(f.firstRead); }, time);
    line(
        "repeated read", [](const Figures& f) { return median(f.repeatedRead); }, time);
    line(
        "atomic rewrite", [](const Figures& f) { return median(f.rewrite); }, time);
    line(
        "save, until the file stands", [](const Figures& f) { return median(f.save); }, time);
    line(
        "  of that in the call", [](const Figures& f) { return median(f.saveCall); }, time);
    line(
        "prune to 7 days, until it stands", [](const Figures& f) { return median(f.prune); }, time);
    line(
        "  of that in the call", [](const Figures& f) { return median(f.pruneCall); }, time);
    line(
        "longest stop of the main thread", [](const Figures& f) { return worst(f.blocking); },
        time);

    const Figures& largest = all.back();
    const double read = median(largest.repeatedRead);
    const double save = median(largest.save) / median(largest.rewrite);
    const double blocking = worst(largest.blocking);
    const bool readKept = read <= mostRepeatedRead;
    const bool saveKept = save <= mostSave;
    const bool blockingKept = blocking <= mostBlocking;
    std::printf("At %d records\n", sizes.back());
    std::printf("  repeated read                  %8.3f ms  (at most %.0f ms)   %s\n", read,
        mostRepeatedRead, verdict(readKept));
    std::printf("  save to atomic rewrite         %8.2f x   (at most %.0f x)    %s\n", save,
        mostSave, verdict(saveKept));
    std::printf("  longest stop of the main thread%8.1f ms  (at most %.0f ms)  %s\n", blocking,
        mostBlocking, verdict(blockingKept));
    return readKept && saveKept && blockingKept ? 0 : 1;
}

} // namespace bench

int main(int count, char** arguments)
{
    const QCoreApplication application(count, arguments);
    const int rounds = count == 2 ? QByteArray(arguments[1]).toInt() : 0;
    if (rounds < 1)
        bench::stop("usage: tavrin_bench_history ROUNDS");
    return bench::compare(rounds);
}

// tavrin_bench_ui
//
// Measures the main window and the watch for corrections, and prints the figures with their limits.
// Ends with 1 when a limit is missed.

#include "Corrections.h"
#include "history/HistoryStore.h"
#include "history/UsageFigures.h"
#include "platform/PreferenceKeys.h"
#include "ui/ProgramStage.h"
#include "ui/pages/HistoryList.h"

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLineEdit>
#include <QScrollBar>
#include <QShortcut>
#include <QTimeZone>

#include <algorithm>
#include <cstdio>
#include <vector>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using tavrin::SettingsPage;
using tavrin::testing::ProgramStage;

namespace bench {
namespace {

using Times = std::vector<double>;

bool allKept = true;

double quantile(Times times, double share)
{
    std::ranges::sort(times);
    return times.at(static_cast<std::size_t>(share * static_cast<double>(times.size() - 1)));
}

void report(const char* what, double value, const char* unit, double most)
{
    const bool kept = value <= most;
    allKept = allKept && kept;
    std::printf("  %-52s %8.2f %-3s (at most %g %s)  %s\n", what, value, unit, most, unit,
        kept ? "kept" : "MISSED");
}

template <class Work>
double timeOf(const Work& work)
{
    QElapsedTimer timer;
    timer.start();
    work();
    return static_cast<double>(timer.nsecsElapsed()) / 1e6;
}

double residentMegabytes()
{
    QFile file(u"/proc/self/statm"_s);
    if (!file.open(QIODevice::ReadOnly))
        return 0;
    constexpr double pageBytes = 4096;
    constexpr double megabyte = 1024 * 1024;
    return file.readAll().split(' ').value(1).toDouble() * pageBytes / megabyte;
}

/// A record every seven minutes back from now, one in a thousand of them with a word of its own.
void writeHistory(const ProgramStage& stage, int records)
{
    QJsonArray array;
    for (int i = 0; i < records; ++i) {
        const QString text =
            u"第%1次会议讨论了明年的预算，the budget of department %2 is to be decided later.%3"_s
                .arg(i)
                .arg(i % 37)
                .arg(i % 1000 == 999 ? u" Kowalczyk"_s : QString());
        array.append(QJsonObject{{u"id"_s, u"R-%1"_s.arg(i)},
            {u"timestamp"_s, stage.time.sinceEpoch().count() - i * 420.0},
            {u"transcript"_s, text.toLower()}, {u"finalText"_s, text}, {u"mode"_s, u"dictation"_s},
            {u"inputCharacters"_s, text.size()}, {u"audioSeconds"_s, 9.5},
            {u"processingSeconds"_s, 1.25}});
    }
    QDir().mkpath(stage.folder.path() + u"/Tavrin"_s);
    QFile file(stage.folder.path() + u"/Tavrin/TranscriptionHistory.json"_s);
    if (file.open(QIODevice::WriteOnly))
        file.write(QJsonDocument(array).toJson(QJsonDocument::Compact));
}

/// From the press until everything that it brought is painted.
double press(ProgramStage& stage, SettingsPage page)
{
    QAbstractButton* const button = stage.sidebarButton(page);
    return timeOf([&] {
        button->click();
        stage.background->drain();
        QApplication::sendPostedEvents();
        QApplication::processEvents();
        stage.window()->repaint();
    });
}

void measureSwitching()
{
    constexpr int rounds = 30;
    ProgramStage stage;
    writeHistory(stage, 10'000);
    stage.preferences->setValue(tavrin::keys::historyRetention, u"forever"_s);
    const double first = timeOf([&] {
        stage.launch();
        stage.window()->repaint();
    });
    Times all;
    for (int i = 0; i < rounds; ++i) {
        for (const SettingsPage page : tavrin::sidebarButtons) {
            const double took = press(stage, page);
            if (i > 0) // The pages are made then.
                all.push_back(took);
        }
    }
    std::printf("The window, with 10,000 records\n");
    std::printf("  %-52s %8.2f ms\n", "program put together, window built and painted", first);
    report("a press on the sidebar to the painted page, p95", quantile(all, 0.95), "ms", 50);
}

void measureHistory(int records)
{
    constexpr int rounds = 40;
    ProgramStage stage;
    writeHistory(stage, records);
    stage.preferences->setValue(tavrin::keys::historyRetention, u"forever"_s);
    stage.launch();
    const double before = residentMegabytes();
    Times opened;
    for (int i = 0; i < rounds; ++i) {
        opened.push_back(press(stage, SettingsPage::History));
        press(stage, SettingsPage::General);
    }
    std::printf("The history page, %d records\n", records);
    report("opened and painted, p95", quantile(opened, 0.95), "ms", 120);
    report("memory that the page took", residentMegabytes() - before, "MB", 60);

    press(stage, SettingsPage::History);
    auto* const list = stage.visibleChild<tavrin::ui::HistoryList>();
    Times frames;
    for (int i = 1; list && i <= 600; ++i) {
        frames.push_back(timeOf([&] {
            list->verticalScrollBar()->setValue(i * 48);
            QApplication::sendPostedEvents();
            stage.window()->repaint();
        }));
    }
    report("scrolled by half a row and painted, p95", quantile(frames, 0.95), "ms", 16.7);
}

void measureFind(int records)
{
    ProgramStage stage;
    writeHistory(stage, records);
    stage.preferences->setValue(tavrin::keys::historyRetention, u"forever"_s);
    stage.launch();
    press(stage, SettingsPage::History);
    for (QShortcut* const shortcut : stage.window()->findChildren<QShortcut*>()) {
        if (shortcut->key() == QKeySequence(QKeySequence::Find))
            Q_EMIT shortcut->activated();
    }
    const QString word = u"kowalczyk"_s;

    tavrin::HistoryStore::Ports ports{*stage.platform.preferences, *stage.platform.clock,
        *stage.platform.systemInfo, *stage.platform.backgroundQueue};
    tavrin::HistoryStore store(ports);
    const tavrin::HistoryRecords all = store.historyRecords();
    qsizetype matches = 0;
    const double scan = timeOf([&] {
        for (const tavrin::HistoryRecord& record : all) {
            const QJsonObject object = record.object();
            const bool found =
                object.value("transcript"_L1).toString().contains(word, Qt::CaseInsensitive)
                || object.value("finalText"_L1).toString().contains(word, Qt::CaseInsensitive);
            matches += found ? 1 : 0;
        }
    });
    auto* const field = stage.visibleChild<QLineEdit>(u"historySearchField"_s);
    if (!field || matches == 0) {
        std::fprintf(stderr, "bench/ui: there is nothing to look in\n");
        std::exit(EXIT_FAILURE);
    }
    const double firstScreen = timeOf([&] {
        field->setText(word);
        Q_EMIT field->textEdited(word);
        stage.time.advance(0s);
        QApplication::sendPostedEvents();
        stage.window()->repaint();
    });
    const double rest = timeOf([&] { stage.settle(3s); });
    std::printf("Looking for a word in %d records\n", records);
    report("first screen painted", firstScreen, "ms", 200);
    std::printf("  %-52s %8.2f ms\n", "plain scan of the same texts", scan);
    report("all of it, beside the plain scan", (firstScreen + rest) / scan, "x", 1.5);
}

void measureFigures(int records)
{
    constexpr int rounds = 15;
    ProgramStage stage;
    writeHistory(stage, records);
    stage.preferences->setValue(tavrin::keys::historyRetention, u"forever"_s);
    tavrin::HistoryStore::Ports ports{*stage.platform.preferences, *stage.platform.clock,
        *stage.platform.systemInfo, *stage.platform.backgroundQueue};
    tavrin::HistoryStore store(ports);
    const tavrin::HistoryRecords all = store.historyRecords();
    Times figures;
    Times sums;
    double sum = 0;
    for (int i = 0; i < rounds; ++i) {
        figures.push_back(timeOf([&] {
            sum += tavrin::usageFigures(all, stage.time.sinceEpoch(), QTimeZone::utc()).total > 0;
        }));
        sums.push_back(timeOf([&] {
            for (const tavrin::HistoryRecord& record : all)
                sum += record.timestamp();
        }));
    }
    std::printf("The figures of %d records\n", records);
    std::printf("  %-52s %8.2f ms%s\n", "a bare sum of their times", quantile(sums, 0.5),
        sum > 0 ? "" : "?");
    report("all figures", quantile(figures, 0.5), "ms", 30);
}

void reportCorrections()
{
    constexpr int rounds = 50;
    const CorrectionTimes times = measureCorrections(rounds);
    std::printf("The watch for corrections\n");
    std::printf("  %-52s %8.2f ms\n", "std::mismatch over a field of 2 MB, from both ends",
        quantile(times.mismatch, 0.5));
    report("a change in it followed", quantile(times.poll, 0.5), "ms", 3);
    report("candidates in 2,000 units", quantile(times.candidates, 0.5), "ms", 1);
}

} // namespace
} // namespace bench

int main(int argc, char** argv)
{
    const QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    bench::measureSwitching();
    bench::measureHistory(10'000);
    bench::measureHistory(100'000);
    bench::measureFind(100'000);
    bench::measureFigures(100'000);
    bench::reportCorrections();
    return bench::allKept ? EXIT_SUCCESS : EXIT_FAILURE;
}

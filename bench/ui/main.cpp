// tavrin_bench_ui
//
// Measures the main window and the watch for corrections, and prints the figures with their limits.
// Ends with 1 when a limit is missed.

#include "Corrections.h"
#include "history/HistoryStore.h"
#include "history/UsageFigures.h"
#include "platform/preferences/PreferenceKeys.h"
#include "ui/ProgramStage.h"
#include "ui/pages/HistoryList.h"
#include "ui/window/PageTransition.h"

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLineEdit>
#include <QProcess>
#include <QScrollBar>
#include <QShortcut>
#include <QTimeZone>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <utility>
#include <vector>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using tavrin::SettingsPage;
using tavrin::testing::ProgramStage;

namespace bench {
namespace {

using Times = std::vector<double>;

bool allKept = true;

/// With a history's path: what it costs in memory is printed, and nothing else measured.
const QString memoryOption = u"--memory"_s;

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

void require(bool holds, const char* what)
{
    if (holds)
        return;
    std::fprintf(stderr, "bench/ui: %s\n", what);
    std::exit(EXIT_FAILURE);
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

/// Stand in one record of a thousand.
constexpr std::array<QStringView, 4> rareWords{u"Kowalczyk", u"Übergänge", u"Ковальчук", u"评审"};

QString historyFile(const ProgramStage& stage)
{
    return stage.folder.path() + u"/Tavrin/TranscriptionHistory.json"_s;
}

/// A record every seven minutes back from now, in three scripts in turn.
void writeHistory(const ProgramStage& stage, int records)
{
    const QStringList sentences{
        u"第%1次会议讨论了明年的预算，the budget of department %2 is to be decided later."_s,
        u"Über das %1. Gespräch: die Mittel für Abteilung %2 würden erst später geprüft, hieß es."_s,
        u"На %1-й встрече говорили о бюджете отдела %2 на будущий год."_s};
    QJsonArray array;
    for (int i = 0; i < records; ++i) {
        QString text = sentences.at(i % sentences.size()).arg(i).arg(i % 37);
        if (i % 1000 == 999) {
            for (const QStringView word : rareWords)
                text += u' ' + word.toString();
        }
        array.append(
            QJsonObject{{u"id"_s, u"%1-51A3-4C00-9B2E-6F5532D8A1C7"_s.arg(i, 8, 10, QChar(u'0'))},
                {u"timestamp"_s, stage.time.sinceEpoch().count() - i * 420.0},
                {u"transcript"_s, text.toLower()}, {u"finalText"_s, text},
                {u"mode"_s, u"dictation"_s}, {u"inputCharacters"_s, text.size()},
                {u"audioSeconds"_s, 9.5}, {u"processingSeconds"_s, 1.25}});
    }
    QDir().mkpath(QFileInfo(historyFile(stage)).path());
    QFile file(historyFile(stage));
    if (file.open(QIODevice::WriteOnly))
        file.write(QJsonDocument(array).toJson(QJsonDocument::Compact));
}

/// The page that a window shows at first comes last.
QList<SettingsPage> pagesFromTheLast()
{
    QList<SettingsPage> pages(tavrin::sidebarButtons.begin(), tavrin::sidebarButtons.end());
    std::ranges::reverse(pages);
    return pages;
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

/// Every page again and again, with the animation by which it comes in.
void measureSwitching()
{
    constexpr int windows = 5;
    constexpr int rounds = 6;
    Times launches;
    Times first;
    Times all;
    for (int i = 0; i < windows; ++i) {
        ProgramStage stage;
        stage.workspace->reducedMotion = false;
        writeHistory(stage, 10'000);
        stage.preferences->setValue(tavrin::keys::historyRetention, u"forever"_s);
        launches.push_back(timeOf([&] {
            stage.launch();
            stage.window()->repaint();
        }));
        for (int round = 0; round < rounds; ++round) {
            for (const SettingsPage page : pagesFromTheLast()) {
                const double took = press(stage, page);
                auto* const transition = stage.visibleChild<tavrin::ui::PageTransition>();
                require(transition, "a page does not come in");
                transition->stop();
                all.push_back(took);
                if (round == 0) // The page is made then.
                    first.push_back(took);
            }
        }
    }
    std::printf("The window, with 10,000 records\n");
    std::printf("  %-52s %8.2f ms\n", "program put together, window built and painted",
        quantile(launches, 0.5));
    std::printf(
        "  %-52s %8.2f ms\n", "the first press for each page, median", quantile(first, 0.5));
    report("the first press for each page, p95", quantile(first, 0.95), "ms", 50);
    report("any press on the sidebar to the painted page, p95", quantile(all, 0.95), "ms", 50);
}

/// Of a program in which nothing was measured before.
double memoryOfHistory(const ProgramStage& stage)
{
    QProcess process;
    process.start(QCoreApplication::applicationFilePath(), {memoryOption, historyFile(stage)});
    require(process.waitForFinished(-1) && process.exitCode() == EXIT_SUCCESS,
        "the memory was not measured");
    return process.readAllStandardOutput().toDouble();
}

/// Prints by how many megabytes the program grows when the history at @p path is read and shown.
int printMemoryOfHistory(const QString& path)
{
    ProgramStage stage;
    stage.preferences->setValue(tavrin::keys::historyRetention, u"forever"_s);
    stage.launch();
    press(stage, SettingsPage::History);
    press(stage, SettingsPage::General);
    const double before = residentMegabytes();
    QDir().mkpath(QFileInfo(historyFile(stage)).path());
    QFile::remove(historyFile(stage)); // An empty one.
    require(QFile::copy(path, historyFile(stage)), "there is no history");
    press(stage, SettingsPage::History);
    stage.settle(1s);
    const auto* const list = stage.visibleChild<tavrin::ui::HistoryList>();
    require(list && list->verticalScrollBar()->maximum() > 0, "the history is not shown");
    std::printf("%f\n", residentMegabytes() - before);
    return EXIT_SUCCESS;
}

void measureHistory(int records)
{
    constexpr int rounds = 40;
    ProgramStage stage;
    writeHistory(stage, records);
    stage.preferences->setValue(tavrin::keys::historyRetention, u"forever"_s);
    stage.launch();
    Times opened;
    for (int i = 0; i < rounds; ++i) {
        opened.push_back(press(stage, SettingsPage::History));
        press(stage, SettingsPage::General);
    }
    constexpr double megabyte = 1024 * 1024;
    std::printf("The history page, %d records in %.1f MB\n", records,
        static_cast<double>(QFileInfo(historyFile(stage)).size()) / megabyte);
    report("opened and painted, p95", quantile(opened, 0.95), "ms", 120);
    report("memory that the history and its page took", memoryOfHistory(stage), "MB", 60);

    press(stage, SettingsPage::History);
    auto* const list = stage.visibleChild<tavrin::ui::HistoryList>();
    require(list, "there is no list to scroll");
    Times frames;
    for (int i = 1; i <= 600; ++i) {
        frames.push_back(timeOf([&] {
            list->verticalScrollBar()->setValue(i * 48);
            QApplication::sendPostedEvents();
            stage.window()->repaint();
        }));
    }
    report("scrolled by half a row and painted, p95", quantile(frames, 0.95), "ms", 16.7);
}

/// The texts of every record, as a scan without files would have them.
QList<std::pair<QString, QString>> readTexts(const ProgramStage& stage)
{
    tavrin::HistoryStore store({*stage.platform.preferences, *stage.platform.clock,
        *stage.platform.systemInfo, *stage.platform.backgroundQueue});
    QList<std::pair<QString, QString>> texts;
    for (const tavrin::HistoryRecord& record : store.historyRecords())
        texts.append({record.transcript(), record.finalText()});
    return texts;
}

struct FindTimes {
    double firstScreen = 0;
    double whole = 0;
};

/// Until the first hits are painted, and until every record was looked at.
FindTimes find(ProgramStage& stage, QLineEdit& field, const QString& word)
{
    FindTimes times;
    times.firstScreen = timeOf([&] {
        field.setText(word);
        Q_EMIT field.textEdited(word);
        stage.time.advance(0s);
        QApplication::sendPostedEvents();
        stage.window()->repaint();
    });
    times.whole = times.firstScreen + timeOf([&] { stage.settle(3s); });
    return times;
}

void measureFind(int records)
{
    constexpr int rounds = 7;
    ProgramStage stage;
    writeHistory(stage, records);
    stage.preferences->setValue(tavrin::keys::historyRetention, u"forever"_s);
    stage.launch();
    press(stage, SettingsPage::History);
    for (QShortcut* const shortcut : stage.window()->findChildren<QShortcut*>()) {
        if (shortcut->key() == QKeySequence(QKeySequence::Find))
            Q_EMIT shortcut->activated();
    }
    auto* const field = stage.visibleChild<QLineEdit>(u"historySearchField"_s);
    require(field, "there is no field to look in");
    const auto texts = readTexts(stage);
    std::printf(
        "Looking for a word in %d records, a plain scan of the same texts beside it\n", records);
    for (const QStringView rare : rareWords) {
        const QString word = rare.toString().toLower();
        Times scans;
        Times first;
        Times whole;
        for (int i = 0; i < rounds; ++i) {
            qsizetype matches = 0;
            scans.push_back(timeOf([&] {
                for (const auto& [transcript, finalText] : texts) {
                    matches += transcript.contains(word, Qt::CaseInsensitive)
                        || finalText.contains(word, Qt::CaseInsensitive);
                }
            }));
            require(matches == records / 1000, "a word is not where it was put");
            const FindTimes times = find(stage, *field, word);
            first.push_back(times.firstScreen);
            whole.push_back(times.whole);
            find(stage, *field, {});
        }
        const double scan = quantile(scans, 0.5);
        std::printf("  %-52s %8.2f ms\n", qPrintable(word + u": plain scan"_s), scan);
        report("first screen painted", quantile(first, 0.5), "ms", 200);
        report("all of it, beside the plain scan", quantile(whole, 0.5) / scan, "x", 1.5);
    }
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
    const QStringList arguments = QApplication::arguments();
    if (arguments.size() == 3 && arguments[1] == bench::memoryOption)
        return bench::printMemoryOfHistory(arguments[2]);
    bench::measureSwitching();
    bench::measureHistory(10'000);
    bench::measureHistory(100'000);
    bench::measureFind(100'000);
    bench::measureFigures(100'000);
    bench::reportCorrections();
    return bench::allKept ? EXIT_SUCCESS : EXIT_FAILURE;
}

// How soon a recorder hears, and what it costs: the product's beside parecord and ffmpeg, on the
// virtual desktop, into the same format where they can (parecord writes plain samples).
//
//   . DIR/env && tavrin-bench-audio              # prints two tables; fails when we are worse
//   tavrin-bench-audio --record FILE             # what is measured: records until it is told to
//   end

#include "Alignment.h"
#include "Reference.h"
#include "audio/RecordingFile.h"
#include "platform/linux/audio/AudioDecoder.h"
#include "platform/linux/audio/PulseAudioRecorder.h"

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <thread>
#include <unistd.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace bench {
namespace {

constexpr int rounds = 9;
constexpr int seconds = 30; // Of the CPU measurement.
constexpr int rate = tavrin::PcmCapture::sampleRate;

/// One of the recorders: how it is started and ended.
struct Recorder {
    const char* name;
    QString program;
    QStringList arguments; ///< %1 is the file.
    QString suffix;
};

QList<Recorder> recorders(const QString& self)
{
    return {{"Tavrin", self, {u"--record"_s, u"%1"_s}, u".m4a"_s},
        {"parecord", u"parecord"_s,
            {u"--rate=16000"_s, u"--channels=1"_s, u"--format=s16le"_s, u"--file-format=wav"_s,
                u"%1"_s},
            u".wav"_s},
        {"ffmpeg", u"ffmpeg"_s,
            {u"-loglevel"_s, u"quiet"_s, u"-y"_s, u"-f"_s, u"pulse"_s, u"-sample_rate"_s,
                u"16000"_s, u"-channels"_s, u"1"_s, u"-i"_s, u"default"_s, u"-c:a"_s, u"aac"_s,
                u"-b:a"_s, u"48k"_s, u"%1"_s},
            u".m4a"_s}};
}

/// Records until standard input ends; prints when it was asked to prepare and to record.
int record(const QString& path)
{
    static_cast<void>(std::signal(SIGINT, SIG_IGN)); // It is what ends the others.
    const auto connection = std::make_shared<tavrin::PulseConnection>();
    tavrin::PulseAudioRecorders all(connection);
    auto recorder = all.createRecorder(path, tavrin::recordingSettings);
    if (!recorder)
        return 1;
    const double prepared = now();
    if (!(*recorder)->prepareToRecord())
        return 1;
    const double began = now();
    if (!(*recorder)->record())
        return 1;
    std::printf("%.6f %.6f\n", prepared, began);
    static_cast<void>(std::fflush(stdout));
    char byte = 0;
    while (read(STDIN_FILENO, &byte, 1) > 0) { }
    (*recorder)->stop();
    return 0;
}

class Running {
public:
    Running(const Recorder& recorder, const QString& path)
        : m_started(now())
    {
        QStringList arguments;
        for (const QString& argument : recorder.arguments)
            arguments.append(argument == u"%1" ? path : argument);
        m_process.start(recorder.program, arguments);
        m_process.waitForStarted();
    }

    ~Running() { end(); }

    Running(const Running&) = delete;
    Running& operator=(const Running&) = delete;

    void end()
    {
        if (m_process.state() == QProcess::NotRunning)
            return;
        m_process.closeWriteChannel(); // Ours ends by it,
        ::kill(static_cast<pid_t>(m_process.processId()), SIGINT); // the others by this.
        m_process.waitForFinished();
    }

    [[nodiscard]] double started() const { return m_started; }

    QByteArray output()
    {
        m_process.waitForReadyRead(1);
        return m_process.readAllStandardOutput();
    }

    /// CPU seconds so far.
    [[nodiscard]] double cpu() const
    {
        QFile stat(u"/proc/%1/stat"_s.arg(m_process.processId()));
        if (!stat.open(QIODevice::ReadOnly))
            return 0;
        const QByteArray line = stat.readAll();
        const QList<QByteArray> fields = line.mid(line.lastIndexOf(')') + 2).split(' ');
        const double ticks = fields.value(11).toDouble() + fields.value(12).toDouble();
        return ticks / static_cast<double>(sysconf(_SC_CLK_TCK));
    }

private:
    double m_started;
    QProcess m_process;
};

std::vector<qint16> decode(const QString& path)
{
    std::vector<qint16> all;
    auto decoder = tavrin::AudioDecoder::open(path);
    if (!decoder)
        return all;
    for (auto piece = decoder->read(); piece && !piece->empty(); piece = decoder->read())
        all.insert(all.end(), piece->begin(), piece->end());
    return all;
}

/// Noise in the microphone, the same nowhere twice, as long as it lives.
class Noise {
public:
    Noise()
    {
        m_source.setStandardOutputProcess(&m_player);
        // Low enough that an encoder keeps it as it is, and does not put noise of its own there.
        m_source.start(u"sox"_s,
            u"-q -n -t raw -r 16000 -c 1 -e signed -b 16 - synth 3600 pinknoise lowpass 3000 highpass 100"_s
                .split(u' '));
        m_player.start(u"pacat"_s,
            u"--device=micfeed --rate=16000 --channels=1 --format=s16le --latency-msec=100"_s.split(
                u' '));
        m_source.waitForStarted();
        m_player.waitForStarted();
    }

    ~Noise()
    {
        for (QProcess* process : {&m_player, &m_source}) {
            process->kill();
            process->waitForFinished();
        }
    }

    Noise(const Noise&) = delete;
    Noise& operator=(const Noise&) = delete;

private:
    QProcess m_source;
    QProcess m_player;
};

double median(std::vector<double> values)
{
    if (values.empty())
        return -1;
    std::ranges::sort(values);
    return values[values.size() / 2];
}

struct Delays {
    std::vector<double> sinceStart; ///< Of the program.
    std::vector<double> sincePrepare; ///< Of ours.
    std::vector<double> sinceRecord;
};

/// One recording: when its first sample was heard, in milliseconds after each call.
bool measureOnce(
    const Recorder& recorder, const Reference& reference, const QString& path, Delays& delays)
{
    Running running(recorder, path);
    std::this_thread::sleep_for(2600ms); // On PipeWire parecord gets nothing before two seconds.
    const QList<QByteArray> calls = running.output().trimmed().split(' ');
    running.end();
    const Reference::Heard heard = reference.heard();
    // Only around the start: the rest would cost time.
    const auto from =
        static_cast<std::size_t>(std::max(0.0, (running.started() - heard.since - 0.2) * rate));
    const auto length = std::min<std::size_t>(heard.samples.size() - from, std::size_t{3} * rate);
    const auto place =
        positionIn(std::span(heard.samples).subspan(from, length), decode(path), rate / 10);
    if (!place)
        return false;
    const double first =
        heard.since + (static_cast<double>(from) + static_cast<double>(*place)) / rate;
    delays.sinceStart.push_back((first - running.started()) * 1000);
    if (calls.size() == 2) {
        delays.sincePrepare.push_back((first - calls[0].toDouble()) * 1000);
        delays.sinceRecord.push_back((first - calls[1].toDouble()) * 1000);
    }
    return true;
}

bool compareDelays(const QList<Recorder>& all, const Reference& reference, const QString& folder)
{
    std::printf("\nFirst sample in the file, milliseconds, median of %d\n", rounds);
    std::printf("  %-10s %15s %15s %15s\n", "", "program start", "prepareToRecord", "record");
    std::vector<Delays> delays(static_cast<std::size_t>(all.size()));
    for (int round = 0; round < rounds; ++round) {
        for (std::size_t i = 0; i < delays.size(); ++i) {
            const Recorder& recorder = all[static_cast<qsizetype>(i)];
            if (!measureOnce(
                    recorder, reference, folder + u"/delay"_s + recorder.suffix, delays[i]))
                std::printf("  %s: a recording that the reference did not hear\n", recorder.name);
        }
    }
    for (std::size_t i = 0; i < delays.size(); ++i) {
        std::printf(
            "  %-10s %15.0f", all[static_cast<qsizetype>(i)].name, median(delays[i].sinceStart));
        if (!delays[i].sinceRecord.empty())
            std::printf(
                " %15.0f %15.0f", median(delays[i].sincePrepare), median(delays[i].sinceRecord));
        std::printf("\n");
    }
    // Ours runs already when it is called; the others are called by being started.
    const double ours = median(delays[0].sincePrepare);
    return !delays[0].sincePrepare.empty() && ours <= median(delays[1].sinceStart)
        && ours <= median(delays[2].sinceStart);
}

bool compareCpu(const QList<Recorder>& all, const QString& folder)
{
    std::printf("\nCPU per recorded minute, seconds (all at once, %d s)\n", seconds);
    std::vector<std::unique_ptr<Running>> running;
    for (const Recorder& recorder : all)
        running.push_back(std::make_unique<Running>(
            recorder, folder + u"/cpu-"_s + QLatin1StringView(recorder.name) + recorder.suffix));
    std::this_thread::sleep_for(2s); // Starting up is not recording.
    std::vector<double> spent;
    spent.reserve(running.size());
    for (const auto& each : running)
        spent.push_back(-each->cpu());
    std::this_thread::sleep_for(std::chrono::seconds(seconds));
    for (std::size_t i = 0; i < running.size(); ++i) {
        spent[i] = (spent[i] + running[i]->cpu()) * 60 / seconds;
        running[i]->end();
        std::printf("  %-10s %15.2f%s\n", all[static_cast<qsizetype>(i)].name, spent[i],
            i == 1 ? "   (does not encode)" : "");
    }
    return spent[0] <= spent[2]; // ffmpeg is the one that does the same work.
}

int compare(const QString& self)
{
    const Noise noise;
    const Reference reference;
    if (!reference.isListening()) {
        std::fprintf(stderr, "no microphone: start scripts/virtual-desktop and read its env\n");
        return 2;
    }
    std::this_thread::sleep_for(3s); // Until the noise is there and the devices run.
    const QTemporaryDir folder;
    const QList<Recorder> all = recorders(self);
    const bool soon = compareDelays(all, reference, folder.path());
    const bool cheap = compareCpu(all, folder.path());
    std::printf("\n%s, %s\n", soon ? "not later than either" : "LATER THAN ANOTHER",
        cheap ? "not dearer than the one that encodes" : "DEARER THAN THE ONE THAT ENCODES");
    return soon && cheap ? 0 : 1;
}

} // namespace
} // namespace bench

int main(int count, char** arguments)
{
    if (count == 3 && QByteArrayView(arguments[1]) == "--record")
        return bench::record(QFile::decodeName(arguments[2]));
    return bench::compare(QFile::decodeName(arguments[0]));
}

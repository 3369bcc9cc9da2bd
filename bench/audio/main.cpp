// How soon a recorder hears, and what it costs: the product's beside ffmpeg and parecord, on the
// virtual desktop, into the same format. parecord alone writes plain samples, so it is shown with
// an encoder behind it too.
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

constexpr int rounds = 7;
constexpr double resolution = 5; // Milliseconds: the virtual device hands out blocks of 20.
constexpr int seconds = 30; // Of the CPU measurement.
constexpr int rate = tavrin::PcmCapture::sampleRate;

/// One of the recorders: the programs it consists of, each with its arguments; what the first
/// prints the second reads.
struct Recorder {
    const char* name;
    QList<QStringList> programs; ///< %1 is the file.
    QString suffix;
    bool encodes = true;
};

QStringList words(const QString& command)
{
    return command.split(u' ');
}

/// Ours is the first.
QList<Recorder> recorders(const QString& self)
{
    const QStringList encoder = words(u"-c:a aac -b:a 48k %1"_s);
    const QStringList quiet = words(u"ffmpeg -loglevel quiet -y"_s);
    return {
        {"Tavrin", {{self, u"--record"_s, u"%1"_s}}, u".m4a"_s},
        {"ffmpeg",
            {quiet + words(u"-f pulse -sample_rate 16000 -channels 1 -i default"_s) + encoder},
            u".m4a"_s},
        {"parecord | ffmpeg",
            // Handing on as soon as ours: of its own accord it keeps two seconds back on PipeWire.
            {words(u"parecord --latency-msec=20 --raw --rate=16000 --channels=1 --format=s16le"_s),
                quiet + words(u"-f s16le -ar 16000 -ac 1 -i -"_s) + encoder},
            u".m4a"_s},
        {"parecord",
            {words(u"parecord --rate=16000 --channels=1 --format=s16le --file-format=wav %1"_s)},
            u".wav"_s, false},
    };
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
    tavrin::AudioDecoder::warmUp(); // As the program does when it has started.
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
        for (qsizetype i = 0; i < recorder.programs.size(); ++i)
            m_processes.push_back(std::make_unique<QProcess>());
        for (std::size_t i = 0; i < m_processes.size(); ++i) {
            QStringList arguments = recorder.programs[static_cast<qsizetype>(i)];
            arguments.replaceInStrings(u"%1"_s, path);
            const QString program = arguments.takeFirst();
            if (i + 1 < m_processes.size())
                m_processes[i]->setStandardOutputProcess(m_processes[i + 1].get());
            m_processes[i]->start(program, arguments);
        }
        for (const auto& process : m_processes)
            process->waitForStarted();
    }

    ~Running() { end(); }

    Running(const Running&) = delete;
    Running& operator=(const Running&) = delete;

    void end()
    {
        QProcess& first = *m_processes.front();
        if (first.state() == QProcess::NotRunning)
            return;
        first.closeWriteChannel(); // Ours ends by it,
        ::kill(static_cast<pid_t>(first.processId()), SIGINT); // the others by this.
        for (const auto& process : m_processes)
            process->waitForFinished();
    }

    [[nodiscard]] double started() const { return m_started; }

    QByteArray output()
    {
        m_processes.back()->waitForReadyRead(1);
        return m_processes.back()->readAllStandardOutput();
    }

    /// CPU seconds so far.
    [[nodiscard]] double cpu() const
    {
        double sum = 0;
        for (const auto& process : m_processes)
            sum += cpuOf(process->processId());
        return sum;
    }

private:
    static double cpuOf(qint64 id)
    {
        QFile stat(u"/proc/%1/stat"_s.arg(id));
        if (!stat.open(QIODevice::ReadOnly))
            return 0;
        const QByteArray line = stat.readAll();
        const QList<QByteArray> fields = line.mid(line.lastIndexOf(')') + 2).split(' ');
        const double ticks = fields.value(11).toDouble() + fields.value(12).toDouble();
        return ticks / static_cast<double>(sysconf(_SC_CLK_TCK));
    }

    double m_started;
    std::vector<std::unique_ptr<QProcess>> m_processes;
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
    std::this_thread::sleep_for(3s); // On PipeWire parecord gets nothing before two seconds.
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

void print(const Recorder& recorder, const Delays& delays)
{
    std::printf("  %-17s %15.0f", recorder.name, median(delays.sinceStart));
    if (!delays.sinceRecord.empty())
        std::printf(" %15.0f %15.0f", median(delays.sincePrepare), median(delays.sinceRecord));
    std::printf("\n");
}

bool compareDelays(const QList<Recorder>& all, const Reference& reference, const QString& folder)
{
    std::printf("\nFirst sample in the file, milliseconds after, median of %d\n", rounds);
    std::printf("  %-17s %15s %15s %15s\n", "", "program start", "prepareToRecord", "record");
    std::vector<Delays> delays(static_cast<std::size_t>(all.size()));
    for (int round = 0; round < rounds; ++round) {
        for (std::size_t i = 0; i < delays.size(); ++i) {
            const Recorder& recorder = all[static_cast<qsizetype>(i)];
            const QString path = folder + u"/delay"_s + recorder.suffix;
            bool heard = measureOnce(recorder, reference, path, delays[i]);
            // On a busy machine samples get lost between the server and one of the two.
            if (!heard)
                heard = measureOnce(recorder, reference, path, delays[i]);
            if (!heard)
                std::printf("  %s: a recording that the reference did not hear\n", recorder.name);
        }
    }
    for (std::size_t i = 0; i < delays.size(); ++i)
        print(all[static_cast<qsizetype>(i)], delays[i]);
    // Ours runs already when it is called; the others are called by being started.
    const Delays& ours = delays.front();
    return !ours.sinceRecord.empty()
        && std::all_of(delays.begin() + 1, delays.end(), [&](const Delays& other) {
               return median(ours.sinceRecord) <= median(other.sinceStart) + resolution;
           });
}

bool compareCpu(const QList<Recorder>& all, const QString& folder)
{
    std::printf("\nCPU per recorded minute, seconds (all at once, %d s)\n", seconds);
    std::vector<std::unique_ptr<Running>> running;
    for (const Recorder& recorder : all)
        running.push_back(std::make_unique<Running>(
            recorder, folder + u"/cpu-%1"_s.arg(running.size()) + recorder.suffix));
    std::this_thread::sleep_for(2s); // Starting up is not recording.
    std::vector<double> spent;
    spent.reserve(running.size());
    for (const auto& each : running)
        spent.push_back(-each->cpu());
    std::this_thread::sleep_for(std::chrono::seconds(seconds));
    bool isCheapest = true;
    for (std::size_t i = 0; i < running.size(); ++i) {
        const Recorder& recorder = all[static_cast<qsizetype>(i)];
        spent[i] = (spent[i] + running[i]->cpu()) * 60 / seconds;
        running[i]->end();
        std::printf("  %-17s %15.2f%s\n", recorder.name, spent[i],
            recorder.encodes ? "" : "   (plain samples, not encoded)");
        isCheapest = isCheapest && (!recorder.encodes || spent[0] <= spent[i]);
    }
    return isCheapest;
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
    std::printf("\n%s, %s\n", soon ? "not later than any" : "LATER THAN ANOTHER",
        cheap ? "not dearer than those that encode" : "DEARER THAN ANOTHER THAT ENCODES");
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

#include "Figures.h"
#include "Sounds.h"
#include "WordErrors.h"
#include "platform/linux/audio/AacFile.h"
#include "speech/SpeechContextualTerms.h"

#include <QDir>
#include <QFile>

#include <cstdio>

using namespace Qt::StringLiterals;

namespace tavrin::bench {
namespace {

constexpr qsizetype pause = AacFile::sampleRate * 2 / 5; // Samples between two sentences.
constexpr int highQuality = 96;

/// The sentences once, and each of them as it is understood alone.
struct Passage {
    QStringList said;
    QStringList understoodAlone;
    std::vector<qint16> samples;
};

Passage readAloud(OwnRecognizer& own, const QString& folder)
{
    Passage passage;
    for (const QString& sentence : sentences()) {
        const Spoken spoken = speak(sentence, voices().first(), folder);
        passage.said += comparedWords(sentence);
        passage.understoodAlone +=
            comparedWords(own.recognize(spoken.recording, SpeechContextualTerms({})).text);
        const std::vector<qint16> samples = samplesOf(spoken.decoded);
        passage.samples.insert(passage.samples.end(), samples.begin(), samples.end());
        passage.samples.resize(passage.samples.size() + pause);
    }
    return passage;
}

bool write(const QString& path, std::span<const qint16> passage, int times)
{
    const auto file = AacFile::create(path, highQuality);
    for (int i = 0; file && i < times; ++i) {
        if ((*file)->add(passage) != Error{})
            return false;
    }
    return file.has_value();
}

/// From here on peakMegabytes() answers for what comes.
void forgetPeak()
{
    QFile file(u"/proc/self/clear_refs"_s);
    if (file.open(QIODevice::WriteOnly))
        file.write("5");
}

double peakMegabytes()
{
    QFile file(u"/proc/self/status"_s);
    if (!file.open(QIODevice::ReadOnly))
        return 0;
    for (const QByteArray& line : file.readAll().split('\n')) {
        if (line.startsWith("VmHWM:"))
            return line.mid(6).trimmed().split(' ').value(0).toDouble() / 1024;
    }
    return 0;
}

double percent(qsizetype part, qsizetype whole)
{
    return 100.0 * static_cast<double>(part) / static_cast<double>(whole);
}

void printRow(OwnRecognizer& own, const Passage& passage, int times, const QString& path)
{
    if (!write(path, passage.samples, times)) {
        std::printf("the recording could not be written\n");
        return;
    }
    QStringList said;
    QStringList alone;
    for (int i = 0; i < times; ++i) {
        said += passage.said;
        alone += passage.understoodAlone;
    }
    const double seconds =
        static_cast<double>(passage.samples.size()) * times / AacFile::sampleRate;
    forgetPeak();
    const Understood understood = own.recognize(path, SpeechContextualTerms({}));
    const double peak = peakMegabytes();
    const QStringList words = comparedWords(understood.text);
    std::printf("%7.1f %7lld %10lld %8.1f %10.1f %8.1f %11.3f %9.0f\n", seconds / 60,
        static_cast<long long>(said.size()), static_cast<long long>(words.size()),
        percent(wordErrors(said, words), said.size()),
        percent(wordErrors(said, alone), said.size()), understood.cost.wall.count(),
        understood.cost.wall.count() / seconds, peak);
}

} // namespace

void printLongRecordings(OwnRecognizer& own, const QString& folder)
{
    std::printf(
        "\nLong recordings: the sentences with short pauses, over and over, in one voice. The "
        "same words\nas when every sentence is a recording of its own, and no more memory "
        "the longer it is.\n\n%7s %7s %10s %8s %10s %8s %11s %9s\n",
        "minutes", "words", "understood", "WER %", "one by one", "wall s", "x real time",
        "peak MB");
    const Passage passage = readAloud(own, folder);
    const QString path = QDir(folder).filePath(u"long.m4a"_s);
    for (const int times : {1, 6})
        printRow(own, passage, times, path);
}

} // namespace tavrin::bench

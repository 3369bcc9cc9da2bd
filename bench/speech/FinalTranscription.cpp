#include "Figures.h"
#include "Sounds.h"
#include "WordErrors.h"
#include "platform/linux/speech/servers/WavFile.h"
#include "speech/SpeechContextualTerms.h"

#include <QDir>
#include <QFile>

#include <algorithm>
#include <cstdio>
#include <vector>

using namespace Qt::StringLiterals;

namespace tavrin::bench {
namespace {

struct Sum {
    qsizetype words = 0;
    int errors = 0;
    Cost cost;

    void add(const QString& said, const Understood& understood)
    {
        const QStringList saidWords = comparedWords(said);
        words += saidWords.size();
        errors += wordErrors(saidWords, comparedWords(understood.text));
        cost.wall += understood.cost.wall;
        cost.processor += understood.cost.processor;
    }

    void add(const Sum& other)
    {
        words += other.words;
        errors += other.errors;
        cost.wall += other.cost.wall;
        cost.processor += other.cost.processor;
    }

    [[nodiscard]] double percent() const
    {
        return 100.0 * errors / static_cast<double>(std::max<qsizetype>(words, 1));
    }
};

/// A recording of nothing: what the peer needs for it is its start.
QString noSound(const QString& folder)
{
    QString path = QDir(folder).filePath(u"nothing.wav"_s);
    QFile file(path);
    if (file.open(QIODevice::WriteOnly))
        file.write(wavFile(std::vector<qint16>(160)));
    return path;
}

struct Row {
    Sum own;
    Sum peer;
    Sum peersStarts;

    void add(const Row& other)
    {
        own.add(other.own);
        peer.add(other.peer);
        peersStarts.add(other.peersStarts);
    }
};

void print(const char* name, const Row& row)
{
    const Seconds wall = row.peer.cost.wall - row.peersStarts.cost.wall;
    const Seconds processor = row.peer.cost.processor - row.peersStarts.cost.processor;
    std::printf("%-6s %7.1f %7.1f %9.2f %9.2f %7.2f %9.2f %9.2f %7.2f\n", name, row.own.percent(),
        row.peer.percent(), row.own.cost.wall.count(), wall.count(), row.own.cost.wall / wall,
        row.own.cost.processor.count(), processor.count(), row.own.cost.processor / processor);
}

} // namespace

void printFinalTranscription(OwnRecognizer& own, const QString& folder)
{
    const QStringList terms = SpeechContextualTerms({});
    const QString nothing = noSound(folder);
    std::printf(
        "Final transcription of %lld sentences in three voices, beside "
        "pocketsphinx_continuous -infile.\nThe peer's times are without its start, measured "
        "after every sentence; ours loads once, in %.0f ms.\n\n",
        static_cast<long long>(sentences().size()), own.loadingTime().count() * 1e3);
    std::printf("%-6s %7s %7s %9s %9s %7s %9s %9s %7s\n", "voice", "WER %", "peer %", "wall s",
        "peer s", "ratio", "CPU s", "peer s", "ratio");
    Row all;
    for (const QString& voice : voices()) {
        Row row;
        for (const QString& sentence : sentences()) {
            const Spoken spoken = speak(sentence, voice, folder);
            row.own.add(sentence, own.recognize(spoken.recording, terms));
            row.peer.add(sentence, recognizeWithPeer(spoken.decoded));
            row.peersStarts.add({}, recognizeWithPeer(nothing));
        }
        print(qPrintable(voice), row);
        all.add(row);
    }
    print("all", all);
}

} // namespace tavrin::bench

#include "Figures.h"
#include "Sounds.h"
#include "WordErrors.h"
#include "platform/linux/speech/WavFile.h"
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

/// What the peer needs for no sound at all: the mean of five starts.
Cost peersStart(const QString& folder)
{
    const QString path = QDir(folder).filePath(u"nothing.wav"_s);
    QFile file(path);
    if (file.open(QIODevice::WriteOnly))
        file.write(wavFile(std::vector<qint16>(160)));
    file.close();
    constexpr int runs = 5;
    Sum starts;
    for (int run = 0; run < runs; ++run)
        starts.add({}, recognizeWithPeer(path));
    return {starts.cost.wall / runs, starts.cost.processor / runs};
}

void printRow(const char* name, const Sum& own, const Sum& peer, const Cost& start, qsizetype runs)
{
    const auto count = static_cast<double>(runs);
    const Seconds wall = peer.cost.wall - start.wall * count;
    const Seconds processor = peer.cost.processor - start.processor * count;
    std::printf("%-6s %7.1f %7.1f %9.2f %9.2f %7.2f %9.2f %9.2f %7.2f\n", name, own.percent(),
        peer.percent(), own.cost.wall.count(), wall.count(), own.cost.wall / wall,
        own.cost.processor.count(), processor.count(), own.cost.processor / processor);
}

} // namespace

void printFinalTranscription(OwnRecognizer& own, const QString& folder)
{
    const QStringList terms = SpeechContextualTerms({});
    const Cost start = peersStart(folder);
    std::printf("Final transcription of %lld sentences in three voices, beside "
                "pocketsphinx_continuous -infile.\nThe peer's figures are without its start, which "
                "takes %.0f ms (%.0f ms of processor time);\nours loads once, in %.0f ms.\n\n",
        static_cast<long long>(sentences().size()), start.wall.count() * 1e3,
        start.processor.count() * 1e3, own.loadingTime().count() * 1e3);
    std::printf("%-6s %7s %7s %9s %9s %7s %9s %9s %7s\n", "voice", "WER %", "peer %", "wall s",
        "peer s", "ratio", "CPU s", "peer s", "ratio");
    Sum ownTotal;
    Sum peerTotal;
    for (const QString& voice : voices()) {
        Sum ownSum;
        Sum peerSum;
        for (const QString& sentence : sentences()) {
            const Spoken spoken = speak(sentence, voice, folder);
            ownSum.add(sentence, own.recognize(spoken.recording, terms));
            peerSum.add(sentence, recognizeWithPeer(spoken.decoded));
        }
        printRow(qPrintable(voice), ownSum, peerSum, start, sentences().size());
        ownTotal.add(ownSum);
        peerTotal.add(peerSum);
    }
    printRow("all", ownTotal, peerTotal, start, sentences().size() * voices().size());
}

} // namespace tavrin::bench

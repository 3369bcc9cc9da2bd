#include "Sounds.h"

#include "platform/linux/audio/AudioDecoder.h"
#include "platform/linux/speech/servers/WavFile.h"

#include <QDir>
#include <QFile>
#include <QProcess>

#include <cstdio>
#include <cstdlib>

using namespace Qt::StringLiterals;

namespace tavrin::bench {
namespace {

[[noreturn]] void fail(const QString& what)
{
    std::fprintf(stderr, "%s\n", qPrintable(what));
    std::exit(1); // NOLINT(concurrency-mt-unsafe): one thread runs here.
}

} // namespace

QStringList voices()
{
    return {u"rms"_s, u"slt"_s, u"awb"_s};
}

QStringList sentences()
{
    return {
        u"the meeting starts at nine o'clock tomorrow morning"_s,
        u"please send me the report before the end of the week"_s,
        u"i will call you back when i get home"_s,
        u"we need to talk about the budget for next year"_s,
        u"the train was late again because of the snow"_s,
        u"can you check whether the door is locked"_s,
        u"my sister is coming to visit us in the summer"_s,
        u"there is a small mistake in the second paragraph"_s,
        u"he left his keys on the kitchen table"_s,
        u"the new version should be ready by friday"_s,
        u"thank you very much for your help yesterday"_s,
        u"let us move the appointment to wednesday afternoon"_s,
        u"the children are playing in the garden behind the house"_s,
        u"i have not read that book but i heard it is good"_s,
        u"remember to water the plants while we are away"_s,
        u"the hotel is close to the station and not expensive"_s,
        u"she asked me a question that i could not answer"_s,
        u"we should test everything again before we begin"_s,
        u"the doctor told him to drink more water"_s,
        u"turn left at the church and follow the river"_s,
        u"it is going to rain so take an umbrella with you"_s,
        u"the price of bread has gone up since last month"_s,
        u"nobody knew how to open the old window"_s,
        u"please write a short letter to the customer"_s,
        u"our teacher explained the problem one more time"_s,
        u"the computer was slow so i started it again"_s,
        u"they are building a bridge over the valley"_s,
        u"what time does the library close on saturday"_s,
        u"i would like a cup of tea without sugar"_s,
        u"the music was so loud that we could not talk"_s,
    };
}

QString outputOf(const QString& program, const QStringList& arguments)
{
    QProcess process;
    process.start(program, arguments);
    if (!process.waitForFinished(600'000) || process.exitCode() != 0)
        fail(program + u" failed: "_s + QString::fromUtf8(process.readAllStandardError()));
    return QString::fromUtf8(process.readAllStandardOutput());
}

Spoken speak(const QString& text, const QString& voice, const QString& folder)
{
    static int number = 0;
    const QString name = QDir(folder).filePath(QString::number(++number));
    Spoken spoken{text, name + u".m4a"_s, name + u".decoded.wav"_s};
    const QString voiced = name + u".wav"_s;
    outputOf(u"flite"_s, {u"-voice"_s, voice, u"-t"_s, text, u"-o"_s, voiced});
    outputOf(u"ffmpeg"_s,
        {u"-v"_s, u"error"_s, u"-i"_s, voiced, u"-ac"_s, u"1"_s, u"-ar"_s, u"16000"_s, u"-c:a"_s,
            u"aac"_s, spoken.recording});
    QFile decoded(spoken.decoded);
    if (!decoded.open(QIODevice::WriteOnly))
        fail(spoken.decoded);
    decoded.write(wavFile(samplesOf(spoken.recording)));
    return spoken;
}

std::vector<qint16> samplesOf(const QString& path)
{
    auto decoder = AudioDecoder::open(path);
    std::vector<qint16> samples;
    while (decoder) {
        const auto piece = decoder->read();
        if (!piece)
            fail(piece.error().message);
        if (piece->empty())
            return samples;
        samples.insert(samples.end(), piece->begin(), piece->end());
    }
    fail(decoder.error().message);
}

} // namespace tavrin::bench

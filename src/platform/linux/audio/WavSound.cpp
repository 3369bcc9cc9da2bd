#include "platform/linux/audio/WavSound.h"

#include <QtEndian>

#include <algorithm>

namespace tavrin {
namespace {

constexpr qsizetype chunkHeader = 8;

template <class Number>
Number numberAt(const QByteArray& bytes, qsizetype position)
{
    return qFromLittleEndian<Number>(bytes.constData() + position);
}

bool readFormat(const QByteArray& chunk, PcmSound& sound)
{
    constexpr qsizetype shortest = 16;
    constexpr quint16 pcm = 1;
    if (chunk.size() < shortest || numberAt<quint16>(chunk, 0) != pcm
        || numberAt<quint16>(chunk, 14) != 16)
        return false;
    sound.channels = numberAt<quint16>(chunk, 2);
    const auto rate = numberAt<quint32>(chunk, 4);
    sound.sampleRate = static_cast<int>(std::min<quint32>(rate, 1'000'000));
    return sound.channels >= 1 && sound.channels <= 8 && rate >= 1000 && rate <= 384'000;
}

void readSamples(const QByteArray& chunk, PcmSound& sound)
{
    const qsizetype count = chunk.size() / 2;
    sound.samples.resize(static_cast<std::size_t>(count));
    for (qsizetype i = 0; i < count; ++i)
        sound.samples[static_cast<std::size_t>(i)] = numberAt<qint16>(chunk, 2 * i);
}

} // namespace

std::optional<PcmSound> parseWav(const QByteArray& file)
{
    if (!file.startsWith("RIFF") || file.mid(8, 4) != "WAVE")
        return {};
    PcmSound sound;
    bool formatKnown = false;
    qsizetype position = 12;
    while (position + chunkHeader <= file.size()) {
        const QByteArray name = file.mid(position, 4);
        const qint64 size = numberAt<quint32>(file, position + 4);
        position += chunkHeader;
        if (size > file.size() - position)
            return {};
        const QByteArray chunk = file.mid(position, size);
        if (name == "fmt ")
            formatKnown = readFormat(chunk, sound);
        if (name == "data") {
            if (!formatKnown)
                return {};
            readSamples(chunk, sound);
            return sound;
        }
        position += size + size % 2; // Chunks start at even places.
    }
    return {};
}

} // namespace tavrin

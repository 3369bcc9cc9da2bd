#include "platform/linux/audio/WavSound.h"

#include <QtEndian>
#include <gtest/gtest.h>

namespace tavrin::testing {
namespace {

template <class Number>
QByteArray little(Number number)
{
    QByteArray bytes(sizeof(Number), '\0');
    qToLittleEndian(number, bytes.data());
    return bytes;
}

QByteArray chunk(const QByteArray& name, const QByteArray& body)
{
    QByteArray bytes = name + little(static_cast<quint32>(body.size())) + body;
    if (body.size() % 2 == 1)
        bytes += '\0';
    return bytes;
}

QByteArray format(quint16 kind, quint16 channels, quint32 rate, quint16 bits)
{
    return chunk("fmt ",
        little(kind) + little(channels) + little(rate) + little(quint32{0}) + little(quint16{0})
            + little(bits));
}

QByteArray wav(const QByteArray& chunks)
{
    return "RIFF" + little(static_cast<quint32>(chunks.size() + 4)) + "WAVE" + chunks;
}

const QByteArray samples = chunk("data", little(qint16{1}) + little(qint16{-32768}));

TEST(WavSoundTest, ReadsSamplesWhateverElseTheFileHolds)
{
    const auto sound = parseWav(
        wav(chunk("LIST", "odd") + format(1, 2, 48000, 16) + chunk("fact", "1234") + samples));
    ASSERT_TRUE(sound);
    EXPECT_EQ(sound->sampleRate, 48000);
    EXPECT_EQ(sound->channels, 2);
    EXPECT_EQ(sound->samples, (std::vector<qint16>{1, -32768}));
}

TEST(WavSoundTest, RefusesWhatItCannotPlay)
{
    EXPECT_FALSE(parseWav({}));
    EXPECT_FALSE(parseWav("RIFF"));
    EXPECT_FALSE(parseWav(wav({})));
    EXPECT_FALSE(parseWav(wav(samples))) << "no format";
    EXPECT_FALSE(parseWav(wav(format(3, 1, 48000, 32) + samples))) << "floating point";
    EXPECT_FALSE(parseWav(wav(format(1, 0, 48000, 16) + samples))) << "no channel";
    EXPECT_FALSE(parseWav(wav(format(1, 1, 0, 16) + samples))) << "no rate";
    EXPECT_FALSE(parseWav(wav(format(1, 1, 48000, 8) + samples))) << "8 bits";
}

TEST(WavSoundTest, AFileCutOffAnywhereIsRefused)
{
    const QByteArray whole = wav(format(1, 1, 48000, 16) + samples);
    ASSERT_TRUE(parseWav(whole));
    for (qsizetype size = 0; size < whole.size(); ++size)
        EXPECT_FALSE(parseWav(whole.first(size))) << size;
}

} // namespace
} // namespace tavrin::testing

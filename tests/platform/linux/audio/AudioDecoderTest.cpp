#include "platform/linux/audio/AudioDecoder.h"

#include "support/QtPrinters.h"
#include "support/sound/Sounds.h"

#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <sys/stat.h>

using namespace std::chrono_literals;

namespace tavrin {
namespace {

class AudioDecoderTest : public ::testing::Test {
protected:
    QTemporaryDir folder;

    QString written(const QByteArray& content, const QString& name = "sound.m4a") const
    {
        QString path = folder.filePath(name);
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content);
        return path;
    }

    /// Everything in the file; checks that it comes in pieces.
    static Result<std::vector<qint16>> decode(const QString& path)
    {
        auto decoder = AudioDecoder::open(path);
        if (!decoder)
            return failure(decoder.error());
        std::vector<qint16> all;
        while (true) {
            const auto piece = decoder->read();
            if (!piece)
                return failure(piece.error());
            if (piece->empty())
                return all;
            EXPECT_LE(piece->size(), 100'000U);
            all.insert(all.end(), piece->begin(), piece->end());
        }
    }

    static int errorCode(const QString& path)
    {
        const auto decoded = decode(path);
        if (decoded)
            return 0;
        EXPECT_EQ(decoded.error().domain, "TavrinAudio");
        EXPECT_FALSE(decoded.error().message.isEmpty());
        return decoded.error().code;
    }
};

TEST_F(AudioDecoderTest, TheLibrariesCanBeLoadedBeforeTheyAreNeeded)
{
    EXPECT_TRUE(AudioDecoder::warmUp());

    QFile loaded("/proc/self/maps");
    ASSERT_TRUE(loaded.open(QIODevice::ReadOnly));
    EXPECT_TRUE(loaded.readAll().contains("libavformat"));
}

TEST_F(AudioDecoderTest, SoundOfTheTargetFormatComesOutAsItIs)
{
    const std::vector<qint16> samples = testing::tone(1.5);

    const auto decoded = decode(written(testing::wavFile(samples)));

    ASSERT_TRUE(decoded);
    EXPECT_EQ(*decoded, samples);
}

TEST_F(AudioDecoderTest, OtherRatesAndChannelsAreConverted)
{
    const auto stereo = testing::tone(2, 0.5, 44'100, 2);

    const auto decoded = decode(written(testing::wavFile(stereo, 44'100, 2)));

    ASSERT_TRUE(decoded);
    EXPECT_NEAR(static_cast<double>(decoded->size()), 32'000, 2);
    EXPECT_NEAR(testing::decibels(*decoded), -9.03, 0.2); // Half amplitude, sine.
}

TEST_F(AudioDecoderTest, ReadingOnAfterTheEndGivesNothing)
{
    auto decoder = AudioDecoder::open(written(testing::wavFile(testing::tone(0.1))));
    ASSERT_TRUE(decoder);
    while (!decoder->read()->empty()) { }

    EXPECT_TRUE(decoder->read()->empty());
}

TEST_F(AudioDecoderTest, SoundWithoutSamplesIsNoError)
{
    const auto decoded = decode(written(testing::wavFile({})));

    ASSERT_TRUE(decoded);
    EXPECT_TRUE(decoded->empty());
}

TEST_F(AudioDecoderTest, AFileThatBreaksOffGivesWhatIsThere)
{
    const auto samples = testing::tone(1);
    const QByteArray whole = testing::wavFile(samples);

    const auto decoded = decode(written(whole.chopped(16'000)));

    ASSERT_TRUE(decoded);
    EXPECT_EQ(decoded->size(), 8'000U);
    EXPECT_TRUE(std::ranges::equal(*decoded, std::span(samples).first(8'000)));
}

TEST_F(AudioDecoderTest, WhatIsNotAFileCannotBeOpened)
{
    const QString pipe = folder.filePath("pipe");
    ASSERT_EQ(mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);

    for (const QString& path : {QString(), folder.filePath("missing.m4a"), folder.path(), pipe,
             QStringLiteral("/dev/zero"), QStringLiteral("http://127.0.0.1/sound.m4a")})
        EXPECT_EQ(errorCode(path), AudioDecoder::CannotOpen) << path.toStdString();
}

TEST_F(AudioDecoderTest, AnEmptyFileIsNamedEmpty)
{
    EXPECT_EQ(errorCode(written({})), AudioDecoder::Empty);
}

TEST_F(AudioDecoderTest, WhatHoldsNoSoundIsNamedDamaged)
{
    const QByteArray wav = testing::wavFile(testing::tone(0.1));
    const QByteArray ftypOnly("\0\0\0\x1c"
                              "ftypM4A \0\0\x02\0M4A isomiso2",
        28);

    for (const QByteArray& content :
        {QByteArray("x"), QByteArray(100'000, '\0'), QByteArray("hello there\n").repeated(1000),
            wav.first(20), ftypOnly, ftypOnly + QByteArray("\xff\xff\xff\xffmdat", 8),
            ftypOnly + QByteArray("\x7f\xff\xff\xffmoov\x7f\xff\xff\xf0trak", 16)})
        EXPECT_EQ(errorCode(written(content)), AudioDecoder::Damaged)
            << content.left(40).toHex().constData();
}

TEST_F(AudioDecoderTest, APlaylistCannotReachOtherFiles)
{
    const QString secret = written(testing::wavFile(testing::tone(0.5)), "secret.wav");
    const QByteArray playlist = "#EXTM3U\n#EXT-X-TARGETDURATION:10\n#EXTINF:10,\nfile://"
        + QFile::encodeName(secret) + "\n#EXT-X-ENDLIST\n";
    const QByteArray list = "ffconcat version 1.0\nfile '" + QFile::encodeName(secret) + "'\n";

    EXPECT_EQ(errorCode(written(playlist, "list.m3u8")), AudioDecoder::Damaged);
    EXPECT_EQ(errorCode(written(list, "list.ffconcat")), AudioDecoder::Damaged);
}

TEST_F(AudioDecoderTest, ImpossibleFormatsAreRefused)
{
    const auto samples = testing::tone(0.1);

    EXPECT_EQ(errorCode(written(testing::wavFile(samples, 1, 1))), AudioDecoder::Damaged);
    EXPECT_EQ(
        errorCode(written(testing::wavFile(samples, 2'000'000'000, 1))), AudioDecoder::Damaged);
    EXPECT_EQ(errorCode(written(testing::wavFile(samples, 16'000, 60'000))), AudioDecoder::Damaged);
}

TEST_F(AudioDecoderTest, NoiseInAnyPlaceIsSurvived)
{
    std::mt19937 random(7); // The same noise in every run.
    const QByteArray whole = testing::wavFile(testing::tone(0.2), 16'000, 1);
    for (int round = 0; round < 60; ++round) {
        QByteArray damaged = whole;
        for (int i = 0; i < 8; ++i)
            damaged[static_cast<qsizetype>(random() % 60)] = static_cast<char>(random());

        const auto decoded = decode(written(damaged));

        EXPECT_TRUE(decoded.has_value() || !decoded.error().message.isEmpty());
    }
}

TEST_F(AudioDecoderTest, SoundLongerThanAllowedIsRefusedAtTheLimit)
{
    const QString path = written(testing::wavFile(testing::tone(3)));
    EXPECT_TRUE(AudioDecoder::open(path, 3s)->read());

    auto decoder = AudioDecoder::open(path, 2s);
    ASSERT_TRUE(decoder);
    auto piece = decoder->read();
    std::size_t count = 0;
    for (; piece && !piece->empty(); piece = decoder->read())
        count += piece->size();

    ASSERT_FALSE(piece);
    EXPECT_EQ(piece.error().code, AudioDecoder::TooLong);
    EXPECT_LE(count, 32'000U);
}

} // namespace
} // namespace tavrin

#include "platform/linux/audio/AacFile.h"

#include "platform/linux/audio/AudioDecoder.h"
#include "support/FullDisk.h"
#include "support/QtPrinters.h"
#include "support/sound/Sounds.h"

#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <random>

namespace tavrin {
namespace {

constexpr int highQuality = 96;

class AacFileTest : public ::testing::Test {
protected:
    QTemporaryDir folder;
    QString path = folder.filePath("recording.m4a");

    std::unique_ptr<AacFile> create(int quality = highQuality) const
    {
        auto file = AacFile::create(path, quality);
        EXPECT_TRUE(file);
        return std::move(*file);
    }

    void write(std::span<const qint16> samples) const
    {
        const auto file = create();
        EXPECT_EQ(file->add(samples), Error{});
    }

    Result<std::vector<qint16>> decode() const
    {
        auto decoder = AudioDecoder::open(path);
        if (!decoder)
            return failure(decoder.error());
        std::vector<qint16> all;
        for (auto piece = decoder->read(); piece && !piece->empty(); piece = decoder->read())
            all.insert(all.end(), piece->begin(), piece->end());
        return all;
    }
};

TEST_F(AacFileTest, WhatGoesInComesOutToTheSample)
{
    // Lengths around whole frames of 1024 samples.
    for (const std::size_t length : {1U, 1023U, 1024U, 1025U, 16'000U, 33'333U}) {
        auto samples = testing::tone(3);
        samples.resize(length);

        write(samples);

        const auto decoded = decode();
        ASSERT_TRUE(decoded) << length;
        EXPECT_EQ(decoded->size(), length);
    }
}

TEST_F(AacFileTest, LevelsAreKept)
{
    for (const double amplitude : {0.9, 0.1, 0.01}) {
        const auto samples = testing::tone(2, amplitude);

        write(samples);

        EXPECT_NEAR(testing::decibels(*decode()), testing::decibels(samples), 0.5);
    }
}

TEST_F(AacFileTest, BlocksOfAnySizeMakeOneRecording)
{
    const auto samples = testing::tone(1);
    {
        const auto file = create();
        std::mt19937 random(3);
        for (std::span<const qint16> rest = samples; !rest.empty();) {
            const auto count = std::min<std::size_t>(random() % 3'000, rest.size());
            EXPECT_EQ(file->add(rest.first(count)), Error{});
            rest = rest.subspan(count);
        }
    }
    const auto inBlocks = decode();

    write(samples);

    EXPECT_EQ(*inBlocks, *decode());
}

TEST_F(AacFileTest, ARecordingWithoutSoundIsAFileWithoutSound)
{
    create()->finish();

    const auto decoded = decode();
    EXPECT_TRUE(!decoded || decoded->empty());
    EXPECT_GT(QFileInfo(path).size(), 0);
}

TEST_F(AacFileTest, FinishingTwiceIsFinishingOnce)
{
    const auto file = create();
    file->add(testing::tone(0.5));
    file->finish();
    const qint64 size = QFileInfo(path).size();

    file->finish();

    EXPECT_EQ(decode()->size(), 8'000U);
    EXPECT_EQ(QFileInfo(path).size(), size);
}

TEST_F(AacFileTest, BetterQualityTakesMoreSpace)
{
    const auto sizeOf = [&](int quality) {
        std::vector<qint16> noise(32'000);
        std::mt19937 random(5);
        for (qint16& sample : noise)
            sample = static_cast<qint16>(random() % 20'000);
        create(quality)->add(noise);
        return QFileInfo(path).size();
    };

    const qint64 low = sizeOf(0);
    const qint64 medium = sizeOf(64);
    const qint64 high = sizeOf(highQuality);

    EXPECT_LT(low, medium);
    EXPECT_LT(medium, high);
}

TEST_F(AacFileTest, WhenTheDiskIsFullEverythingBeforeIsUsable)
{
    const auto minute = testing::tone(60);
    std::size_t accepted = 0;
    Error error;
    {
        const auto file = create();
        const testing::FullDisk full(200'000);
        for (std::span<const qint16> rest = minute; !rest.empty() && error == Error{};) {
            const auto block = rest.first(std::min<std::size_t>(320, rest.size()));
            error = file->add(block);
            if (error == Error{})
                accepted += block.size();
            rest = rest.subspan(block.size());
        }
        EXPECT_EQ(file->add(minute), error); // Nothing more is taken.
        file->finish();
    }

    EXPECT_EQ(error.code, AacFile::DiskFull);
    EXPECT_FALSE(error.message.isEmpty());
    const auto decoded = decode();
    ASSERT_TRUE(decoded);
    EXPECT_GT(accepted, 16'000U * 5);
    // At most the frames that were still in the encoder are missing.
    EXPECT_NEAR(static_cast<double>(decoded->size()), static_cast<double>(accepted), 3 * 1024);
    EXPECT_LE(QFileInfo(path).size(), 200'000);
}

TEST_F(AacFileTest, ADiskThatIsFullFromTheStartIsNamed)
{
    const testing::FullDisk full(1'000);

    const auto file = AacFile::create(path, highQuality);

    ASSERT_FALSE(file);
    EXPECT_EQ(file.error().code, AacFile::CannotCreate);
}

TEST_F(AacFileTest, AFileThatBreaksOffAnywhereGivesAnErrorOrLessSound)
{
    write(testing::tone(2));
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QByteArray whole = file.readAll();
    file.close();

    for (qsizetype length = 0; length < whole.size(); length += whole.size() / 40) {
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(whole.first(length));
        file.close();

        const auto decoded = decode();

        EXPECT_TRUE(!decoded || decoded->size() <= 32'000U) << length;
    }
}

TEST_F(AacFileTest, DamageAnywhereIsSurvived)
{
    write(testing::tone(1));
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QByteArray whole = file.readAll();
    file.close();
    std::mt19937 random(11);

    for (int round = 0; round < 60; ++round) {
        QByteArray damaged = whole;
        for (int i = 0; i < 20; ++i)
            damaged[static_cast<qsizetype>(random() % static_cast<unsigned>(whole.size()))] =
                static_cast<char>(random());
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(damaged);
        file.close();

        const auto decoded = decode();

        EXPECT_TRUE(decoded.has_value() || !decoded.error().message.isEmpty());
    }
}

} // namespace
} // namespace tavrin

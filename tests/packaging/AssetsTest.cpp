#include "support/QtPrinters.h"

#include <QFile>
#include <QImageReader>
#include <QtEndian>
#include <gmock/gmock.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <string>
#include <vector>

namespace {

using ::testing::AllOf;
using ::testing::Ge;
using ::testing::Le;

class IconTest : public ::testing::TestWithParam<int> { };

TEST_P(IconTest, IsASquareOfTheSizeInItsName)
{
    QImageReader reader(QStringLiteral(":/TavrinIcon-%1.png").arg(GetParam()));
    const QImage icon = reader.read();
    EXPECT_EQ(icon.size(), QSize(GetParam(), GetParam())) << reader.errorString().toStdString();
    EXPECT_TRUE(icon.hasAlphaChannel());
    EXPECT_EQ(qAlpha(icon.pixel(0, 0)), 0) << "the corners are round";
    EXPECT_EQ(qAlpha(icon.pixel(GetParam() / 2, GetParam() / 2)), 255);
}

INSTANTIATE_TEST_SUITE_P(Sizes, IconTest, ::testing::Values(22, 32, 48, 128, 256, 1024));

/// The samples of a mono file of 16 bits, and how long they last.
struct Recording {
    std::vector<int> samples;
    double seconds = 0;
};

Recording readRecording(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    const QByteArray bytes = file.readAll();
    constexpr qsizetype headerSize = 44;
    if (!bytes.startsWith("RIFF") || bytes.mid(8, 8) != "WAVEfmt " || bytes.size() <= headerSize)
        return {};
    const auto rate = qFromLittleEndian<quint32>(bytes.constData() + 24);
    Recording recording;
    for (qsizetype at = headerSize; at + 1 < bytes.size(); at += 2)
        recording.samples.push_back(qFromLittleEndian<qint16>(bytes.constData() + at));
    recording.seconds = static_cast<double>(recording.samples.size()) / rate;
    return recording;
}

class SoundTest : public ::testing::TestWithParam<const char*> {
protected:
    Recording m_recording =
        readRecording(QStringLiteral(":/Sounds/%1.wav").arg(QLatin1String(GetParam())));
};

TEST_P(SoundTest, IsShort)
{
    EXPECT_THAT(m_recording.seconds, AllOf(Ge(0.1), Le(0.6)));
}

TEST_P(SoundTest, PeaksTwelveDecibelsBelowFullScale)
{
    int peak = 0;
    for (const int sample : m_recording.samples)
        peak = std::max(peak, std::abs(sample));
    EXPECT_NEAR(20 * std::log10(peak / 32767.0), -12, 0.5);
}

TEST_P(SoundTest, BeginsAndEndsInSilence)
{
    ASSERT_FALSE(m_recording.samples.empty());
    constexpr int inaudible = 8;
    EXPECT_LE(std::abs(m_recording.samples.front()), inaudible);
    EXPECT_LE(std::abs(m_recording.samples.back()), inaudible);
}

INSTANTIATE_TEST_SUITE_P(Names, SoundTest,
    ::testing::Values("start", "stop", "success", "error", "cancel"),
    [](const auto& instance) { return std::string(instance.param); });

} // namespace

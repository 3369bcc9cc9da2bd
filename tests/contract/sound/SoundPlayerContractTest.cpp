#include "contract/Subject.h"
#include "platform/linux/audio/PulseSoundPlayer.h"
#include "support/ChildProcess.h"
#include "support/sound/InMemorySoundPlayer.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QtEndian>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <thread>

namespace tavrin::testing {
namespace {

using namespace std::chrono_literals;

/// A player with one sound, "start", of 0.2 s.
class SoundSubject {
public:
    virtual ~SoundSubject() = default;
    [[nodiscard]] virtual SoundPlayer& player() = 0;
};

class InMemorySubject final : public SoundSubject {
public:
    InMemorySubject() { m_player.installed = {QStringLiteral("start")}; }

    [[nodiscard]] SoundPlayer& player() override { return m_player; }

private:
    InMemorySoundPlayer m_player;
};

template <class Number>
QByteArray little(Number number)
{
    QByteArray bytes(sizeof(Number), '\0');
    qToLittleEndian(number, bytes.data());
    return bytes;
}

class PulseSubject final : public SoundSubject {
public:
    PulseSubject()
    {
        const quint32 size = 9600 * 2;
        write(QStringLiteral("start.wav"),
            "RIFF" + little(quint32{size + 36}) + "WAVEfmt " + little(quint32{16})
                + little(quint16{1}) + little(quint16{1}) + little(quint32{48000})
                + little(quint32{96000}) + little(quint16{2}) + little(quint16{16}) + "data"
                + little(size) + QByteArray(size, '\x11'));
        write(QStringLiteral("damaged.wav"), "RIFF and nothing else");
    }

    [[nodiscard]] SoundPlayer& player() override { return m_player; }

private:
    void write(const QString& name, const QByteArray& bytes) const
    {
        QFile file(m_folder.filePath(name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
    }

    QTemporaryDir m_folder;
    PulseSoundPlayer m_player{m_folder.path()};
};

class SoundPlayerContractTest : public ContractTest<SoundSubject> { };

INSTANTIATE_TEST_SUITE_P(Implementations, SoundPlayerContractTest,
    ::testing::Values(
        Implementation<SoundSubject>{"InMemory", makeSubject<SoundSubject, InMemorySubject>},
        Implementation<SoundSubject>{"Pulse", makeSubject<SoundSubject, PulseSubject>}),
    implementationName);

TEST_P(SoundPlayerContractTest, ASoundThatIsMissingOrDamagedIsNone)
{
    EXPECT_EQ(subject().player().soundNamed(QStringLiteral("missing")), nullptr);
    EXPECT_EQ(subject().player().soundNamed(QStringLiteral("damaged")), nullptr);
    EXPECT_NE(subject().player().soundNamed(QStringLiteral("start")), nullptr);
}

TEST_P(SoundPlayerContractTest, ARapidRepeatRestartsAndNothingWaits)
{
    const auto sound = subject().player().soundNamed(QStringLiteral("start"));
    ASSERT_TRUE(sound);
    const auto start = std::chrono::steady_clock::now();
    for (int i = 0; i < 20; ++i) {
        sound->stop();
        sound->setCurrentTime(Seconds{0});
        sound->setVolume(0.55F);
        sound->play();
    }
    EXPECT_LT(std::chrono::steady_clock::now() - start, 2s); // One after the other they take 4 s.
}

/// What comes out of the loudspeakers of the desktop, recorded by a program of the sound server.
class Loudspeakers {
public:
    Loudspeakers() { wait(0); }

    /// The loudest sample of @p duration from now on.
    [[nodiscard]] int loudestWithin(Seconds duration)
    {
        const qint64 start = heard().size();
        wait(start + static_cast<qint64>(duration.count() * bytesPerSecond));
        const QByteArray sound = heard().mid(start & ~qint64{1});
        int loudest = 0;
        for (qsizetype at = 0; at + 1 < sound.size(); at += 2)
            loudest = std::max(loudest, std::abs(qFromLittleEndian<qint16>(&sound.data()[at])));
        return loudest;
    }

private:
    static constexpr int bytesPerSecond = 48000 * 2 * 2;

    [[nodiscard]] QByteArray heard() const
    {
        QFile file(m_path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    /// Until more than so many bytes have come; a busy machine is given its time.
    void wait(qint64 bytes) const
    {
        for (int rounds = 0; rounds < 2000 && QFileInfo(m_path).size() <= bytes; ++rounds)
            std::this_thread::sleep_for(10ms);
        EXPECT_GT(QFileInfo(m_path).size(), bytes);
    }

    const QTemporaryDir m_folder;
    const QString m_path = m_folder.filePath(QStringLiteral("heard"));
    const ChildProcess m_recorder{QStringLiteral("parec"),
        {QStringLiteral("--raw"), QStringLiteral("--format=s16le"), QStringLiteral("--rate=48000"),
            QStringLiteral("--channels=2"), QStringLiteral("--latency-msec=20"),
            QStringLiteral("--device=speakers.monitor"), m_path}};
};

TEST(PulseSoundPlayerTest, ARapidRepeatIsHeardOnceAndAsLoudAsAsked)
{
    constexpr double asked = 0.55 * 0x1111; // Of the samples that the sound consists of.
    PulseSubject subject;
    const auto sound = subject.player().soundNamed(QStringLiteral("start"));
    ASSERT_TRUE(sound);
    Loudspeakers loudspeakers;
    sound->setVolume(0.55F);
    for (int i = 0; i < 5; ++i) {
        sound->stop();
        sound->setCurrentTime(Seconds{0});
        sound->play();
    }

    EXPECT_NEAR(loudspeakers.loudestWithin(1s), asked, asked / 5);
}

TEST(PulseSoundPlayerTest, APositionBeyondTheEndPlaysNothing)
{
    PulseSubject subject;
    const auto sound = subject.player().soundNamed(QStringLiteral("start"));
    ASSERT_TRUE(sound);
    Loudspeakers loudspeakers;
    sound->setCurrentTime(Seconds{60});
    sound->play();
    EXPECT_EQ(loudspeakers.loudestWithin(1s), 0);

    sound->setCurrentTime(Seconds{-1});
    sound->play();
    EXPECT_GT(loudspeakers.loudestWithin(1s), 0);
}

} // namespace
} // namespace tavrin::testing

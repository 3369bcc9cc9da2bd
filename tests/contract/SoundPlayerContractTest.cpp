#include "contract/Subject.h"
#include "platform/linux/desktop/PulseSoundPlayer.h"
#include "support/InMemorySoundPlayer.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QtEndian>

#include <chrono>

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
    EXPECT_LT(std::chrono::steady_clock::now() - start, 500ms);
}

TEST_P(SoundPlayerContractTest, APositionBeyondTheEndPlaysNothing)
{
    const auto sound = subject().player().soundNamed(QStringLiteral("start"));
    ASSERT_TRUE(sound);
    sound->setCurrentTime(Seconds{60});
    sound->play();
    sound->setCurrentTime(Seconds{-1});
    sound->play();
    sound->stop();
}

} // namespace
} // namespace tavrin::testing

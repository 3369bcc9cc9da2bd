#include "audio/RecordingFile.h"

#include "support/QtPrinters.h"
#include "support/ports/InMemoryBackgroundQueue.h"
#include "support/ports/InMemorySystemInfo.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace tavrin {
namespace {

class RecordingFileTest : public ::testing::Test {
protected:
    QTemporaryDir folder;
    testing::InMemorySystemInfo systemInfo;
    testing::InMemoryBackgroundQueue background;

    RecordingFileTest() { systemInfo.temporaryFolder = folder.path(); }

    static void makeFile(const QString& path)
    {
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    }

    /// The path of one that this program could have made.
    QString recordingNamed(char digit) const
    {
        return folder.filePath(
            QStringLiteral("tavrin-3F2504E0-4F89-41D3-9A0C-0305E82C330%1.m4a").arg(digit));
    }

    QStringList remaining() const { return QDir(folder.path()).entryList(QDir::Files); }
};

TEST_F(RecordingFileTest, TheNameIsAFreshUpperCaseUuidInTheTemporaryDirectory)
{
    const RecordingFile first(systemInfo, background);
    const RecordingFile second(systemInfo, background);

    const QRegularExpression form("^" + QRegularExpression::escape(folder.path())
        + "/tavrin-[0-9A-F]{8}(-[0-9A-F]{4}){3}-[0-9A-F]{12}\\.m4a$");
    EXPECT_TRUE(form.match(first.audioURL()).hasMatch()) << first.audioURL().toStdString();
    EXPECT_NE(first.audioURL(), second.audioURL());
}

TEST_F(RecordingFileTest, RecordingsAreAacOf16KilohertzMonoInHighQuality)
{
    EXPECT_EQ(recordingSettings.formatId, 1633772320U);
    EXPECT_EQ(recordingSettings.sampleRate, 16000.0);
    EXPECT_EQ(recordingSettings.numberOfChannels, 1);
    EXPECT_EQ(recordingSettings.encoderAudioQuality, 96);
}

TEST_F(RecordingFileTest, RemovingDeletesTheRecordingAndLeavesNothing)
{
    RecordingFile recording(systemInfo, background);
    makeFile(recording.audioURL());
    background.drain();

    recording.remove();

    EXPECT_EQ(remaining(), QStringList());
    EXPECT_TRUE(recording.audioURL().isEmpty());
    recording.remove();
}

TEST_F(RecordingFileTest, TheRecordingGoesWithItsObject)
{
    {
        const RecordingFile recording(systemInfo, background);
        makeFile(recording.audioURL());
        background.drain();
    }

    EXPECT_EQ(remaining(), QStringList());
}

TEST_F(RecordingFileTest, TheDiskIsWaitedForInTheBackground)
{
    const RecordingFile recording(systemInfo, background);
    EXPECT_EQ(remaining(), QStringList());

    background.drain();
    EXPECT_EQ(remaining(), QStringList(QFileInfo(recording.audioURL()).fileName() + ".lock"));
}

TEST_F(RecordingFileTest, WhatIsDeletedBeforeItWasOwnedLeavesNothing)
{
    RecordingFile recording(systemInfo, background);
    makeFile(recording.audioURL());

    recording.remove();
    background.drain();

    EXPECT_EQ(remaining(), QStringList());
}

TEST_F(RecordingFileTest, MovingKeepsTheRecordingAndDeletesTheReplacedOne)
{
    RecordingFile recording(systemInfo, background);
    makeFile(recording.audioURL());
    RecordingFile kept(systemInfo, background);
    makeFile(kept.audioURL());
    const QString keptPath = kept.audioURL();

    recording = std::move(kept);
    const RecordingFile final = std::move(recording);

    EXPECT_EQ(final.audioURL(), keptPath);
    EXPECT_TRUE(QFile::exists(keptPath));
    EXPECT_EQ(remaining().filter(QRegularExpression("\\.m4a$")).size(), 1);
}

TEST_F(RecordingFileTest, WhatDeadProcessesLeftIsDeletedAtTheStart)
{
    makeFile(recordingNamed('A'));
    // No process has this number: it is above the largest that systems give.
    QFile lock(recordingNamed('B') + ".lock");
    ASSERT_TRUE(lock.open(QIODevice::WriteOnly));
    lock.write("2147483646\nTavrin\n\n\n\n");
    lock.close();
    makeFile(recordingNamed('B'));
    QFile::copy(lock.fileName(), recordingNamed('C') + ".lock");

    removeAbandonedRecordings(systemInfo);

    EXPECT_EQ(remaining(), QStringList());
}

TEST_F(RecordingFileTest, RecordingsOfLivingProcessesAndOtherFilesStay)
{
    const RecordingFile recording(systemInfo, background);
    makeFile(recording.audioURL());
    background.drain();
    for (const char* name : {"tavrin-notes.txt", "other.m4a", "tavrin.m4a", "my-tavrin-1.m4a",
             "tavrin-interview.m4a", "tavrin-.m4a", "tavrin-0A.m4a", "tavrin-interview.m4a.lock",
             "tavrin-3F2504E0-4F89-41D3-9A0C-0305E82C3301 (copy).m4a",
             "tavrin-3f2504e0-4f89-41d3-9a0c-0305e82c3301.m4a",
             "tavrin-{3F2504E0-4F89-41D3-9A0C-0305E82C3301}.m4a",
             "tavrin-3F2504E04F8941D39A0C0305E82C3301.m4a",
             "tavrin-3F2504E0-4F89-41D3-9A0C-0305E82C3301.m4a.bak"})
        makeFile(folder.filePath(name));
    const QStringList before = remaining();

    removeAbandonedRecordings(systemInfo);

    EXPECT_EQ(remaining(), before);
}

TEST_F(RecordingFileTest, ADirectoryThatCannotBeReadIsPassedOver)
{
    systemInfo.temporaryFolder = folder.filePath("missing");

    removeAbandonedRecordings(systemInfo);

    RecordingFile recording(systemInfo, background);
    EXPECT_FALSE(recording.audioURL().isEmpty());
}

} // namespace
} // namespace tavrin

#include "audio/AudioChangeNote.h"

#include "support/QtPrinters.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace tavrin {
namespace {

class AudioChangeNoteTest : public ::testing::Test {
protected:
    QTemporaryDir folder;

    /// What a process reads that starts after the writer died.
    AudioChanges afterACrashWith(const AudioChanges& changes) const
    {
        AudioChangeNote(folder.path()).write(changes);
        return AudioChangeNote(folder.path()).adopt();
    }

    AudioChanges afterFinding(const QByteArray& content) const
    {
        QFile file(notePath());
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content);
        file.close();
        return AudioChangeNote(folder.path()).adopt();
    }

    QString notePath() const { return folder.filePath("AudioChanges.json"); }
};

TEST_F(AudioChangeNoteTest, EveryKindOfChangeSurvives)
{
    const QString longUid = QString::fromUtf8("设备🎧").repeated(500);
    const AudioChanges muted{{{longUid, 1U, {}}}, {}};
    const AudioChanges silenced{{{"speakers", {}, 0.25F}}, {}};
    const AudioChanges switched{{}, {{"before", longUid}}};
    const AudioChanges all{muted.outputs + silenced.outputs, switched.inputs + switched.inputs};

    for (const AudioChanges& changes : {muted, silenced, switched, all})
        EXPECT_EQ(afterACrashWith(changes), changes);
}

TEST_F(AudioChangeNoteTest, OnlyItsOwnerMayReadIt)
{
    AudioChangeNote note(folder.path());
    note.write({{}, {{"a", "b"}}});

    const auto readableByOthers = QFileDevice::ReadGroup | QFileDevice::WriteGroup
        | QFileDevice::ReadOther | QFileDevice::WriteOther;
    EXPECT_EQ(QFile::permissions(notePath()) & readableByOthers, QFileDevice::Permissions());
}

TEST_F(AudioChangeNoteTest, AnAdoptedNoteStaysUntilItIsReplaced)
{
    const AudioChanges changes{{}, {{"a", "b"}}};
    AudioChangeNote(folder.path()).write(changes);

    AudioChangeNote next(folder.path());
    EXPECT_EQ(next.adopt(), changes);
    EXPECT_TRUE(QFile::exists(notePath()));
    EXPECT_TRUE(next.adopt().isEmpty()); // It is this process's own now.

    next.write({});
    EXPECT_TRUE(QDir(folder.path()).isEmpty());
}

TEST_F(AudioChangeNoteTest, AnotherProcessesNoteIsNeitherReadNorOverwrittenNorRemoved)
{
    AudioChangeNote living(folder.path());
    living.write({{}, {{"a", "b"}}});
    AudioChangeNote other(folder.path());

    EXPECT_TRUE(other.adopt().isEmpty());
    other.write({{}, {{"c", "d"}}});
    other.write({});

    QFile file(notePath());
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_TRUE(file.readAll().contains("\"a\""));
}

TEST_F(AudioChangeNoteTest, UnreadableNotesAreRemoved)
{
    for (const char* content :
        {"", "garbage", "[]", R"({"outputs":)", R"({"outputs":7,"inputs":{}})",
            R"({"outputs":[7],"inputs":[[]]})", R"({"outputs":[{"uid":"a"}]})",
            R"({"outputs":[{"uid":"a","mute":7}]})", R"({"outputs":[{"uid":"a","mute":0.5}]})",
            R"({"outputs":[{"uid":"a","volume":1e30}]})",
            R"({"outputs":[{"uid":"a","volume":-0.1}]})", R"({"outputs":[{"uid":3,"mute":1}]})",
            R"({"outputs":[{"mute":1}]})", R"({"inputs":[{"previous":"a"}]})",
            R"({"inputs":[{"previous":"a","preferred":""}]})"}) {
        EXPECT_TRUE(afterFinding(content).isEmpty()) << content;
        EXPECT_TRUE(QDir(folder.path()).isEmpty()) << content;
    }
}

TEST_F(AudioChangeNoteTest, AnOversizedNoteIsRemovedUnread)
{
    const QByteArray padding(qsizetype(100) * 1024, ' ');

    EXPECT_TRUE(
        afterFinding(padding + R"({"inputs":[{"previous":"a","preferred":"b"}]})").isEmpty());
}

} // namespace
} // namespace tavrin

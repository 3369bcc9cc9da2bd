#include "history/HistoryFixture.h"
#include "platform/preferences/PreferenceKeys.h"
#include "support/FullDisk.h"

#include <QDateTime>
#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>

using namespace Qt::StringLiterals;

namespace tavrin {
namespace {

/// A person edits the file, well or badly, while the program uses it.
class HistoryEditTest : public testing::HistoryFixture {
protected:
    void SetUp() override
    {
        HistoryFixture::SetUp();
        preferences.setValue(keys::historyRetention, u"forever"_s);
    }

    static QByteArray record(const QByteArray& id)
    {
        return R"({"id":")" + id + R"(","mode":"chat","timestamp":1})";
    }

    /// What the file holds, as another program reads it: ids, or "saved" for what we saved.
    [[nodiscard]] QStringList written()
    {
        QStringList names;
        for (const QJsonValueConstRef element : QJsonDocument::fromJson(file()).array()) {
            const QString id = element.toObject().value("id"_L1).toString();
            names.append(id.size() == 36 ? u"saved"_s : id);
        }
        return names;
    }

    [[nodiscard]] QStringList unreadableFiles() const
    {
        return QDir(folder.filePath(u"Tavrin"_s)).entryList({u"*unreadable*"_s}, QDir::Files);
    }

    [[nodiscard]] QByteArray unreadable(const QString& name) const
    {
        QFile source(folder.filePath(u"Tavrin/"_s + name));
        return source.open(QIODevice::ReadOnly) ? source.readAll() : QByteArray();
    }

    void age(const QString& name, int days)
    {
        QFile target(folder.filePath(u"Tavrin/"_s + name));
        ASSERT_TRUE(target.open(QIODevice::ReadWrite));
        const auto now = std::chrono::duration_cast<std::chrono::milliseconds>(time.sinceEpoch());
        ASSERT_TRUE(target.setFileTime(QDateTime::fromMSecsSinceEpoch(now.count()).addDays(-days),
            QFileDevice::FileModificationTime));
    }
};

// While a write is under way.

TEST_F(HistoryEditTest, AnEditBeforeTheWriteIsDoneIsKeptBesideTheSavedRecord)
{
    putFile("[" + record("a") + "]");
    save(u"one"_s, u"1"_s);
    putFile("[" + record("by hand") + "," + record("a") + "]");

    EXPECT_EQ(written(), (QStringList{u"saved"_s, u"by hand"_s, u"a"_s}));
    EXPECT_EQ(store.historyRecords().size(), 3);
    EXPECT_EQ(background.pending(), 0);
}

TEST_F(HistoryEditTest, AnEditRightAfterTheWriteIsKept)
{
    putFile("[" + record("a") + "]");
    save(u"one"_s, u"1"_s);
    const auto done = background.runWork();
    putFile("[" + record("by hand") + "]");
    done();

    EXPECT_EQ(ids(), QStringList{u"by hand"_s});
    save(u"two"_s, u"2"_s);
    EXPECT_EQ(written(), (QStringList{u"saved"_s, u"by hand"_s}));
}

TEST_F(HistoryEditTest, AnEditBetweenTwoWritesIsKept)
{
    putFile("[" + record("a") + "]");
    save(u"one"_s, u"1"_s);
    save(u"two"_s, u"2"_s);
    const auto done = background.runWork(); // The first of the two.
    QByteArray edited = file();
    edited.replace("[", "[" + record("by hand") + ",");
    putFile(edited);
    done();

    EXPECT_EQ(written(), (QStringList{u"saved"_s, u"by hand"_s, u"saved"_s, u"a"_s}));
}

TEST_F(HistoryEditTest, OfSeveralSavesDuringAnEditEachIsKeptInItsOrder)
{
    putFile("[" + record("a") + "]");
    save(u"one"_s, u"1"_s);
    putFile("[]");
    save(u"two"_s, u"2"_s);

    const QJsonArray records = QJsonDocument::fromJson(file()).array();
    ASSERT_EQ(records.size(), 2);
    EXPECT_EQ(records[0].toObject().value("transcript"_L1), u"two"_s);
    EXPECT_EQ(records[1].toObject().value("transcript"_L1), u"one"_s);
}

TEST_F(HistoryEditTest, ARecordRemovedHereIsRemovedFromTheEditedFileToo)
{
    putFile("[" + record("a") + "," + record("b") + "]");
    store.removeHistoryRecord(u"a"_s);
    putFile("[" + record("by hand") + "," + record("a") + "," + record("b") + "]");

    EXPECT_EQ(written(), (QStringList{u"by hand"_s, u"b"_s}));
}

TEST_F(HistoryEditTest, WhatAPersonRemovedDoesNotComeBack)
{
    putFile("[" + record("a") + "," + record("b") + "]");
    save(u"one"_s, u"1"_s);
    putFile("[" + record("b") + "]");

    EXPECT_EQ(written(), (QStringList{u"saved"_s, u"b"_s}));
}

TEST_F(HistoryEditTest, AFileThatIsRemovedMeanwhileHoldsTheSavedRecordOnly)
{
    putFile("[" + record("a") + "]");
    save(u"one"_s, u"1"_s);
    ASSERT_TRUE(QFile::remove(path()));

    EXPECT_EQ(written(), QStringList{u"saved"_s});
    EXPECT_EQ(store.historyRecords().size(), 1);
}

TEST_F(HistoryEditTest, AMalformedEditMeanwhileCostsNoRecord)
{
    putFile("[" + record("a") + "]");
    save(u"one"_s, u"1"_s);
    putFile("[" + record("by hand") + " ");

    EXPECT_EQ(written(), (QStringList{u"saved"_s, u"a"_s}));
    ASSERT_EQ(unreadableFiles(), QStringList{u"TranscriptionHistory.unreadable.json"_s});
    EXPECT_EQ(unreadable(unreadableFiles().first()), "[" + record("by hand") + " ");
}

TEST_F(HistoryEditTest, ClearingMeanwhileClearsTheEditedFileToo)
{
    putFile("[" + record("a") + "]");
    save(u"one"_s, u"1"_s);
    store.clear();
    putFile("[" + record("by hand") + "]");

    EXPECT_EQ(written(), QStringList());
    save(u"two"_s, u"2"_s);
    EXPECT_EQ(written(), QStringList{u"saved"_s});
}

TEST_F(HistoryEditTest, ASaveWhileTheHistoryIsBeingClearedHeedsEditsAgain)
{
    putFile("[" + record("a") + "]");
    store.clear();
    save(u"one"_s, u"1"_s);
    const auto done = background.runWork();
    putFile("[" + record("by hand") + "]");
    done();

    EXPECT_EQ(written(), (QStringList{u"saved"_s, u"by hand"_s}));
}

// A file that cannot be read.

TEST_F(HistoryEditTest, OneRecordWithANumberBeyondAllReadersCostsNoOther)
{
    putFile("[" + record("a") + R"(,{"id":"odd","mode":"chat","timestamp":1e400,"n":)"
        + QByteArray(40, '9') + "}," + record("b") + "]");
    EXPECT_EQ(ids(), (QStringList{u"a"_s, u"odd"_s, u"b"_s}));

    save(u"one"_s, u"1"_s);

    EXPECT_EQ(ids().size(), 4);
    EXPECT_TRUE(file().contains(QByteArray(40, '9')));
    EXPECT_TRUE(file().contains("1e400"));
    EXPECT_EQ(unreadableFiles(), QStringList());
}

TEST_F(HistoryEditTest, AMalformedFileIsKeptBesideTheOneThatReplacesIt)
{
    for (const QByteArray broken : {R"([{"finalText": "mine")", "{}"}) {
        putFile(broken);
        EXPECT_EQ(ids(), QStringList());
        save(u"one"_s, u"1"_s);
        EXPECT_EQ(written(), QStringList{u"saved"_s});
    }
    ASSERT_EQ(unreadableFiles(),
        (QStringList{u"TranscriptionHistory.unreadable-2.json"_s,
            u"TranscriptionHistory.unreadable.json"_s}));
    EXPECT_EQ(unreadable(unreadableFiles()[0]), "{}");
    EXPECT_EQ(unreadable(unreadableFiles()[1]), R"([{"finalText": "mine")");
}

TEST_F(HistoryEditTest, AnEmptyFileIsNotWorthKeeping)
{
    putFile("");
    save(u"one"_s, u"1"_s);
    EXPECT_EQ(written(), QStringList{u"saved"_s});
    EXPECT_EQ(unreadableFiles(), QStringList());
}

TEST_F(HistoryEditTest, AFullDiskLeavesAMalformedFileInItsPlace)
{
    const QByteArray broken = "[" + record("a");
    putFile(broken);
    save(u"one"_s, QString(100'000, u'x'));
    {
        const testing::FullDisk full(1000);
        background.drain();
    }
    EXPECT_EQ(file(), broken);
    EXPECT_EQ(unreadableFiles(), QStringList());
}

TEST_F(HistoryEditTest, WhatIsKeptBesideGrowsOldLikeTheRecords)
{
    preferences.setValue(keys::historyRetention, u"7"_s);
    const QString name = u"TranscriptionHistory.unreadable.json"_s;
    putFile("[{", u"Tavrin/"_s + name);
    putFile("mine", u"Tavrin/notes.json"_s);
    age(name, 6);
    age(u"notes.json"_s, 100);
    EXPECT_EQ(ids(), QStringList());
    EXPECT_EQ(unreadableFiles(), QStringList{name});

    time.advance(std::chrono::hours(25));

    EXPECT_EQ(ids(), QStringList());
    EXPECT_EQ(unreadableFiles(), QStringList());
    EXPECT_TRUE(QFile::exists(folder.filePath(u"Tavrin/notes.json"_s)));
}

TEST_F(HistoryEditTest, ClearingRemovesWhatWasKeptBesideAndWhatCannotBeRead)
{
    putFile("[{");
    save(u"one"_s, u"1"_s);
    background.drain();
    ASSERT_EQ(unreadableFiles().size(), 1);
    putFile("[{\"finalText\"");
    EXPECT_EQ(ids(), QStringList());

    store.clear();

    EXPECT_EQ(file(), "[]"_ba);
    EXPECT_EQ(unreadableFiles(), QStringList());
}

} // namespace
} // namespace tavrin

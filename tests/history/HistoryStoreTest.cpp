#include "history/HistoryFixture.h"
#include "platform/preferences/PreferenceKeys.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QUuid>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace tavrin {
namespace {

class HistoryStoreTest : public testing::HistoryFixture {
protected:
    /// A file's record, so many days old.
    [[nodiscard]] QByteArray aged(const QByteArray& id, double days) const
    {
        const double timestamp = time.sinceEpoch().count() - days * 86400;
        return R"({"id":")" + id + R"(","mode":"chat","timestamp":)"
            + QByteArray::number(timestamp, 'f', 3) + "}";
    }

    void putAges()
    {
        putFile("[" + aged("new", 0.5) + "," + aged("week", 8) + "," + aged("fortnight", 15) + ","
            + aged("month", 31) + "," + aged("quarter", 91) + R"(,{"id":"none","mode":"chat"}])");
    }

    void keep(const QString& retention) { preferences.setValue(keys::historyRetention, retention); }

    [[nodiscard]] QJsonObject first()
    {
        const HistoryRecords records = store.historyRecords();
        return records.isEmpty() ? QJsonObject() : records.first().object();
    }
};

// What is saved.

TEST_F(HistoryStoreTest, ASavedRecordHasItsElevenKeys)
{
    time.advance(250ms); // Its time has a fraction.
    store.saveHistoryTranscript({.transcript = u"um hello"_s,
        .finalText = u"Hello."_s,
        .delivery = u"自动输入已完成"_s,
        .mode = u"chat"_s,
        .targetLanguage = {},
        .audio = 2.5s,
        .processing = 1.25s,
        .application = {{u"name"_s, u"Editor"_s}, {u"bundleId"_s, u"editor"_s}}});

    QJsonObject record = first();
    EXPECT_EQ(record.keys().size(), 11);
    const QString id = record.take("id"_L1).toString();
    EXPECT_EQ(id.size(), 36);
    EXPECT_EQ(id, QUuid::fromString(id).toString(QUuid::WithoutBraces).toUpper());
    EXPECT_EQ(record,
        (QJsonObject{{u"timestamp"_s, time.sinceEpoch().count()}, {u"transcript"_s, u"um hello"_s},
            {u"finalText"_s, u"Hello."_s}, {u"delivery"_s, u"自动输入已完成"_s},
            {u"mode"_s, u"chat"_s}, {u"inputCharacters"_s, 8}, {u"outputCharacters"_s, 6},
            {u"audioSeconds"_s, 2.5}, {u"processingSeconds"_s, 1.25},
            {u"application"_s,
                QJsonObject{{u"name"_s, u"Editor"_s}, {u"bundleId"_s, u"editor"_s}}}}));
}

TEST_F(HistoryStoreTest, WhatIsAbsentHasItsDefault)
{
    store.saveHistoryTranscript({.audio = -1s, .processing = -1s});

    const QJsonObject record = first();
    EXPECT_EQ(record.value("transcript"_L1), u""_s);
    EXPECT_EQ(record.value("finalText"_L1), u""_s);
    EXPECT_EQ(record.value("delivery"_L1), u"保存在剪贴板"_s);
    EXPECT_EQ(record.value("mode"_L1), u"dictation"_s);
    EXPECT_EQ(record.value("audioSeconds"_L1), 0);
    EXPECT_EQ(record.value("processingSeconds"_L1), 0);
    EXPECT_EQ(record.value("application"_L1), QJsonObject());
}

TEST_F(HistoryStoreTest, OnlyATranslationCarriesATargetLanguage)
{
    store.saveHistoryTranscript({.mode = u"translation"_s, .targetLanguage = u"french"_s});
    EXPECT_EQ(first().value("targetLanguage"_L1), u"french"_s);

    store.saveHistoryTranscript({.targetLanguage = u""_s});
    EXPECT_FALSE(first().contains("targetLanguage"_L1));
}

TEST_F(HistoryStoreTest, CharactersAreCountedInUtf16Units)
{
    save(u"😀"_s, u"a😀b"_s);
    EXPECT_EQ(first().value("inputCharacters"_L1), 2);
    EXPECT_EQ(first().value("outputCharacters"_L1), 4);
}

TEST_F(HistoryStoreTest, TheNewestRecordComesFirst)
{
    save(u"one"_s, u"1"_s);
    save(u"two"_s, u"2"_s);
    EXPECT_EQ(first().value("transcript"_L1), u"two"_s);
    EXPECT_EQ(QJsonDocument::fromJson(file()).array().size(), 2);
}

TEST_F(HistoryStoreTest, TextsThatNoJsonCanHoldDoNotSpoilTheFile)
{
    save(u"a"_s + QChar(0xD83D) + u"b"_s, u"nul "_s + QChar(u'\0') + u" bidi \u202E end"_s);
    ASSERT_TRUE(QJsonDocument::fromJson(file()).isArray());

    HistoryStore other{{preferences, time, systemInfo, background}};
    const QJsonObject record = other.historyRecords().first().object();
    EXPECT_EQ(record.value("transcript"_L1), u"a\uFFFDb"_s);
    EXPECT_EQ(
        record.value("finalText"_L1).toString(), u"nul "_s + QChar(u'\0') + u" bidi \u202E end"_s);
}

TEST_F(HistoryStoreTest, WhoeverShowsTheHistoryHearsOfASavedRecord)
{
    int saved = 0;
    store.setSavedHandler([&] { ++saved; });
    save(u"a"_s, u"b"_s);
    EXPECT_EQ(saved, 1);
    keep(u"none"_s);
    save(u"a"_s, u"b"_s);
    EXPECT_EQ(saved, 1);
}

TEST_F(HistoryStoreTest, TheFileIsTheUsersAlone)
{
    save(u"a"_s, u"b"_s);
    background.drain();
    const auto others = QFileDevice::ReadGroup | QFileDevice::WriteGroup | QFileDevice::ReadOther
        | QFileDevice::WriteOther | QFileDevice::ExeGroup | QFileDevice::ExeOther;
    EXPECT_FALSE(QFile::permissions(path()) & others);
    EXPECT_FALSE(QFile::permissions(folder.filePath(u"Tavrin"_s)) & others);
}

// Retention.

TEST_F(HistoryStoreTest, WithoutASettingRecordsLiveThirtyDays)
{
    putAges();
    EXPECT_EQ(ids(), (QStringList{u"new"_s, u"week"_s, u"fortnight"_s}));
}

TEST_F(HistoryStoreTest, EachSettingKeepsWhatItSays)
{
    const QList<std::pair<QString, QStringList>> rows{
        {u"7"_s, {u"new"_s}},
        {u"30"_s, {u"new"_s, u"week"_s, u"fortnight"_s}},
        {u"90"_s, {u"new"_s, u"week"_s, u"fortnight"_s, u"month"_s}},
        {u"14"_s, {u"new"_s, u"week"_s}},
        {u"forever"_s, {u"new"_s, u"week"_s, u"fortnight"_s, u"month"_s, u"quarter"_s, u"none"_s}},
        {u"abc"_s, {}},
        {u"none"_s, {}},
    };
    for (const auto& [retention, expected] : rows) {
        putAges();
        keep(retention);
        EXPECT_EQ(ids(), expected) << retention.toStdString();
        EXPECT_EQ(QJsonDocument::fromJson(file()).array().size(), expected.size());
    }
}

TEST_F(HistoryStoreTest, WithRetentionNoneNothingIsSavedAndTheNextReadEmptiesTheFile)
{
    save(u"a"_s, u"b"_s);
    background.drain();
    keep(u"none"_s);
    save(u"c"_s, u"d"_s);
    EXPECT_EQ(background.pending(), 0);
    EXPECT_EQ(ids(), QStringList());
    EXPECT_EQ(file(), "[]"_ba);
}

TEST_F(HistoryStoreTest, RecordsGrowOldWhileTheFileStaysTheSame)
{
    putFile("[" + aged("a", 29) + "]");
    EXPECT_EQ(ids(), QStringList{u"a"_s});
    time.advance(std::chrono::hours(25));
    EXPECT_EQ(ids(), QStringList());
    EXPECT_EQ(file(), "[]"_ba);
}

// Repair, and files that others wrote.

TEST_F(HistoryStoreTest, ARecordWithoutAnIdKeepsTheOneItGets)
{
    keep(u"forever"_s);
    putFile(R"([{"mode":"chat"}])");
    const QStringList given = ids();
    EXPECT_EQ(ids(), given);
    background.drain();
    EXPECT_EQ(ids(), given);
    EXPECT_TRUE(file().contains(given.first().toUtf8()));
}

TEST_F(HistoryStoreTest, AModeThatIsNoTextIsWrittenAsDictation)
{
    keep(u"forever"_s);
    putFile(R"([{"id":"A","mode":5}, 3])");
    EXPECT_EQ(first().value("mode"_L1), u"dictation"_s);
    const QJsonArray written = QJsonDocument::fromJson(file()).array();
    ASSERT_EQ(written.size(), 1);
    EXPECT_EQ(written[0].toObject().value("mode"_L1), u"dictation"_s);
}

TEST_F(HistoryStoreTest, AFileWithoutFaultIsNotWritten)
{
    putFile("[" + aged("a", 1) + "]");
    EXPECT_EQ(ids(), QStringList{u"a"_s});
    EXPECT_EQ(background.pending(), 0);
}

TEST_F(HistoryStoreTest, AnEditByHandIsSeenOnTheNextRead)
{
    putFile("[" + aged("a", 1) + "]");
    EXPECT_EQ(ids(), QStringList{u"a"_s});
    putFile("[" + aged("b", 1) + "," + aged("a", 1) + "]");
    EXPECT_EQ(ids(), (QStringList{u"b"_s, u"a"_s}));
}

TEST_F(HistoryStoreTest, AMalformedFileReadsAsEmptyAndStaysUntilTheNextSave)
{
    for (const QByteArray broken : {"[{", "{}", "7", "", "nonsense"}) {
        putFile(broken);
        EXPECT_EQ(ids(), QStringList());
        EXPECT_EQ(file(), broken);
    }
    save(u"a"_s, u"b"_s);
    EXPECT_EQ(QJsonDocument::fromJson(file()).array().size(), 1);
}

// Writing.

TEST_F(HistoryStoreTest, ReadsShowWhatIsStillBeingWritten)
{
    save(u"one"_s, u"1"_s);
    save(u"two"_s, u"2"_s);
    EXPECT_EQ(background.pending(), 1);
    EXPECT_EQ(store.historyRecords().size(), 2);

    store.flush();

    EXPECT_EQ(background.pending(), 0);
    EXPECT_EQ(QJsonDocument::fromJson(file()).array().size(), 2);
}

TEST_F(HistoryStoreTest, AFailedWriteLeavesTheOldFileWhole)
{
    save(u"one"_s, u"1"_s);
    const QByteArray before = file();
    save(u"two"_s, u"2"_s);
    // The folder goes away under the write, and comes back.
    ASSERT_TRUE(QDir().rename(folder.filePath(u"Tavrin"_s), folder.filePath(u"away"_s)));
    background.drain();
    QDir(folder.filePath(u"Tavrin"_s)).removeRecursively();
    ASSERT_TRUE(QDir().rename(folder.filePath(u"away"_s), folder.filePath(u"Tavrin"_s)));

    EXPECT_EQ(file(), before);
    EXPECT_EQ(store.historyRecords().size(), 1);
}

TEST_F(HistoryStoreTest, WithoutAFolderNothingIsSavedAndNothingHappens)
{
    putFile("in the way", u"Tavrin"_s);
    save(u"a"_s, u"b"_s);
    EXPECT_FALSE(store.writeHistoryRecords({}));
    EXPECT_EQ(store.historyRecords().size(), 0);
}

TEST_F(HistoryStoreTest, AStoreThatIsGoneIsNotCalledBack)
{
    {
        HistoryStore ended{{preferences, time, systemInfo, background}};
        ended.saveHistoryTranscript({.transcript = u"a"_s});
    }
    background.drain();
    EXPECT_EQ(store.historyRecords().size(), 1);
}

TEST_F(HistoryStoreTest, WarmingUpReadsTheFileBeforeItIsNeeded)
{
    putFile("[" + aged("a", 1) + "]");
    store.warmUp();
    EXPECT_EQ(background.pending(), 1);
    background.drain();
    store.warmUp();
    EXPECT_EQ(background.pending(), 0);
    EXPECT_EQ(ids(), QStringList{u"a"_s});
}

TEST_F(HistoryStoreTest, AWarmUpThatComesTooLateChangesNothing)
{
    putFile("[" + aged("a", 1) + "]");
    store.warmUp();
    save(u"b"_s, u"b"_s);
    background.drain();
    EXPECT_EQ(store.historyRecords().size(), 2);
}

TEST_F(HistoryStoreTest, WhoeverWaitsForTheFileIsCalledWhenItIsRead)
{
    putFile("[" + aged("a", 1) + "]");
    QStringList calls;
    store.whenRead([&] { calls.append(u"first "_s + ids().join(u' ')); });
    store.whenRead([&] { calls.append(u"second"_s); });
    EXPECT_TRUE(calls.isEmpty());
    EXPECT_EQ(background.pending(), 1);
    background.drain();
    EXPECT_EQ(calls, (QStringList{u"first a"_s, u"second"_s}));

    store.whenRead([&] { calls.append(u"at once"_s); });
    EXPECT_EQ(calls.last(), u"at once"_s);
    EXPECT_EQ(background.pending(), 0);
}

TEST_F(HistoryStoreTest, AFileThatCannotBeReadKeepsNobodyWaiting)
{
    putFile("no history");
    int calls = 0;
    store.whenRead([&] {
        EXPECT_TRUE(ids().isEmpty());
        ++calls;
    });
    background.drain();
    EXPECT_EQ(calls, 1);
}

TEST_F(HistoryStoreTest, TheSizeOfTheFileIsThatOfWhatIsBeingWritten)
{
    putFile("[" + aged("a", 1) + ", " + aged("b", 1) + "]");
    const qint64 before = QFileInfo(path()).size();
    EXPECT_EQ(store.historyFileSize(), before);

    store.removeHistoryRecord(u"a"_s);
    const qint64 expected = store.historyFileSize();
    EXPECT_EQ(QFileInfo(path()).size(), before);
    background.drain();
    EXPECT_LT(expected, before);
    EXPECT_EQ(QFileInfo(path()).size(), expected);
    EXPECT_EQ(store.historyFileSize(), expected);
}

TEST_F(HistoryStoreTest, ARecordIsFoundByItsExactId)
{
    putFile("[" + aged("A", 1) + "," + aged("B", 1) + "]");
    EXPECT_TRUE(store.historyRecordWithID(u"B"_s).has_value());
    EXPECT_FALSE(store.historyRecordWithID(u"b"_s).has_value());
}

// What earlier versions left.

TEST_F(HistoryStoreTest, TheFolderAndAnEmptyFileAreCreated)
{
    EXPECT_EQ(store.historyFileURL(), path());
    EXPECT_EQ(file(), "[]"_ba);
}

TEST_F(HistoryStoreTest, TheOldFolderIsCopiedAndStays)
{
    const QByteArray old = "[" + aged("a", 1) + "]";
    putFile(old, u"Sorvel/TranscriptionHistory.json"_s);
    EXPECT_EQ(ids(), QStringList{u"a"_s});
    EXPECT_EQ(file(), old);
    EXPECT_TRUE(QFile::exists(folder.filePath(u"Sorvel/TranscriptionHistory.json"_s)));
}

TEST_F(HistoryStoreTest, TheOldPreferenceBecomesTheFileAndIsRemoved)
{
    keep(u"forever"_s);
    preferences.setValue(keys::transcriptionHistory,
        QVariantList{QVariantMap{{u"id"_s, u"A"_s}, {u"mode"_s, u"chat"_s}}});
    EXPECT_EQ(ids(), QStringList{u"A"_s});
    EXPECT_FALSE(preferences.value(keys::transcriptionHistory).isValid());
}

TEST_F(HistoryStoreTest, WhenTheOldFileCannotBeCopiedTheOldPreferenceIsTaken)
{
    keep(u"forever"_s);
    preferences.setValue(keys::transcriptionHistory,
        QVariantList{QVariantMap{{u"id"_s, u"A"_s}, {u"mode"_s, u"chat"_s}}});
    ASSERT_TRUE(QDir().mkpath(folder.filePath(u"Sorvel/TranscriptionHistory.json"_s)));
    EXPECT_EQ(ids(), QStringList{u"A"_s});
}

TEST_F(HistoryStoreTest, TheFileIsIndentedForPeopleToRead)
{
    keep(u"forever"_s);
    preferences.setValue(keys::transcriptionHistory,
        QVariantList{QVariantMap{{u"id"_s, u"A"_s}, {u"mode"_s, u"chat"_s}}});
    EXPECT_EQ(ids(), QStringList{u"A"_s});
    EXPECT_TRUE(file().contains("\n        \"id\": \"A\",\n")) << file().constData();

    save(u"said"_s, u"written"_s);
    EXPECT_TRUE(file().contains("\n    \"finalText\": \"written\",\n")) << file().constData();
}

TEST_F(HistoryStoreTest, AnEmptyOldPreferenceStays)
{
    preferences.setValue(keys::transcriptionHistory, QVariantList());
    EXPECT_EQ(store.historyFileURL(), path());
    EXPECT_EQ(file(), "[]"_ba);
    EXPECT_TRUE(preferences.value(keys::transcriptionHistory).isValid());
}

TEST_F(HistoryStoreTest, AnOldPreferenceIsTakenWhateverKindOfListItIs)
{
    preferences.setValue(keys::transcriptionHistory, QStringList{u"no record"_s});
    EXPECT_EQ(store.historyFileURL(), path());
    EXPECT_EQ(QJsonDocument::fromJson(file()).array(), QJsonArray{u"no record"_s});
    EXPECT_FALSE(preferences.value(keys::transcriptionHistory).isValid());
}

TEST_F(HistoryStoreTest, AnOldPreferenceThatCannotBeWrittenIsTriedAgain)
{
    keep(u"forever"_s);
    preferences.setValue(keys::transcriptionHistory,
        QVariantList{QVariantMap{{u"id"_s, u"A"_s}, {u"mode"_s, u"chat"_s}}});
    putFile("in the way", u"Tavrin"_s);
    EXPECT_EQ(ids(), QStringList());
    EXPECT_TRUE(preferences.value(keys::transcriptionHistory).isValid());
    ASSERT_TRUE(QFile::remove(folder.filePath(u"Tavrin"_s)));
    EXPECT_EQ(ids(), QStringList{u"A"_s});
}

} // namespace
} // namespace tavrin

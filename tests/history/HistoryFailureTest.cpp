#include "history/HistoryFixture.h"
#include "platform/preferences/PreferenceKeys.h"
#include "support/FullDisk.h"
#include "support/OrdinaryUser.h"

#include <QJsonArray>
#include <QJsonDocument>

using namespace Qt::StringLiterals;

namespace tavrin {
namespace {

/// Broken files, full disks, folders that cannot be written, and texts that are easily spoilt.
class HistoryFailureTest : public testing::HistoryFixture {
protected:
    void SetUp() override
    {
        HistoryFixture::SetUp();
        preferences.setValue(keys::historyRetention, u"forever"_s);
    }

    /// What another start of the program reads.
    [[nodiscard]] HistoryRecords reread()
    {
        return HistoryStore({preferences, time, systemInfo, background}).historyRecords();
    }
};

TEST_F(HistoryFailureTest, AFileCutOffAnywhereIsReplacedByTheNextSave)
{
    const QByteArray whole =
        R"([{"id": "A", "mode": "chat", "finalText": "\"嗨\" 😀"}, {"id": "B"}])";
    for (qsizetype length = 0; length < whole.size(); ++length) {
        putFile(whole.left(length));
        EXPECT_EQ(ids(), QStringList()) << "cut at " << length;
        EXPECT_EQ(file(), whole.left(length)) << "cut at " << length;

        save(u"a"_s, u"b"_s);
        background.drain();
        EXPECT_EQ(reread().size(), 1) << "cut at " << length;
    }
}

TEST_F(HistoryFailureTest, AFullDiskLeavesTheOldFileWhole)
{
    save(u"one"_s, u"1"_s);
    const QByteArray before = file();

    save(u"two"_s, QString(100'000, u'x'));
    {
        const testing::FullDisk full(static_cast<rlim_t>(before.size()) + 10);
        background.drain();
    }

    EXPECT_EQ(file(), before);
    EXPECT_EQ(QDir(folder.filePath(u"Tavrin"_s)).entryList(QDir::Files | QDir::Hidden).size(), 1);
    EXPECT_EQ(store.historyRecords().size(), 1);

    save(u"three"_s, u"3"_s);
    background.drain();
    EXPECT_EQ(reread().size(), 2);
}

TEST_F(HistoryFailureTest, AFullDiskLosesNoOldPreference)
{
    preferences.setValue(keys::transcriptionHistory,
        QVariantList{QVariantMap{{u"id"_s, u"A"_s}, {u"mode"_s, QString(100'000, u'x')}}});
    {
        const testing::FullDisk full(1000);
        EXPECT_EQ(ids(), QStringList());
    }
    EXPECT_TRUE(preferences.value(keys::transcriptionHistory).isValid());
    EXPECT_EQ(ids(), QStringList{u"A"_s});
}

TEST_F(HistoryFailureTest, AReadOnlyFolderKeepsWhatIsInIt)
{
    save(u"one"_s, u"1"_s);
    const QByteArray before = file();
    {
        const testing::OrdinaryUser user(folder.path());
        const testing::ReadOnlyFolder readOnly(folder.filePath(u"Tavrin"_s));
        save(u"two"_s, u"2"_s);
        background.drain();
        EXPECT_EQ(store.historyRecords().size(), 1);
        EXPECT_EQ(file(), before);
    }
    save(u"three"_s, u"3"_s);
    EXPECT_EQ(store.historyRecords().size(), 2);
}

TEST_F(HistoryFailureTest, WhatReadsShowIsWhatTheFileHoldsWhenAllIsWritten)
{
    const QString place = folder.filePath(u"Tavrin"_s);
    const QString away = folder.filePath(u"away"_s);
    save(u"one"_s, u"1"_s);
    background.drain();

    save(u"two"_s, u"2"_s);
    ASSERT_TRUE(QDir().rename(place, away));
    putFile("in the way", u"Tavrin"_s);
    save(u"three"_s, u"3"_s); // While the other is being written.
    ASSERT_TRUE(QFile::remove(place));
    ASSERT_TRUE(QDir().rename(away, place));
    background.drain();

    EXPECT_EQ(store.historyRecords().size(), 3);
    EXPECT_EQ(reread().size(), 3);
}

TEST_F(HistoryFailureTest, EveryFieldOfARecordMayHoldWhatNoJsonCanHold)
{
    const QString half(QChar(0xDE00));
    store.saveHistoryTranscript({.transcript = half,
        .finalText = half,
        .delivery = half,
        .mode = half,
        .targetLanguage = half,
        .application = {{half, half}}});
    background.drain();

    const HistoryRecords records = reread();
    ASSERT_EQ(records.size(), 1);
    const QJsonObject record = records.first().object();
    const QString replaced = u"\uFFFD"_s;
    for (const auto key :
        {"transcript"_L1, "finalText"_L1, "delivery"_L1, "mode"_L1, "targetLanguage"_L1})
        EXPECT_EQ(record.value(key).toString(), replaced) << key.data();
    EXPECT_EQ(record.value("application"_L1).toObject(), (QJsonObject{{replaced, replaced}}));
    EXPECT_EQ(record.value("inputCharacters"_L1), 1);
}

TEST_F(HistoryFailureTest, AnOldPreferenceWithHalvesOfPairsIsReadable)
{
    preferences.setValue(keys::transcriptionHistory,
        QVariantList{
            QVariantMap{{u"id"_s, u"A"_s}, {u"finalText"_s, u"x"_s + QChar(0xD83D) + u"y"_s}}});

    const HistoryRecords records = store.historyRecords();

    ASSERT_EQ(records.size(), 1);
    EXPECT_EQ(records.first().object().value("finalText"_L1).toString(), u"x\uFFFDy"_s);
}

TEST_F(HistoryFailureTest, TextsThatAreEasilySpoiltAreKept)
{
    const QString nul = u"a"_s + QChar(u'\0') + u"b"_s;
    const QString marks = u"\u202Eright to left\u202C \u200Fعربى\u200F \u2066x\u2069"_s;
    const QString lines = u"a\r\nb\rc\nd\u2028e\u2029\t\u0001"_s;
    for (const QString& text : {nul, marks, lines, u"\uFEFF"_s, QString(QChar(0xFFFF))}) {
        save(text, text);
        background.drain();
        const QJsonObject record = reread().first().object();
        EXPECT_EQ(record.value("transcript"_L1).toString(), text);
        EXPECT_EQ(record.value("finalText"_L1).toString(), text);
        EXPECT_EQ(record.value("outputCharacters"_L1), text.size());
    }
}

TEST_F(HistoryFailureTest, AMegabyteOfTextIsKept)
{
    const QString text = u"中文😀 \"quoted\" "_s.repeated(1'000'000 / 14 + 1);
    ASSERT_GE(text.size(), 1'000'000);
    save(text, text);
    background.drain();
    EXPECT_EQ(reread().first().object().value("finalText"_L1).toString(), text);
}

} // namespace
} // namespace tavrin

#include "app/StoredSessionHistory.h"

#include "history/HistoryFixture.h"
#include "platform/PreferenceKeys.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace tavrin {
namespace {

class StoredSessionHistoryTest : public testing::HistoryFixture {
protected:
    StoredSessionHistory history{store};

    void SetUp() override
    {
        HistoryFixture::SetUp();
        preferences.setValue(keys::historyRetention, u"forever"_s);
    }

    QJsonObject saved(const FinishedSession& session)
    {
        history.saveHistoryTranscript(session);
        return store.historyRecords().first().object();
    }
};

TEST_F(StoredSessionHistoryTest, EverythingASessionCameToIsKept)
{
    time.advance(250ms);
    const QJsonObject record = saved({
        .transcript = u"said"_s,
        .finalText = u"translated"_s,
        .delivery = u"自动输入已完成"_s,
        .mode = OperationMode::Translation,
        .targetLanguage = u"japanese"_s,
        .audio = 12500ms,
        .processing = 3250ms,
        .application = {.name = u"Notes"_s,
            .bundleId = u"org.example.notes"_s,
            .windowHint = u"slack"_s,
            .focusedRole = u"AXTextArea"_s},
    });

    EXPECT_EQ(record.value("transcript"_L1).toString(), u"said"_s);
    EXPECT_EQ(record.value("finalText"_L1).toString(), u"translated"_s);
    EXPECT_EQ(record.value("delivery"_L1).toString(), u"自动输入已完成"_s);
    EXPECT_EQ(record.value("mode"_L1).toString(), u"translation"_s);
    EXPECT_EQ(record.value("targetLanguage"_L1).toString(), u"japanese"_s);
    EXPECT_EQ(record.value("audioSeconds"_L1).toDouble(), 12.5);
    EXPECT_EQ(record.value("processingSeconds"_L1).toDouble(), 3.25);
    EXPECT_EQ(record.value("timestamp"_L1).toDouble(), time.sinceEpoch().count());
    EXPECT_EQ(record.value("application"_L1).toObject(),
        (QJsonObject{{u"name"_s, u"Notes"_s}, {u"bundleId"_s, u"org.example.notes"_s},
            {u"windowHint"_s, u"slack"_s}, {u"focusedRole"_s, u"AXTextArea"_s}}));
}

TEST_F(StoredSessionHistoryTest, OnlyATranslationHasATargetLanguage)
{
    for (const OperationMode mode : {OperationMode::Dictation, OperationMode::Chat}) {
        FinishedSession session;
        session.transcript = u"said"_s;
        session.finalText = u"written"_s;
        session.mode = mode;
        const QJsonObject record = saved(session);
        EXPECT_FALSE(record.contains("targetLanguage"_L1));
        EXPECT_EQ(record.value("mode"_L1).toString(), operationName(mode));
    }
}

} // namespace
} // namespace tavrin

#include "fuzz/Input.h"
#include "fuzz/Require.h"
#include "history/HistoryJson.h"
#include "history/HistoryStore.h"
#include "history/PortableJson.h"
#include "platform/preferences/PreferenceKeys.h"
#include "support/ports/InMemoryBackgroundQueue.h"
#include "support/ports/InMemoryPreferences.h"
#include "support/ports/InMemorySystemInfo.h"
#include "support/ports/VirtualTime.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QTemporaryDir>

#include <algorithm>

// What the history makes of any file: the first bytes choose the setting and where the file lies,
// the rest is its content.

namespace tavrin::fuzz {
namespace {

using namespace Qt::StringLiterals;

QByteArray written(const HistoryRecords& records)
{
    QByteArray text;
    const bool whole = writeHistory(records, [&](const QByteArray& piece) {
        text.append(piece);
        return true;
    });
    require(whole, "everything is written");
    return text;
}

/// What is read is written so that it reads the same again, with nothing left to mend.
void checkRoundTrip(const QByteArray& content)
{
    const std::optional<ParsedHistory> first = parseHistory(content);
    if (!first)
        return;
    const std::optional<ParsedHistory> second = parseHistory(written(first->records));
    require(second.has_value(), "what is written can be read");
    require(second->records.size() == first->records.size(), "no record is lost");
    for (qsizetype i = 0; i < first->records.size(); ++i) {
        const HistoryRecord& before = first->records[i];
        const HistoryRecord& after = second->records[i];
        require(before.json() == after.json(), "a record keeps its text");
        require(before.id() == after.id(), "a record keeps its id");
        require(before.timestamp() == after.timestamp(), "a record keeps its time");
    }
}

/// How deep the brackets of @p json go; those in strings count too, which does no harm here.
qsizetype depthOf(const QByteArray& json)
{
    qsizetype depth = 0;
    qsizetype deepest = 0;
    for (const char character : json) {
        if (character == '[' || character == '{')
            deepest = std::max(deepest, ++depth);
        else if (character == ']' || character == '}')
            --depth;
    }
    return deepest;
}

/// Beside a reader that knows nothing of ours: every object of an array is a record, with what it
/// held.
void checkAgainstPlainReader(const QByteArray& content)
{
    // Written once by the plain reader: what it alone reads is gone then.
    const QByteArray plain = portableJson(QJsonDocument::fromJson(content));
    const QJsonDocument document = QJsonDocument::fromJson(plain);
    constexpr qsizetype deepest = 500;
    if (!document.isArray() || depthOf(plain) > deepest)
        return;
    const std::optional<ParsedHistory> history = parseHistory(plain);
    require(history.has_value(), "an array is a history");
    qsizetype next = 0;
    for (const QJsonValueConstRef element : document.array()) {
        if (!element.isObject())
            continue;
        require(next < history->records.size(), "no record is lost");
        const HistoryRecord& record = history->records[next++];
        QJsonObject expected = element.toObject();
        if (!expected.value("id"_L1).isString())
            expected.insert("id"_L1, record.id());
        if (!expected.value("mode"_L1).isString())
            expected.insert("mode"_L1, u"dictation"_s);
        require(record.object() == expected, "a record holds what it held");
        require(record.transcript() == expected.value("transcript"_L1).toString()
                && record.finalText() == expected.value("finalText"_L1).toString(),
            "its texts are found without reading all of it");
        require(!record.id().isEmpty() || element[u"id"].isString(), "a record has an id");
    }
    require(next == history->records.size(), "nothing else is a record");
}

/// Where writing is quick, if there is such a place: every write of the history waits for the disk.
QString folderTemplate()
{
    const QString inMemory = u"/dev/shm"_s;
    const QString folder = QFileInfo(inMemory).isWritable() ? inMemory : QDir::tempPath();
    return folder + u"/tavrin-history-XXXXXX"_s;
}

/// A history in a folder that all inputs share.
class Fixture {
public:
    explicit Fixture(Input& input)
    {
        static const QTemporaryDir shared(folderTemplate());
        m_systemInfo.supportFolder = shared.path();
        for (const char* folder : {"Tavrin", "Sorvel"}) {
            QDir(shared.filePath(QLatin1StringView(folder))).removeRecursively();
            QDir().mkpath(shared.filePath(QLatin1StringView(folder)));
        }
        m_preferences.setValue(keys::historyRetention, retention(input.byte()));
        const std::uint8_t place = input.byte();
        m_transcript = input.text();
        const QByteArray content = input.rest();
        if (place % 4 == 1)
            m_preferences.setValue(keys::transcriptionHistory,
                QJsonDocument::fromJson(content).array().toVariantList());
        else
            put(content, place % 4 == 2 ? u"Sorvel"_s : u"Tavrin"_s);
    }

    void check()
    {
        HistoryStore store(ports());
        const HistoryRecords records = store.historyRecords();
        m_background.drain();
        require(HistoryStore(ports()).historyRecords().size() == records.size(),
            "what one reads the next one reads");

        store.saveHistoryTranscript({.transcript = m_transcript,
            .finalText = m_transcript,
            .mode = m_transcript,
            .application = {{m_transcript, m_transcript}}});
        m_background.drain();
        const HistoryRecords after = HistoryStore(ports()).historyRecords();
        if (m_preferences.value(keys::historyRetention) == u"none"_s) {
            require(after.size() == records.size(), "nothing is added");
            return;
        }
        require(after.size() == records.size() + 1, "a saved record is added to what was there");
        const QJsonObject saved = after.first().object();
        require(saved.value("inputCharacters"_L1) == m_transcript.size(), "units are counted");
        require(saved.value("transcript"_L1).toString() == wellFormed(m_transcript),
            "the text is kept");
        for (qsizetype i = 0; i < records.size(); ++i)
            require(after[i + 1].json() == records[i].json(), "the others stay what they are");
    }

private:
    static constexpr auto fileName = "/TranscriptionHistory.json"_L1;

    [[nodiscard]] static QString retention(std::uint8_t choice)
    {
        switch (choice % 4) {
        case 1:
            return u"none"_s;
        case 2:
            return u"7"_s;
        case 3:
            return u"abc"_s;
        default:
            return u"forever"_s;
        }
    }

    /// The text with replacement characters for halves of surrogate pairs.
    [[nodiscard]] static QString wellFormed(QString text)
    {
        for (qsizetype i = 0; i < text.size(); ++i) {
            const bool isPair = text.at(i).isHighSurrogate() && i + 1 < text.size()
                && text.at(i + 1).isLowSurrogate();
            if (isPair)
                ++i;
            else if (text.at(i).isSurrogate())
                text[i] = QChar::ReplacementCharacter;
        }
        return text;
    }

    void put(const QByteArray& content, const QString& folder) const
    {
        QFile file(m_systemInfo.supportFolder + u'/' + folder + fileName);
        require(file.open(QIODevice::WriteOnly) && file.write(content) == content.size(),
            "the file can be written");
    }

    [[nodiscard]] HistoryStore::Ports ports()
    {
        return {m_preferences, m_time, m_systemInfo, m_background};
    }

    testing::VirtualTime m_time;
    testing::InMemoryPreferences m_preferences;
    testing::InMemorySystemInfo m_systemInfo;
    testing::InMemoryBackgroundQueue m_background;
    QString m_transcript;
};

} // namespace
} // namespace tavrin::fuzz

// NOLINTNEXTLINE(readability-identifier-naming): the name that libFuzzer calls.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace tavrin::fuzz;
    const QByteArray content = Input(data, size).rest();
    checkRoundTrip(content);
    checkAgainstPlainReader(content);
    Input input(data, size);
    Fixture(input).check();
    return 0;
}

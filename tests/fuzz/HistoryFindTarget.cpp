#include "app/pages/history/HistoryFind.h"
#include "fuzz/Input.h"
#include "fuzz/Require.h"

// What is found of any text in any records, beside the search of a plain text.

namespace tavrin::fuzz {
namespace {

using namespace Qt::StringLiterals;

/// A text as it comes back from the file, which has no halves of surrogate pairs.
QString kept(const HistoryRecord& record, QLatin1StringView key)
{
    return record.object().value(key).toString();
}

void checkFind(const HistoryRecords& records, const QString& query, qsizetype bytes)
{
    HistoryFind find(records, query);
    qsizetype looked = 0;
    while (!find.lookOn(bytes)) {
        require(find.looked() > looked, "each piece is one record at least");
        looked = find.looked();
    }
    require(find.looked() == records.size(), "every record is looked at");
    QList<qsizetype> expected;
    for (qsizetype i = 0; i < records.size(); ++i) {
        if (kept(records[i], "transcript"_L1).contains(query, Qt::CaseInsensitive)
            || kept(records[i], "finalText"_L1).contains(query, Qt::CaseInsensitive))
            expected.append(i);
    }
    require(find.matches() == expected, "what a text holds is found, and nothing else");
}

void checkRanges(const QString& query, const QString& text)
{
    qsizetype end = 0;
    for (const TextRange& range : rangesOf(query, text)) {
        require(range.location >= end && range.length > 0, "ranges follow one another");
        end = range.location + range.length;
        require(end <= text.size(), "ranges are of the text");
        require(text.mid(range.location, range.length).compare(query, Qt::CaseInsensitive) == 0,
            "a range holds what is looked for");
    }
}

} // namespace
} // namespace tavrin::fuzz

// NOLINTNEXTLINE(readability-identifier-naming): the name that libFuzzer calls.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace tavrin::fuzz;
    using namespace Qt::StringLiterals;
    Input input(data, size);
    QString query = input.text();
    const qsizetype bytes = input.byte();
    tavrin::HistoryRecords records;
    for (int count = input.byte() % 4; count >= 0; --count)
        records.append(tavrin::HistoryRecord::fromObject(
            {{u"transcript"_s, input.text()}, {u"finalText"_s, input.text() + query}}));
    const QString rest = input.restAsText();
    records.append(tavrin::HistoryRecord::fromObject({{u"finalText"_s, rest}}));
    checkRanges(query, rest);
    if (query.isEmpty())
        query = u"a"_s;
    checkFind(records, query, bytes);
    checkFind(records, query.left(1), bytes);
    return 0;
}

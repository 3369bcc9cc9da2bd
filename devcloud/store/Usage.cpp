#include "devcloud/store/Usage.h"

#include "devcloud/store/Database.h"

namespace tavrin::devcloud {
namespace {

constexpr std::int64_t keptSeconds = std::int64_t{90} * 24 * 3600;

} // namespace

void addUsage(
    Transaction& transaction, std::int64_t account, const UsageEntry& entry, std::int64_t now)
{
    transaction
        .statement("INSERT OR IGNORE INTO usage(account, request, source, operation, provider,"
                   " model, input_characters, output_characters, audio_seconds, latency_ms, status,"
                   " error_code, created) VALUES(?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)")
        .bind(account)
        .bind(entry.requestId)
        .bind(entry.source)
        .bind(entry.operation)
        .bind(entry.provider)
        .bind(entry.model)
        .bind(entry.inputCharacters)
        .bind(entry.outputCharacters)
        .bind(entry.audioSeconds)
        .bind(entry.latencyMs)
        .bind(entry.status)
        .bind(entry.errorCode)
        .bind(now)
        .run();
}

UsageTotals usageTotals(Transaction& transaction, std::int64_t account, std::string_view source)
{
    Statement row = transaction.statement(
        "SELECT COUNT(*), TOTAL(input_characters), TOTAL(output_characters) FROM usage"
        " WHERE account = ? AND source = ?");
    row.bind(account).bind(source);
    row.step();
    return {row.number(0), row.number(1), row.number(2)};
}

int removeOldUsage(Transaction& transaction, std::int64_t now, std::int64_t most)
{
    transaction
        .statement("DELETE FROM usage WHERE rowid IN"
                   " (SELECT rowid FROM usage WHERE created <= ? LIMIT ?)")
        .bind(now - keptSeconds)
        .bind(most)
        .run();
    return transaction.changedRows();
}

} // namespace tavrin::devcloud

#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace tavrin::devcloud {

class Transaction;

/// One finished operation: what was done and how much, never what was said.
struct UsageEntry {
    std::string requestId{}; ///< A repeat of one of the same account is ignored.
    std::string source{}; ///< "server" for our own answers, "client" for a client's report.
    std::string operation{};
    std::string provider{};
    std::string model{};
    std::int64_t inputCharacters = 0;
    std::int64_t outputCharacters = 0;
    std::int64_t audioSeconds = 0;
    std::int64_t latencyMs = 0;
    std::string status{};
    std::string errorCode{};
};

struct UsageTotals {
    std::int64_t requests = 0;
    std::int64_t inputCharacters = 0;
    std::int64_t outputCharacters = 0;
};

void addUsage(
    Transaction& transaction, std::int64_t account, const UsageEntry& entry, std::int64_t now);
UsageTotals usageTotals(Transaction& transaction, std::int64_t account, std::string_view source);
/// Forgets what is older than 90 days, at most @p most rows; how many it were.
int removeOldUsage(Transaction& transaction, std::int64_t now, std::int64_t most = 1000);

} // namespace tavrin::devcloud

#include "devcloud/Commands.h"
#include "devcloud/store/Accounts.h"
#include "devcloud/store/Database.h"
#include "devcloud/store/Sessions.h"
#include "devcloud/text/Utf8.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <ctime>

namespace tavrin::devcloud {
namespace {

std::string printedTime(std::int64_t time)
{
    const std::time_t seconds = time;
    std::tm parts{};
    gmtime_r(&seconds, &parts);
    std::array<char, 32> text{};
    std::strftime(text.data(), text.size(), "%Y-%m-%d %H:%M UTC", &parts);
    return text.data();
}

/// Whether a terminal obeys the character instead of showing it: controls, breaks of lines, and
/// what turns the direction of all that follows.
bool steersTerminal(char32_t c)
{
    const bool isControl = c < 0x20 || (c >= 0x7f && c < 0xa0);
    const bool isBreak = c == 0x2028 || c == 0x2029;
    const bool turns = c == 0x061c || c == 0x200e || c == 0x200f || (c >= 0x202a && c <= 0x202e)
        || (c >= 0x2066 && c <= 0x2069);
    return isControl || isBreak || turns;
}

/// What a client said of itself must not steer the terminal of who reads it.
std::string printable(const std::string& text)
{
    std::u32string characters = decodeUtf8(text);
    std::ranges::replace_if(characters, steersTerminal, U'?');
    return encodeUtf8(characters);
}

std::optional<Account> accountOf(Transaction& transaction, const Options& options)
{
    const auto email = normalizedEmail(options.email);
    auto account = email ? findAccount(transaction, *email) : std::nullopt;
    if (!account)
        std::fprintf(stderr, "tavrin-devcloud: no account: %s\n", options.email.c_str());
    return account;
}

int endedOf(Transaction& transaction, const Options& options, std::int64_t account)
{
    if (options.sessions.empty())
        return endSessionsOf(transaction, account);
    int ended = 0;
    for (const std::int64_t session : options.sessions)
        ended += endSessionsOf(transaction, account, session);
    return ended;
}

} // namespace

int listSessions(const Options& options)
{
    Database database(options.data / databaseName);
    Transaction transaction(database, Transaction::Access::Read);
    const auto account = accountOf(transaction, options);
    if (!account)
        return 1;
    for (const ListedSession& session : sessionsOf(transaction, account->id, std::time(nullptr)))
        std::printf("%lld  signed in %s  refreshed %s  %s  %s\n",
            static_cast<long long>(session.id), printedTime(session.begun).c_str(),
            printedTime(session.refreshed).c_str(), printable(session.device.clientVersion).c_str(),
            printable(session.device.name).c_str());
    return 0;
}

int revokeSessions(const Options& options)
{
    Database database(options.data / databaseName);
    Transaction transaction(database);
    int ended = 0;
    if (options.allAccounts) {
        ended = endAllSessions(transaction);
    } else {
        const auto account = accountOf(transaction, options);
        if (!account)
            return 1;
        ended = endedOf(transaction, options, account->id);
    }
    transaction.commit();
    std::printf("%d %s ended\n", ended, ended == 1 ? "session" : "sessions");
    return !options.sessions.empty() && ended == 0 ? 1 : 0;
}

} // namespace tavrin::devcloud

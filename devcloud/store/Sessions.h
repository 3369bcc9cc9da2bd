#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tavrin::devcloud {

class Transaction;

/// How long the tokens of a session live.
struct TokenLives {
    std::chrono::seconds access{std::chrono::hours(1)};
    std::chrono::seconds refresh{std::chrono::hours(24 * 30)};
    /// A client may refresh twice at once: for so long, a token that was exchanged may be shown
    /// again whatever became of its successor.
    std::chrono::seconds together{10};
    /// For so long an answer may still be on its way to the client, who waits 120 seconds at most.
    std::chrono::seconds patience{150};
};

/// The installation that signed in, as it described itself.
struct Device {
    std::string id;
    std::string name;
    std::string clientVersion;
};

struct TokenPair {
    std::string access;
    std::string refresh;
};

struct SessionOwner {
    std::int64_t account = 0;
    std::string email;
    std::string unnotedPair{}; ///< For noteUse(): set while no use of the token's pair is noted.
};

/// One sign-in that goes on. Times are seconds since 1970.
struct ListedSession {
    std::int64_t id = 0;
    Device device;
    std::int64_t begun = 0;
    std::int64_t refreshed = 0; ///< When its newest tokens were given out.
};

struct RefreshedSession {
    TokenPair tokens;
    SessionOwner owner;
};

/// Starts a session: a family of tokens that descend from one sign-in.
TokenPair startSession(Transaction& transaction, std::int64_t account, const Device& device,
    const TokenLives& lives, std::int64_t now);

/// Whose unexpired access token this is.
std::optional<SessionOwner> ownerOfAccessToken(
    Transaction& transaction, std::string_view token, std::int64_t now);

/// Notes that a client has the pair: its parent may no longer be shown. @p pair is unnotedPair.
void noteUse(Transaction& transaction, std::string_view pair);

/// Exchanges a refresh token for a new pair. Commit in any case.
///
/// One that was exchanged before means that the answer was lost, unless a pair that came of it has
/// been used: then two hold what one should, and the whole family ends. When no answer can be on
/// its way any more, the pairs that never arrived end; showing one of them later, or the tokens of
/// two pairs that came of one, ends the family too, and so does a token that is no longer kept.
std::optional<RefreshedSession> refreshSession(
    Transaction& transaction, std::string_view token, const TokenLives& lives, std::int64_t now);

/// Ends the session of an access token, expired or not; false when it is unknown.
bool endSession(Transaction& transaction, std::string_view accessToken);

/// The sign-ins of an account that go on, the oldest first.
std::vector<ListedSession> sessionsOf(
    Transaction& transaction, std::int64_t account, std::int64_t now);
/// Ends one session of an account, or all; how many there were.
int endSessionsOf(
    Transaction& transaction, std::int64_t account, std::optional<std::int64_t> session = {});
int endAllSessions(Transaction& transaction);

/// Removes what no session needs any more, at most @p most rows of a kind; how many it were.
int removeDeadSessions(Transaction& transaction, std::int64_t now, std::int64_t most = 1000);

} // namespace tavrin::devcloud

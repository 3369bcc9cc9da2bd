#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tavrin::devcloud {

class Transaction;

/// How long the tokens of a session live.
struct TokenLives {
    std::chrono::seconds access{std::chrono::hours(1)};
    std::chrono::seconds refresh{std::chrono::hours(24 * 30)};
    /// How long a refresh token may be shown again after it was exchanged. A client may refresh
    /// twice at once, and an answer may be lost on its way; later, showing it again is a theft.
    std::chrono::seconds reuseGrace{10};
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

/// Exchanges a refresh token for a new pair. A token that was exchanged longer than the grace ago
/// ends its whole family. Commit in either case.
std::optional<RefreshedSession> refreshSession(
    Transaction& transaction, std::string_view token, const TokenLives& lives, std::int64_t now);

/// Ends the session of an access token, expired or not; false when it is unknown.
bool endSession(Transaction& transaction, std::string_view accessToken);

/// Removes what no session needs any more.
void removeDeadSessions(Transaction& transaction, std::int64_t now);

} // namespace tavrin::devcloud

#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tavrin::devcloud {

class Transaction;

/// An account on its way: the newest code of an address, and the token it was exchanged for.
struct Registration {
    std::string inviteDigest;
    std::string codeDigest;
    std::int64_t expires = 0;
    std::int64_t wrongTries = 0;
    std::optional<std::string> tokenDigest;
    std::int64_t tokenExpires = 0;
};

/// Replaces whatever was under way for @p email.
void beginRegistration(Transaction& transaction, std::string_view email,
    std::string_view inviteDigest, std::string_view codeDigest, std::int64_t expires);
std::optional<Registration> findRegistration(Transaction& transaction, std::string_view email);
void countWrongTry(Transaction& transaction, std::string_view email);
void setRegistrationToken(Transaction& transaction, std::string_view email,
    std::string_view tokenDigest, std::int64_t expires);
/// Removes at most @p most that have expired; how many it were.
int removeDeadRegistrations(Transaction& transaction, std::int64_t now, std::int64_t most = 1000);

} // namespace tavrin::devcloud

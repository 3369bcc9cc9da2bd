#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tavrin::devcloud {

class Database;
class Transaction;

struct Account {
    std::int64_t id = 0;
    std::string email;
    std::string passwordHash;
};

/// @p typed as accounts are kept: without surrounding white space, in small letters. Empty when it
/// is no address: it needs something on both sides of one "@", and neither white space nor control
/// characters, which could add lines to an e-mail.
std::optional<std::string> normalizedEmail(std::string_view typed);

std::optional<Account> findAccount(Transaction& transaction, std::string_view email);
std::int64_t addAccount(Transaction& transaction, std::string_view email,
    std::string_view passwordHash, std::int64_t now);
/// A new password ends every session of the account: whoever had the old one may have some.
void setPassword(Transaction& transaction, std::int64_t account, std::string_view passwordHash);

void addInvite(Transaction& transaction, std::string_view inviteDigest, std::int64_t now);
bool inviteIsFree(Transaction& transaction, std::string_view inviteDigest);
/// Whether the invite is the one that made @p account.
bool inviteMade(Transaction& transaction, std::string_view inviteDigest, std::int64_t account);
/// Uses the invite up; false when it does not exist or was used before.
bool useInvite(Transaction& transaction, std::string_view inviteDigest, std::int64_t now);
/// Notes which account a used invite has made.
void noteMadeAccount(Transaction& transaction, std::string_view inviteDigest, std::int64_t account);

} // namespace tavrin::devcloud

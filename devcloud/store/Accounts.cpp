#include "devcloud/store/Accounts.h"

#include "devcloud/store/Database.h"
#include "devcloud/text/Ascii.h"

#include <algorithm>

namespace tavrin::devcloud {
namespace {

constexpr std::size_t longestEmail = 254;

bool mayStandInEmail(char c)
{
    const auto unit = static_cast<unsigned char>(c);
    return unit > 0x20 && unit != 0x7f;
}

} // namespace

std::optional<std::string> normalizedEmail(std::string_view typed)
{
    const std::string_view trimmed = trimmedAscii(typed);
    if (trimmed.size() > longestEmail || !std::ranges::all_of(trimmed, mayStandInEmail))
        return std::nullopt;
    const std::size_t at = trimmed.find('@');
    if (at == std::string_view::npos || at == 0 || at + 1 == trimmed.size()
        || trimmed.find('@', at + 1) != std::string_view::npos)
        return std::nullopt;
    return lowerAscii(trimmed);
}

std::optional<Account> findAccount(Transaction& transaction, std::string_view email)
{
    Statement row =
        transaction.statement("SELECT id, email, password FROM accounts WHERE email = ?");
    row.bind(email);
    if (!row.step())
        return std::nullopt;
    return Account{row.number(0), row.text(1), row.text(2)};
}

std::int64_t addAccount(Transaction& transaction, std::string_view email,
    std::string_view passwordHash, std::int64_t now)
{
    transaction.statement("INSERT INTO accounts(email, password, created) VALUES(?, ?, ?)")
        .bind(email)
        .bind(passwordHash)
        .bind(now)
        .run();
    return transaction.lastInsertedId();
}

void setPassword(Transaction& transaction, std::int64_t account, std::string_view passwordHash)
{
    transaction.statement("UPDATE accounts SET password = ? WHERE id = ?")
        .bind(passwordHash)
        .bind(account)
        .run();
    transaction.statement("DELETE FROM families WHERE account = ?").bind(account).run();
}

void addInvite(Transaction& transaction, std::string_view inviteDigest, std::int64_t now)
{
    transaction.statement("INSERT INTO invites(hash, created) VALUES(?, ?)")
        .bind(inviteDigest)
        .bind(now)
        .run();
}

bool inviteIsFree(Transaction& transaction, std::string_view inviteDigest)
{
    Statement row = transaction.statement("SELECT 1 FROM invites WHERE hash = ? AND used IS NULL");
    return row.bind(inviteDigest).step();
}

bool inviteMade(Transaction& transaction, std::string_view inviteDigest, std::int64_t account)
{
    Statement row = transaction.statement("SELECT 1 FROM invites WHERE hash = ? AND account = ?");
    return row.bind(inviteDigest).bind(account).step();
}

bool useInvite(Transaction& transaction, std::string_view inviteDigest, std::int64_t now)
{
    transaction.statement("UPDATE invites SET used = ? WHERE hash = ? AND used IS NULL")
        .bind(now)
        .bind(inviteDigest)
        .run();
    return transaction.changedRows() == 1;
}

void noteMadeAccount(Transaction& transaction, std::string_view inviteDigest, std::int64_t account)
{
    transaction.statement("UPDATE invites SET account = ? WHERE hash = ?")
        .bind(account)
        .bind(inviteDigest)
        .run();
}

} // namespace tavrin::devcloud

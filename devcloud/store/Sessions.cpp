#include "devcloud/store/Sessions.h"

#include "devcloud/security/Secrets.h"
#include "devcloud/store/Database.h"

namespace tavrin::devcloud {
namespace {

TokenPair addPair(
    Transaction& transaction, std::int64_t family, const TokenLives& lives, std::int64_t now)
{
    TokenPair pair{newToken(), newToken()};
    transaction.statement("DELETE FROM access_tokens WHERE family = ? AND expires <= ?")
        .bind(family)
        .bind(now)
        .run();
    transaction.statement("INSERT INTO access_tokens(hash, family, expires) VALUES(?, ?, ?)")
        .bind(digest(pair.access))
        .bind(family)
        .bind(now + lives.access.count())
        .run();
    transaction.statement("INSERT INTO refresh_tokens(hash, family, expires) VALUES(?, ?, ?)")
        .bind(digest(pair.refresh))
        .bind(family)
        .bind(now + lives.refresh.count())
        .run();
    return pair;
}

void endFamily(Transaction& transaction, std::int64_t family)
{
    transaction.statement("DELETE FROM families WHERE id = ?").bind(family).run();
}

} // namespace

TokenPair startSession(Transaction& transaction, std::int64_t account, const Device& device,
    const TokenLives& lives, std::int64_t now)
{
    transaction
        .statement("INSERT INTO families(account, device_id, device_name, client_version, created)"
                   " VALUES(?, ?, ?, ?, ?)")
        .bind(account)
        .bind(device.id)
        .bind(device.name)
        .bind(device.clientVersion)
        .bind(now)
        .run();
    return addPair(transaction, transaction.lastInsertedId(), lives, now);
}

std::optional<SessionOwner> ownerOfAccessToken(
    Transaction& transaction, std::string_view token, std::int64_t now)
{
    Statement row =
        transaction.statement("SELECT accounts.id, accounts.email FROM access_tokens"
                              " JOIN families ON families.id = access_tokens.family"
                              " JOIN accounts ON accounts.id = families.account"
                              " WHERE access_tokens.hash = ? AND access_tokens.expires > ?");
    row.bind(digest(token)).bind(now);
    if (!row.step())
        return std::nullopt;
    return SessionOwner{row.number(0), row.text(1)};
}

std::optional<RefreshedSession> refreshSession(
    Transaction& transaction, std::string_view token, const TokenLives& lives, std::int64_t now)
{
    const std::string hash = digest(token);
    Statement row = transaction.statement(
        "SELECT refresh_tokens.family, refresh_tokens.expires, refresh_tokens.consumed,"
        " accounts.id, accounts.email FROM refresh_tokens"
        " JOIN families ON families.id = refresh_tokens.family"
        " JOIN accounts ON accounts.id = families.account WHERE refresh_tokens.hash = ?");
    row.bind(hash);
    if (!row.step() || row.number(1) <= now)
        return std::nullopt;
    const std::int64_t family = row.number(0);
    if (row.isNull(2)) {
        transaction.statement("UPDATE refresh_tokens SET consumed = ? WHERE hash = ?")
            .bind(now)
            .bind(hash)
            .run();
    } else if (now - row.number(2) > lives.reuseGrace.count()) {
        endFamily(transaction, family);
        return std::nullopt;
    }
    return RefreshedSession{
        addPair(transaction, family, lives, now), SessionOwner{row.number(3), row.text(4)}};
}

bool endSession(Transaction& transaction, std::string_view accessToken)
{
    Statement row = transaction.statement("SELECT family FROM access_tokens WHERE hash = ?");
    row.bind(digest(accessToken));
    if (!row.step())
        return false;
    endFamily(transaction, row.number(0));
    return true;
}

void removeDeadSessions(Transaction& transaction, std::int64_t now)
{
    transaction.statement("DELETE FROM refresh_tokens WHERE expires <= ?").bind(now).run();
    transaction
        .statement("DELETE FROM families WHERE NOT EXISTS"
                   " (SELECT 1 FROM refresh_tokens WHERE family = families.id)")
        .run();
}

} // namespace tavrin::devcloud

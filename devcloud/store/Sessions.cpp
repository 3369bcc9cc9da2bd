#include "devcloud/store/Sessions.h"

#include "devcloud/security/Secrets.h"
#include "devcloud/store/Database.h"

#include <utility>

namespace tavrin::devcloud {
namespace {

/// How many tokens of each kind a family keeps: enough to let requests under way end, and no more
/// however often it refreshes.
constexpr std::int64_t keptTokens = 16;

/// Between the key of its family, which all refresh tokens of it share, and what is a token's own.
/// The key tells whose token it was when the token itself is kept no more.
constexpr char keyEnd = '.';

/// Empty in a token of a version without keys.
std::string_view keyOf(std::string_view refreshToken)
{
    const std::size_t end = refreshToken.find(keyEnd);
    return end == std::string_view::npos ? std::string_view() : refreshToken.substr(0, end);
}

/// A refresh token that was shown.
struct ShownToken {
    std::string hash;
    std::int64_t family = 0;
    std::string parent; ///< Empty: of the sign-in itself.
    std::optional<std::int64_t> exchanged;
    bool isEnded = false;
    SessionOwner owner;
};

void forgetOldTokens(Transaction& transaction, std::int64_t family, std::string_view keptHash)
{
    for (const char* sql : {"DELETE FROM access_tokens WHERE family = ?1 AND hash <> ?2 AND rowid"
                            " NOT IN (SELECT rowid FROM access_tokens WHERE family = ?1"
                            " ORDER BY rowid DESC LIMIT ?3)",
             "DELETE FROM refresh_tokens WHERE family = ?1 AND hash <> ?2 AND rowid"
             " NOT IN (SELECT rowid FROM refresh_tokens WHERE family = ?1"
             " ORDER BY rowid DESC LIMIT ?3)"})
        transaction.statement(sql).bind(family).bind(keptHash).bind(keptTokens).run();
}

/// @param shown the refresh token that the pair is given for; empty at a sign-in.
TokenPair addPair(Transaction& transaction, std::int64_t family, std::string_view shown,
    const TokenLives& lives, std::int64_t now)
{
    const std::string parent = shown.empty() ? std::string() : digest(shown);
    const std::string key = keyOf(shown).empty() ? newToken() : std::string(keyOf(shown));
    TokenPair pair{newToken(), key + keyEnd + newToken()};
    transaction.statement("DELETE FROM access_tokens WHERE family = ? AND expires <= ?")
        .bind(family)
        .bind(now)
        .run();
    transaction
        .statement("INSERT INTO access_tokens(hash, family, expires, pair) VALUES(?, ?, ?, ?)")
        .bind(digest(pair.access))
        .bind(family)
        .bind(now + lives.access.count())
        .bind(digest(pair.refresh))
        .run();
    transaction
        .statement("INSERT INTO refresh_tokens(hash, family, expires, parent) VALUES(?, ?, ?, ?)")
        .bind(digest(pair.refresh))
        .bind(family)
        .bind(now + lives.refresh.count())
        .bind(parent)
        .run();
    transaction.statement("UPDATE families SET refreshed = ?, key = ? WHERE id = ?")
        .bind(now)
        .bind(digest(key))
        .bind(family)
        .run();
    forgetOldTokens(transaction, family, parent);
    return pair;
}

void endFamily(Transaction& transaction, std::int64_t family)
{
    transaction.statement("DELETE FROM families WHERE id = ?").bind(family).run();
}

/// Ends the family that a refresh token was of, if it goes on.
void endFamilyOf(Transaction& transaction, std::string_view refreshToken)
{
    if (!keyOf(refreshToken).empty())
        transaction.statement("DELETE FROM families WHERE key = ?")
            .bind(digest(keyOf(refreshToken)))
            .run();
}

std::optional<ShownToken> findShown(
    Transaction& transaction, const std::string& hash, std::int64_t now)
{
    Statement row = transaction.statement(
        "SELECT refresh_tokens.family, refresh_tokens.expires, refresh_tokens.consumed,"
        " accounts.id, accounts.email, refresh_tokens.parent, refresh_tokens.ended"
        " FROM refresh_tokens JOIN families ON families.id = refresh_tokens.family"
        " JOIN accounts ON accounts.id = families.account WHERE refresh_tokens.hash = ?");
    row.bind(hash);
    if (!row.step() || row.number(1) <= now)
        return std::nullopt;
    ShownToken shown{hash, row.number(0), row.text(5), {}, !row.isNull(6),
        SessionOwner{row.number(3), row.text(4)}};
    if (!row.isNull(2))
        shown.exchanged = row.number(2);
    return shown;
}

bool siblingWasExchanged(Transaction& transaction, const ShownToken& token)
{
    Statement row = transaction.statement("SELECT 1 FROM refresh_tokens WHERE family = ?"
                                          " AND parent = ? AND hash <> ? AND consumed IS NOT NULL");
    return !token.parent.empty()
        && row.bind(token.family).bind(token.parent).bind(token.hash).step();
}

/// Whether pairs came of the token, and none of them has been used as far as is known.
bool answerMayBeLost(Transaction& transaction, const ShownToken& token)
{
    Statement row =
        transaction.statement("SELECT COUNT(*), COUNT(used) + COUNT(consumed) FROM refresh_tokens"
                              " WHERE family = ? AND parent = ?");
    row.bind(token.family).bind(token.hash).step();
    return row.number(0) > 0 && row.number(1) == 0;
}

void endSuccessors(Transaction& transaction, const ShownToken& token)
{
    transaction
        .statement("DELETE FROM access_tokens WHERE family = ?1 AND pair IN"
                   " (SELECT hash FROM refresh_tokens WHERE family = ?1 AND parent = ?2)")
        .bind(token.family)
        .bind(token.hash)
        .run();
    transaction.statement("UPDATE refresh_tokens SET ended = 1 WHERE family = ? AND parent = ?")
        .bind(token.family)
        .bind(token.hash)
        .run();
}

/// Whether the token may be exchanged, for the first time or again.
bool mayExchange(
    Transaction& transaction, const ShownToken& token, const TokenLives& lives, std::int64_t now)
{
    if (token.isEnded)
        return false;
    if (!token.exchanged)
        return !siblingWasExchanged(transaction, token);
    return now - *token.exchanged <= lives.together.count() || answerMayBeLost(transaction, token);
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
    return addPair(transaction, transaction.lastInsertedId(), {}, lives, now);
}

std::optional<SessionOwner> ownerOfAccessToken(
    Transaction& transaction, std::string_view token, std::int64_t now)
{
    Statement row = transaction.statement(
        "SELECT accounts.id, accounts.email, access_tokens.pair,"
        " refresh_tokens.used FROM access_tokens"
        " LEFT JOIN refresh_tokens ON refresh_tokens.hash = access_tokens.pair"
        " JOIN families ON families.id = access_tokens.family"
        " JOIN accounts ON accounts.id = families.account"
        " WHERE access_tokens.hash = ? AND access_tokens.expires > ?");
    row.bind(digest(token)).bind(now);
    if (!row.step())
        return std::nullopt;
    return SessionOwner{row.number(0), row.text(1), row.isNull(3) ? row.text(2) : std::string()};
}

void noteUse(Transaction& transaction, std::string_view pair)
{
    transaction.statement("UPDATE refresh_tokens SET used = 1 WHERE hash = ?").bind(pair).run();
}

std::optional<RefreshedSession> refreshSession(
    Transaction& transaction, std::string_view token, const TokenLives& lives, std::int64_t now)
{
    const auto shown = findShown(transaction, digest(token), now);
    if (!shown) {
        endFamilyOf(transaction, token);
        return std::nullopt;
    }
    if (!mayExchange(transaction, *shown, lives, now)) {
        endFamily(transaction, shown->family);
        return std::nullopt;
    }
    const bool isRepeated = shown->exchanged.has_value();
    const bool isLost = isRepeated && answerMayBeLost(transaction, *shown);
    if (isLost && now - *shown->exchanged > lives.patience.count())
        endSuccessors(transaction, *shown);
    // A repeat beside a successor in use does not begin the time anew, or it would never end.
    if (!isRepeated || isLost)
        transaction.statement("UPDATE refresh_tokens SET consumed = ? WHERE hash = ?")
            .bind(now)
            .bind(shown->hash)
            .run();
    return RefreshedSession{addPair(transaction, shown->family, token, lives, now), shown->owner};
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

std::vector<ListedSession> sessionsOf(
    Transaction& transaction, std::int64_t account, std::int64_t now)
{
    Statement row = transaction.statement(
        "SELECT id, device_id, device_name, client_version, created, refreshed FROM families"
        " WHERE account = ? AND EXISTS (SELECT 1 FROM refresh_tokens WHERE family = families.id"
        " AND expires > ?) ORDER BY id");
    row.bind(account).bind(now);
    std::vector<ListedSession> sessions;
    while (row.step()) {
        const std::int64_t begun = row.number(4);
        sessions.push_back({row.number(0), {row.text(1), row.text(2), row.text(3)}, begun,
            row.isNull(5) ? begun : row.number(5)});
    }
    return sessions;
}

int endSessionsOf(
    Transaction& transaction, std::int64_t account, std::optional<std::int64_t> session)
{
    Statement statement = transaction.statement(
        "DELETE FROM families WHERE account = ?1 AND (?2 IS NULL OR id = ?2)");
    statement.bind(account);
    if (session)
        statement.bind(*session);
    else
        statement.bindNull();
    statement.run();
    return transaction.changedRows();
}

int endAllSessions(Transaction& transaction)
{
    transaction.statement("DELETE FROM families").run();
    return transaction.changedRows();
}

int removeDeadSessions(Transaction& transaction, std::int64_t now, std::int64_t most)
{
    transaction
        .statement("DELETE FROM refresh_tokens WHERE rowid IN"
                   " (SELECT rowid FROM refresh_tokens WHERE expires <= ? LIMIT ?)")
        .bind(now)
        .bind(most)
        .run();
    const int tokens = transaction.changedRows();
    transaction
        .statement("DELETE FROM families WHERE id IN (SELECT id FROM families WHERE NOT EXISTS"
                   " (SELECT 1 FROM refresh_tokens WHERE family = families.id) LIMIT ?)")
        .bind(most)
        .run();
    return tokens + transaction.changedRows();
}

} // namespace tavrin::devcloud

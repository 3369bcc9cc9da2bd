#include "devcloud/store/Registrations.h"

#include "devcloud/store/Database.h"

namespace tavrin::devcloud {

void beginRegistration(Transaction& transaction, std::string_view email,
    std::string_view inviteDigest, std::string_view codeDigest, std::int64_t expires)
{
    transaction
        .statement("REPLACE INTO registrations(email, invite, code, expires, wrong_tries)"
                   " VALUES(?, ?, ?, ?, 0)")
        .bind(email)
        .bind(inviteDigest)
        .bind(codeDigest)
        .bind(expires)
        .run();
}

std::optional<Registration> findRegistration(Transaction& transaction, std::string_view email)
{
    Statement row = transaction.statement(
        "SELECT invite, code, expires, wrong_tries, token, token_expires FROM registrations"
        " WHERE email = ?");
    row.bind(email);
    if (!row.step())
        return std::nullopt;
    Registration found;
    found.inviteDigest = row.text(0);
    found.codeDigest = row.text(1);
    found.expires = row.number(2);
    found.wrongTries = row.number(3);
    if (!row.isNull(4))
        found.tokenDigest = row.text(4);
    found.tokenExpires = row.number(5);
    return found;
}

void countWrongTry(Transaction& transaction, std::string_view email)
{
    transaction.statement("UPDATE registrations SET wrong_tries = wrong_tries + 1 WHERE email = ?")
        .bind(email)
        .run();
}

void setRegistrationToken(Transaction& transaction, std::string_view email,
    std::string_view tokenDigest, std::int64_t expires)
{
    transaction.statement("UPDATE registrations SET token = ?, token_expires = ? WHERE email = ?")
        .bind(tokenDigest)
        .bind(expires)
        .bind(email)
        .run();
}

int removeDeadRegistrations(Transaction& transaction, std::int64_t now, std::int64_t most)
{
    transaction
        .statement("DELETE FROM registrations WHERE rowid IN (SELECT rowid FROM registrations"
                   " WHERE expires <= ?1 AND (token_expires IS NULL OR token_expires <= ?1)"
                   " LIMIT ?2)")
        .bind(now)
        .bind(most)
        .run();
    return transaction.changedRows();
}

} // namespace tavrin::devcloud

#include "devcloud/security/Passwords.h"

#include "devcloud/security/Secrets.h"

#include <array>
#include <sodium.h>

namespace tavrin::devcloud {
namespace {

constexpr int simultaneousComputations = 2;

} // namespace

PasswordCost PasswordCost::interactive()
{
    return {crypto_pwhash_argon2id_opslimit_interactive(),
        crypto_pwhash_argon2id_memlimit_interactive()};
}

PasswordCost PasswordCost::least()
{
    return {crypto_pwhash_argon2id_opslimit_min(), crypto_pwhash_argon2id_memlimit_min()};
}

class Passwords::Turn {
public:
    explicit Turn(Passwords& passwords)
        : m_passwords(passwords)
    {
        std::unique_lock lock(m_passwords.m_mutex);
        m_passwords.m_turnFree.wait(lock, [this] { return m_passwords.m_freeTurns > 0; });
        --m_passwords.m_freeTurns;
    }

    ~Turn()
    {
        {
            const std::lock_guard lock(m_passwords.m_mutex);
            ++m_passwords.m_freeTurns;
        }
        m_passwords.m_turnFree.notify_one();
    }

    Turn(const Turn&) = delete;
    Turn& operator=(const Turn&) = delete;

private:
    Passwords& m_passwords;
};

Passwords::Passwords(PasswordCost cost)
    : m_cost(cost)
    , m_freeTurns(simultaneousComputations)
{
    m_nobody = hash(newToken()).value_or(std::string());
}

std::optional<std::string> Passwords::hash(std::string_view password)
{
    const Turn turn(*this);
    std::array<char, crypto_pwhash_argon2id_STRBYTES> result{};
    if (crypto_pwhash_argon2id_str(
            result.data(), password.data(), password.size(), m_cost.passes, m_cost.memoryBytes)
        != 0)
        return std::nullopt;
    return result.data();
}

bool Passwords::matches(const std::optional<std::string>& hash, std::string_view password)
{
    const Turn turn(*this);
    const std::string& compared = hash ? *hash : m_nobody;
    const bool fits =
        crypto_pwhash_argon2id_str_verify(compared.c_str(), password.data(), password.size()) == 0;
    return fits && hash.has_value();
}

} // namespace tavrin::devcloud

#pragma once

#include <condition_variable>
#include <cstddef>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>

namespace tavrin::devcloud {

inline constexpr std::size_t shortestPassword = 10; ///< Characters.
inline constexpr std::size_t longestPassword = 1024; ///< Bytes.

/// What one Argon2id computation costs: passes over the memory, and the memory in bytes.
struct PasswordCost {
    unsigned long long passes;
    std::size_t memoryBytes;

    /// What a sign-in costs in earnest: some tens of milliseconds and 64 MiB.
    static PasswordCost interactive();
    /// The least the algorithm allows; for tests that make many accounts.
    static PasswordCost least();
};

/// Argon2id digests of passwords. Any thread; at most two computations run at a time, so that
/// sign-ins can take neither all memory nor all processors.
class Passwords {
public:
    explicit Passwords(PasswordCost cost);
    virtual ~Passwords() = default;
    Passwords(const Passwords&) = delete;
    Passwords& operator=(const Passwords&) = delete;

    /// The digest with its salt and cost; empty when memory is out.
    std::optional<std::string> hash(std::string_view password);

    /// Whether @p password belongs to @p hash. Without a hash (no such account) the same time is
    /// spent on one that fits nothing.
    virtual bool matches(const std::optional<std::string>& hash, std::string_view password);

private:
    class Turn;

    PasswordCost m_cost;
    std::mutex m_mutex;
    std::condition_variable m_turnFree;
    int m_freeTurns;
    std::string m_nobody; ///< A digest that no password fits.
};

} // namespace tavrin::devcloud

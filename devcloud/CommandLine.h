#pragma once

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <set>
#include <span>
#include <string>
#include <string_view>
#include <tl/expected.hpp>
#include <vector>

namespace tavrin::devcloud {

enum class Command {
    Serve,
    Invite,
    Account,
    Sessions,
    Revoke,
    Help,
    Version,
};

/// What the command line asks for.
struct Options {
    Command command = Command::Serve;
    std::string email; ///< Of `account`, `sessions` and `revoke`.
    std::vector<std::int64_t> sessions; ///< Of `revoke`; none: all of the account.
    bool allAccounts = false; ///< Of `revoke`, instead of an account.
    std::optional<std::filesystem::path> passwordFile;
    std::filesystem::path data;
    std::string host = "127.0.0.1";
    int port = 8787;
    std::chrono::seconds accessTokenLife{3600};
    std::chrono::seconds refreshTokenLife{std::chrono::hours(24 * 30)};
    std::string modelUrl; ///< Empty: no model.
    std::string modelName;
    std::optional<std::filesystem::path> modelKeyFile;
    std::chrono::seconds modelTimeout{60};
    std::optional<std::filesystem::path> updateFile;
    std::optional<std::filesystem::path> tlsCertificate; ///< With the key, or neither.
    std::optional<std::filesystem::path> tlsKey;
    std::set<std::string> trustedProxies; ///< Numeric addresses.
};

/// Where the data live unless `--data` says otherwise: below XDG_DATA_HOME, else below HOME.
std::filesystem::path defaultDataFolder();

std::string_view helpText();

/// The options in @p arguments (without the program's name), or what is wrong with them, in
/// English.
tl::expected<Options, std::string> parseCommandLine(std::span<const std::string> arguments);

} // namespace tavrin::devcloud

#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <tl/expected.hpp>

namespace tavrin::devcloud {

/// By what the service proves who it is, both in PEM.
struct TlsIdentity {
    std::string certificate; ///< Its own first, then those that vouch for it.
    std::string key;
};

/// The identity, or what is wrong with it, in English: it is not what it should be, has expired or
/// is not valid yet at @p now (seconds since 1970), or the key belongs to another certificate.
tl::expected<TlsIdentity, std::string> checkedIdentity(
    std::string_view certificate, std::string_view key, std::int64_t now);

/// As above, from two files; the message names the file at fault.
tl::expected<TlsIdentity, std::string> readIdentity(
    const std::filesystem::path& certificate, const std::filesystem::path& key, std::int64_t now);

} // namespace tavrin::devcloud

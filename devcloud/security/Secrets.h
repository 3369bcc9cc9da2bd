#pragma once

#include <string>
#include <string_view>

/// Random secrets and the digests under which they are stored: the database never holds a token, a
/// code or an invite itself. Any thread.
namespace tavrin::devcloud {

/// Must succeed once before anything else here or in Passwords.h; false when the system gives no
/// randomness.
[[nodiscard]] bool initializeSecrets();

/// 256 random bits, URL-safe: access, refresh and registration tokens.
std::string newToken();

/// Six random decimal digits.
std::string newVerificationCode();

/// "TAV-XXXX-XXXX" without letters or digits that look alike.
std::string newInviteCode();

/// @p typed without surrounding white space, in capitals: how an invite is compared.
std::string normalizedInviteCode(std::string_view typed);

/// The digest of @p secret, in hexadecimal.
std::string digest(std::string_view secret);

} // namespace tavrin::devcloud

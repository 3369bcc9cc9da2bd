#include "devcloud/security/Secrets.h"

#include "devcloud/text/Ascii.h"

#include <array>
#include <sodium.h>

namespace tavrin::devcloud {
namespace {

constexpr std::size_t tokenBytes = 32;
constexpr std::string_view inviteAlphabet = "ABCDEFGHJKLMNPQRSTUVWXYZ23456789";
constexpr std::uint32_t codeCount = 1000000;

} // namespace

bool initializeSecrets()
{
    return sodium_init() >= 0;
}

std::string newToken()
{
    std::array<unsigned char, tokenBytes> bytes{};
    randombytes_buf(bytes.data(), bytes.size());
    constexpr int variant = sodium_base64_VARIANT_URLSAFE_NO_PADDING;
    std::array<char, sodium_base64_ENCODED_LEN(tokenBytes, variant)> text{};
    sodium_bin2base64(text.data(), text.size(), bytes.data(), bytes.size(), variant);
    return text.data();
}

std::string newVerificationCode()
{
    const std::string digits = std::to_string(randombytes_uniform(codeCount));
    return std::string(6 - digits.size(), '0') + digits;
}

std::string newInviteCode()
{
    std::string code = "TAV-";
    for (int at = 0; at < 8; ++at) {
        if (at == 4)
            code += '-';
        code +=
            inviteAlphabet[randombytes_uniform(static_cast<std::uint32_t>(inviteAlphabet.size()))];
    }
    return code;
}

std::string normalizedInviteCode(std::string_view typed)
{
    return upperAscii(trimmedAscii(typed));
}

std::string digest(std::string_view secret)
{
    std::array<unsigned char, crypto_generichash_BYTES> hash{};
    crypto_generichash(hash.data(), hash.size(),
        reinterpret_cast<const unsigned char*>(secret.data()), secret.size(), nullptr, 0);
    std::array<char, crypto_generichash_BYTES * 2 + 1> text{};
    sodium_bin2hex(text.data(), text.size(), hash.data(), hash.size());
    return text.data();
}

} // namespace tavrin::devcloud

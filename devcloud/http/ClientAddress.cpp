#include "devcloud/http/ClientAddress.h"

#include "devcloud/text/Ascii.h"

#include <algorithm>
#include <arpa/inet.h>
#include <array>
#include <vector>

namespace tavrin::devcloud {
namespace {

constexpr std::size_t longestAddress = 64;
constexpr std::array<unsigned char, 12> wrapped{0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0xff, 0xff};
constexpr std::size_t networkBytes = 8;

std::string printed(int family, const void* bytes)
{
    std::array<char, INET6_ADDRSTRLEN> text{};
    inet_ntop(family, bytes, text.data(), text.size());
    return text.data();
}

/// "1.2.3.4:56" and "[::1]:56", which some proxies write, without the port.
std::string_view withoutPort(std::string_view entry)
{
    if (entry.starts_with('['))
        return entry.substr(1, std::min(entry.find(']'), entry.size()) - 1);
    const std::size_t colon = entry.find(':');
    const bool isOnlyColon =
        colon != std::string_view::npos && entry.find(':', colon + 1) == std::string_view::npos;
    return isOnlyColon ? entry.substr(0, colon) : entry;
}

/// The last one first.
std::vector<std::string_view> entriesFromTheRight(std::span<const std::string> forwarded)
{
    std::vector<std::string_view> entries;
    for (std::string_view rest : forwarded) {
        for (std::size_t comma = 0; comma != std::string_view::npos;) {
            comma = rest.find(',');
            entries.push_back(trimmedAscii(rest.substr(0, comma)));
            rest.remove_prefix(comma == std::string_view::npos ? rest.size() : comma + 1);
        }
    }
    std::ranges::reverse(entries);
    return entries;
}

} // namespace

std::optional<std::string> normalizedAddress(std::string_view text)
{
    if (text.size() > longestAddress || text.find('\0') != std::string_view::npos)
        return std::nullopt;
    const std::string address(text);
    std::array<unsigned char, sizeof(in6_addr)> bytes{};
    if (inet_pton(AF_INET, address.c_str(), bytes.data()) == 1)
        return printed(AF_INET, bytes.data());
    if (inet_pton(AF_INET6, address.c_str(), bytes.data()) != 1)
        return std::nullopt;
    if (std::equal(wrapped.begin(), wrapped.end(), bytes.begin()))
        return printed(AF_INET, bytes.data() + wrapped.size());
    return printed(AF_INET6, bytes.data());
}

std::string clientAddress(const std::string& peer, std::span<const std::string> forwarded,
    const std::set<std::string>& trustedProxies)
{
    if (!trustedProxies.contains(peer))
        return peer;
    std::string nearest = peer;
    for (const std::string_view entry : entriesFromTheRight(forwarded)) {
        const auto address = normalizedAddress(withoutPort(entry));
        if (!address)
            return nearest;
        nearest = *address;
        if (!trustedProxies.contains(nearest))
            return nearest;
    }
    return nearest;
}

std::string addressForCounting(const std::string& address)
{
    std::array<unsigned char, sizeof(in6_addr)> bytes{};
    if (inet_pton(AF_INET6, address.c_str(), bytes.data()) != 1)
        return address;
    std::fill(bytes.begin() + networkBytes, bytes.end(), static_cast<unsigned char>(0));
    return printed(AF_INET6, bytes.data()) + "/64";
}

} // namespace tavrin::devcloud

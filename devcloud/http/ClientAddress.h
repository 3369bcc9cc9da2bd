#pragma once

#include <optional>
#include <set>
#include <span>
#include <string>
#include <string_view>

/// Who a request comes from, when proxies stand in between.
namespace tavrin::devcloud {

/// A numeric address in its one canonical form, an IPv4 address that IPv6 wraps as IPv4. Empty when
/// @p text is no numeric address.
std::optional<std::string> normalizedAddress(std::string_view text);

/// The address of the client behind @p peer.
///
/// Anybody can write an `X-Forwarded-For`, so its values count only when @p peer is a trusted
/// proxy, and then from the right: each proxy appends whom it was asked by, so the right-most
/// address that is no trusted proxy is the last one that somebody trusted has seen. A header that
/// is missing, or whose entry there is no address, falls back to the proxy that the request came
/// through.
///
/// @param forwarded the values of the header, in the order in which they were sent.
std::string clientAddress(const std::string& peer, std::span<const std::string> forwarded,
    const std::set<std::string>& trustedProxies);

/// What an address counts as where attempts are counted: one of IPv6 stands for its network of 64
/// bits, because whoever has one address there has all of them.
std::string addressForCounting(const std::string& address);

} // namespace tavrin::devcloud

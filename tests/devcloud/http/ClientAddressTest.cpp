#include "devcloud/http/ClientAddress.h"

#include <gtest/gtest.h>

#include <vector>

namespace tavrin::devcloud {
namespace {

const std::set<std::string> trusted{"127.0.0.1", "10.0.0.1", "2001:db8::1"};

std::string behind(const std::string& peer, const std::vector<std::string>& forwarded)
{
    return clientAddress(peer, forwarded, trusted);
}

TEST(ClientAddressTest, OnlyATrustedProxyIsBelieved)
{
    EXPECT_EQ(behind("192.0.2.1", {"192.0.2.7"}), "192.0.2.1");
    EXPECT_EQ(behind("127.0.0.1", {"192.0.2.7"}), "192.0.2.7");
    EXPECT_EQ(behind("127.0.0.1", {}), "127.0.0.1");
}

TEST(ClientAddressTest, TheRightMostUntrustedAddressCounts)
{
    EXPECT_EQ(behind("127.0.0.1", {"192.0.2.66, 192.0.2.7"}), "192.0.2.7");
    EXPECT_EQ(behind("127.0.0.1", {"192.0.2.66,192.0.2.7 , 10.0.0.1"}), "192.0.2.7");
    EXPECT_EQ(behind("127.0.0.1", {"192.0.2.66", "192.0.2.7", "10.0.0.1"}), "192.0.2.7");
    EXPECT_EQ(behind("127.0.0.1", {"10.0.0.1, 127.0.0.1"}), "10.0.0.1");
}

TEST(ClientAddressTest, AMalformedHeaderFallsBackToTheLastProxyThatIsKnown)
{
    for (const char* header : {"", " ", ",", "unknown", "192.0.2.7;drop", "192.0.2.300", "a.b.c.d",
             "192.0.2.7 192.0.2.8", "192.0.2.7,", "[", "[]", ":", "192.0.2.7, unknown"})
        EXPECT_EQ(behind("127.0.0.1", {header}), "127.0.0.1") << header;
    EXPECT_EQ(behind("127.0.0.1", {"unknown, 10.0.0.1"}), "10.0.0.1");
    EXPECT_EQ(behind("127.0.0.1", {std::string(30'000, ',')}), "127.0.0.1");
    EXPECT_EQ(behind("127.0.0.1", {std::string("192.0.2.7\0", 10)}), "127.0.0.1");
}

TEST(ClientAddressTest, AddressesAreComparedInOneForm)
{
    EXPECT_EQ(behind("127.0.0.1", {"::FFFF:192.0.2.7"}), "192.0.2.7");
    EXPECT_EQ(behind("127.0.0.1", {"2001:DB8:0::7"}), "2001:db8::7");
    EXPECT_EQ(behind("127.0.0.1", {"192.0.2.7, 2001:db8:0:0::1"}), "192.0.2.7");
    EXPECT_EQ(behind("127.0.0.1", {"192.0.2.7:4711"}), "192.0.2.7");
    EXPECT_EQ(behind("127.0.0.1", {"[2001:db8::7]:4711"}), "2001:db8::7");
    EXPECT_EQ(normalizedAddress("192.0.2.007"), std::nullopt);
    EXPECT_EQ(normalizedAddress(std::string(100, '1')), std::nullopt);
}

TEST(ClientAddressTest, ANetworkOfIpv6CountsAsOneAddress)
{
    EXPECT_EQ(addressForCounting("2001:db8:1:2:3:4:5:6"), "2001:db8:1:2::/64");
    EXPECT_EQ(addressForCounting("2001:db8:1:3::6"), "2001:db8:1:3::/64");
    EXPECT_EQ(addressForCounting("192.0.2.7"), "192.0.2.7");
    EXPECT_EQ(addressForCounting(""), "");
}

} // namespace
} // namespace tavrin::devcloud

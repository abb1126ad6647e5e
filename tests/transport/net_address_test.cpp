#include "net/session/address.h"

#include <gtest/gtest.h>

namespace
{

using zet::NetAddress;

TEST(NetAddress, GoesToTextAndBack)
{
    NetAddress address;
    ASSERT_TRUE(address.convertFromString(L"192.168.0.1:8000"));
    EXPECT_TRUE(address.getHost() == L"192.168.0.1");
    EXPECT_EQ(address.getPort(), 8000);
    EXPECT_TRUE(address.convertToString() == L"192.168.0.1:8000");
    ASSERT_TRUE(address.convertFromString(L"game.example:0"));
    EXPECT_TRUE(address == NetAddress(L"game.example", 0));
    ASSERT_TRUE(address.convertFromString(L"h:65535"));
    EXPECT_EQ(address.getPort(), 65535);
}

TEST(NetAddress, AnyOtherTextChangesNothing)
{
    NetAddress address(L"here", 1);
    for (const wchar_t* text :
         {L"", L":", L"host", L"host:", L":80", L"host:65536", L"host:000080", L"host:8o", L"host:-1", L"host:+1",
          L"a:b:1", L"a b:1", L" host:1", L"host:1 ", L"host :1", L"ho\tst:1", L"::1"})
        EXPECT_FALSE(address.convertFromString(text)) << zet::String_T<wchar_t>(text).getLength();
    EXPECT_FALSE(address.convertFromString(nullptr));
    EXPECT_TRUE(address == NetAddress(L"here", 1));
}

} // namespace

#include "net/session/address.h"

#include "framework/string_helper.h"

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

TEST(NetAddress, AnIPv6AddressHasBracketsInTheText)
{
    NetAddress address;
    ASSERT_TRUE(address.convertFromString(L"[2001:db8::1]:8000"));
    EXPECT_TRUE(address == NetAddress(L"2001:db8::1", 8000));
    EXPECT_TRUE(address.convertToString() == L"[2001:db8::1]:8000");
    EXPECT_TRUE(NetAddress(L"[::1]", 1).convertToString() == L"[::1]:1");
    // The interface need not be one of this machine.
    ASSERT_TRUE(address.convertFromString(L"[fe80::1%some0]:1"));
    EXPECT_TRUE(address == NetAddress(L"fe80::1%some0", 1));
    ASSERT_TRUE(address.convertFromString(L"[::ffff:1.2.3.4]:1"));
    EXPECT_TRUE(address.getHost() == L"::ffff:1.2.3.4");
    for (const wchar_t* text : {L"[]:1", L"[::1]", L"[::1]:", L"[::1]1", L"[::1:1", L"::1]:1", L"[1.2.3.4]:1", L"[a]:1",
                                L"[::g]:1", L"[::1%]:1", L"[%a]:1", L"[::1]:65536", L"[::1] :1", L"[[::1]]:1"})
        EXPECT_FALSE(address.convertFromString(text)) << zet::StringHelper::wideToUtf8(text).getBuffer();
    EXPECT_TRUE(address.getHost() == L"::ffff:1.2.3.4");
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

#include "commands/login.h"

#include "commands/account_access.h"
#include "commands/server_choice.h"
#include "tests/support/payload_helpers.h"

#include <gtest/gtest.h>

#include <type_traits>

using tests::bytesOf;
using tests::writeHead;
using tests::written;

namespace
{

PlatformServerInfo server(unsigned short node, const wchar_t* name)
{
    PlatformServerInfo info;
    info.m_Node.m_Node[0] = node;
    info.m_Name = name;
    return info;
}

// A reply's payload up to its count.
void beginServerList(CCmdPackager& packager, int count)
{
    writeHead(packager, command_id::CCmdServerListReply);
    packager.Write(7);
    packager.Write(zet::String_T<wchar_t>(L"list"));
    packager.Write(count);
}

// A reply that holds two servers already.
CCmdServerListReply usedReply()
{
    CCmdServerListReply reply;
    for (unsigned short node : {5, 6})
        reply.m_PlatformServerInfos[server(node, L"").m_Node] = server(node, L"old");
    return reply;
}

} // namespace

TEST(LoginCommands, GuestAndMacLoginDifferFromTheBaseInTheIdOnly)
{
    CCmdBaseLogin base;
    CCmdGuestLogin guest;
    CCmdMacLogin mac;
    for (int i = 0; i < 5; ++i)
        base.m_Texts[i] = guest.m_Texts[i] = mac.m_Texts[i] = zet::String_T<wchar_t>(L"text") + L"abcde" + i;
    EXPECT_EQ(written(guest), written(base));
    EXPECT_EQ(written(mac), written(base));
    EXPECT_EQ(base.GetID(), command_id::CCmdBaseLogin);
    EXPECT_EQ(guest.GetID(), command_id::CCmdGuestLogin);
    EXPECT_EQ(mac.GetID(), command_id::CCmdMacLogin);
}

TEST(LoginCommands, OneVariantDoesNotReadTheFrameOfAnother)
{
    CCmdPackager packager;
    ASSERT_TRUE(CCmdGuestLogin().Write(&packager));
    EXPECT_FALSE(CCmdMacLogin().Read(&packager));
    EXPECT_TRUE(CCmdGuestLogin().Read(&packager));
}

TEST(LoginCommands, OnlyTheVariantsGiveTheBaseAnotherId)
{
    EXPECT_TRUE((!std::is_constructible_v<CCmdBaseLogin, unsigned short>));
    EXPECT_TRUE((std::is_base_of_v<CCmdBaseLogin, CCmdWechatdAccountLogin>));
    EXPECT_FALSE((std::is_base_of_v<CCmdBaseLogin, CCmdLogin>));
    EXPECT_EQ(CCmdMobileLogin(0x1234).GetID(), 0x1234);
    EXPECT_EQ(CCmdLogout(0x1235).GetID(), 0x1235);
    EXPECT_EQ(CCmdAccountKickOut(0x1236).GetID(), 0x1236);
}

TEST(ServerListReply, CountOfZeroEmptiesTheMap)
{
    CCmdPackager packager;
    beginServerList(packager, 0);
    CCmdServerListReply reply = usedReply();
    EXPECT_TRUE(reply.Read(&packager));
    EXPECT_TRUE(reply.m_PlatformServerInfos.empty());
}

TEST(ServerListReply, NegativeCountReadsNothingAndSucceeds)
{
    CCmdPackager packager;
    beginServerList(packager, -3);
    CCmdServerListReply reply = usedReply();
    EXPECT_TRUE(reply.Read(&packager));
    EXPECT_TRUE(reply.m_PlatformServerInfos.empty());
}

TEST(ServerListReply, MapIsEmptyWhereTheCountIsCut)
{
    CCmdPackager packager;
    writeHead(packager, command_id::CCmdServerListReply);
    packager.Write(7);
    packager.Write(zet::String_T<wchar_t>(L"list"));
    packager.Write(static_cast<unsigned short>(0));
    CCmdServerListReply reply = usedReply();
    EXPECT_FALSE(reply.Read(&packager));
    EXPECT_TRUE(reply.m_PlatformServerInfos.empty());
}

TEST(ServerListReply, MapStaysWhereItIsNotReached)
{
    CCmdPackager packager;
    writeHead(packager, command_id::CCmdServerListReply);
    packager.Write(7);
    CCmdServerListReply reply = usedReply();
    EXPECT_FALSE(reply.Read(&packager));
    EXPECT_EQ(reply.m_PlatformServerInfos.size(), 2u);
}

TEST(ServerListReply, OfTwoEntriesWithOneNodeTheLaterWins)
{
    CCmdPackager packager;
    beginServerList(packager, 3);
    for (const PlatformServerInfo& info : {server(9, L"first"), server(2, L"other"), server(9, L"second")})
        ASSERT_TRUE(info.Write(&packager));
    CCmdServerListReply reply;
    ASSERT_TRUE(reply.Read(&packager));
    ASSERT_EQ(reply.m_PlatformServerInfos.size(), 2u);
    EXPECT_EQ(reply.m_PlatformServerInfos[server(9, L"").m_Node].m_Name, L"second");

    CCmdPackager expected;
    beginServerList(expected, 2);
    for (const PlatformServerInfo& info : {server(2, L"other"), server(9, L"second")})
        ASSERT_TRUE(info.Write(&expected));
    EXPECT_EQ(written(reply), bytesOf(expected));
}

TEST(ServerListReply, BadEntryFailsAndTheEntriesBeforeItStay)
{
    CCmdPackager packager;
    beginServerList(packager, 2);
    ASSERT_TRUE(server(9, L"first").Write(&packager));
    packager.Write(true);
    CCmdServerListReply reply = usedReply();
    EXPECT_FALSE(reply.Read(&packager));
    ASSERT_EQ(reply.m_PlatformServerInfos.size(), 1u);
    EXPECT_EQ(reply.m_PlatformServerInfos.begin()->second.m_Name, L"first");
}

TEST(SwitchAccountSuccess, HandsOverNoAccountData)
{
    CCmdSwitchAccountSuccess success;
    CCmdPackager expected;
    writeHead(expected, command_id::CCmdSwitchAccountSuccess);
    expected.Write(success.m_Id1);
    expected.Write(success.m_Value1);
    ASSERT_TRUE(AccountGlobalData().Write(&expected));
    ASSERT_TRUE(AccountLingYuanGouData().Write(&expected));
    ASSERT_TRUE(FGameShop().Write(&expected));
    expected.Write(success.m_Value2);
    expected.Write(success.m_Text1);
    expected.Write(success.m_Flag1);
    EXPECT_EQ(written(success), bytesOf(expected));
}

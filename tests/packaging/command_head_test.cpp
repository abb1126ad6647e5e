#include "packaging/command_head.h"

#include "commands/mail.h"
#include "commands/registry.h"
#include "packaging/cmd_packager.h"
#include "tests/support/log_lines.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <vector>

namespace
{

using Bytes = std::vector<unsigned char>;

Bytes written(const CCmdHead& command)
{
    CCmdPackager pk;
    EXPECT_TRUE(command.Write(&pk));
    return Bytes(pk.GetBuffer(), pk.GetBuffer() + pk.GetDataSize());
}

void fill(CCmdPackager& pk, unsigned short id, const Bytes& bytes)
{
    pk.SetCmdID(id);
    ASSERT_TRUE(pk.Write(bytes.data(), static_cast<int>(bytes.size())));
}

std::string traced(const CCmdHead& command)
{
    FILE* const file = std::tmpfile();
    command.OutDebug(file);
    std::rewind(file);
    char text[1000] = {};
    const size_t size = std::fread(text, 1, sizeof text, file);
    std::fclose(file);
    return std::string(text, size);
}

TEST(CommandHead, BareHeadIsVersionAndClientIndex)
{
    CCmdHead command(0x1000);
    command.SetClientIndex(7);
    EXPECT_EQ(written(command), (Bytes{0, 2, 0, 7}));
}

TEST(CommandHead, PlatformHeadOfAnUnknownClientIs21Bytes)
{
    CCmdPlatform command(0x1013);
    command.SetClientIndex(0x0102);
    Bytes expected{0, 2, 1, 2};
    expected.resize(21);
    EXPECT_EQ(written(command), expected);
    CCmdSystem twin(0x1013);
    twin.SetClientIndex(0x0102);
    EXPECT_EQ(written(twin), expected);
}

TEST(CommandHead, WriteSetsIdAndAddressesOfThePackager)
{
    CCmdHead command(0x1000);
    zet::Uuid from;
    zet::Uuid target;
    zet::uuid_create(from);
    zet::uuid_create(target);
    command.SetAddress(from, target);
    CCmdPackager pk;
    EXPECT_TRUE(command.Write(&pk));
    EXPECT_EQ(pk.GetCmdID(), 0x1000);
    EXPECT_EQ(pk.GetFromAddress(), from);
    EXPECT_EQ(pk.GetTargetAddress(), target);
    CCmdHead back(0x1000);
    EXPECT_TRUE(back.Read(&pk));
    EXPECT_EQ(back.GetFromAddress(), from);
    EXPECT_EQ(back.GetTargetAddress(), target);
}

TEST(CommandHead, OtherVersionIsRefused)
{
    CCmdPackager pk;
    fill(pk, 0x1000, {0, 3, 0, 7});
    CCmdHead command(0x1000);
    EXPECT_FALSE(command.Read(&pk));
}

TEST(CommandHead, OtherIdIsRefusedWhateverThePayload)
{
    CCmdPackager pk;
    fill(pk, 0x1001, {0, 2, 0, 7});
    CCmdHead command(0x1000);
    EXPECT_FALSE(command.Read(&pk));
    EXPECT_EQ(pk.GetReadPointer(), 0);
}

TEST(CommandHead, PayloadThatEndsAfterTheVersionKeepsTheIndexAndPasses)
{
    CCmdPackager pk;
    fill(pk, 0x1000, {0, 2});
    CCmdHead command(0x1000);
    command.SetClientIndex(99);
    EXPECT_TRUE(command.Read(&pk));
    EXPECT_EQ(command.GetClientIndex(), 99);
}

TEST(CommandHead, SendToNoSocketIsFalseAndLogsNothing)
{
    const test::LogLines log;
    EXPECT_FALSE(CCmdHead(0x1000).Send(nullptr));
    EXPECT_TRUE(log.texts().empty());
}

TEST(CommandHead, AccountOfABareHeadIsLostSilently)
{
    CCmdHead command(0x1000);
    command.SetAccountName(L"somebody");
    EXPECT_TRUE(command.GetAccountName().isEmpty());
    zet::Uuid address;
    zet::uuid_create(address);
    command.SetClientAddress(address);
    EXPECT_TRUE(command.GetClientAddress().isNull());
}

TEST(CommandHead, AccountOfAPlatformHeadIsKeptThroughTheVirtualOperations)
{
    CCmdPlatform platform(0x1013);
    CCmdHead& command = platform;
    zet::Uuid address;
    zet::uuid_create(address);
    command.SetAccountName(L"somebody");
    command.SetClientAddress(address);
    EXPECT_EQ(command.GetAccountName(), L"somebody");
    EXPECT_EQ(command.GetClientAddress(), address);
}

TEST(CommandHead, CopyTakesEverything)
{
    CCmdPlatform command(0x1013);
    command.SetClientIndex(5);
    command.SetAccountName(L"somebody");
    zet::Uuid from;
    zet::uuid_create(from);
    command.SetFromAddress(from);
    CCmdPlatform copy(std::move(command));
    EXPECT_EQ(copy.GetClientIndex(), 5);
    EXPECT_EQ(copy.GetFromAddress(), from);
    EXPECT_EQ(copy.GetAccountName(), L"somebody");
    // A move copies: the source keeps its name.
    EXPECT_EQ(command.GetAccountName(), L"somebody");
}

TEST(CommandHead, OfACommandThatIsMovedFromTheHeadStays)
{
    CCmdMessageSend command;
    command.SetClientIndex(5);
    command.SetAccountName(L"somebody");
    command.m_Text1 = L"a text that is too long to be kept inside the object";
    CCmdMessageSend moved(std::move(command));
    EXPECT_EQ(moved.m_Text1, L"a text that is too long to be kept inside the object");
    for (const CCmdMessageSend* one : {&command, &moved})
    {
        EXPECT_EQ(one->GetClientIndex(), 5);
        EXPECT_EQ(one->m_AccountName, L"somebody");
    }
    EXPECT_EQ(command.m_Text1, L"");
}

TEST(CommandTrace, RegistryCommandsPrintTheirFields)
{
    CCmdServerRegisterFail fail;
    fail.m_Msg = L"taken";
    EXPECT_EQ(traced(fail), "  m_Msg = taken\n");
    CCmdServerEchoReply echo;
    echo.m_Data = 0xFFFFFFFFul;
    EXPECT_EQ(traced(echo), "  m_Data = -1\n");
    CCmdServerInfoResponse info;
    info.m_ServiceIP = L"10.0.0.1";
    info.m_ServicePort = 80;
    info.m_ServiceExtra = 9;
    info.m_MaxOnlineNum = 100;
    info.m_OnlineCount = 3;
    EXPECT_EQ(traced(info), "  m_ServiceIP      = 10.0.0.1\n  m_ServicePort    = 80\n  m_MaxOnlineNum   = 100\n"
                            "  m_OnlineCount    = 3\n");
    CCmdHostnameResponse host;
    host.m_ServerType = 4;
    host.m_IP = L"10.0.0.2";
    host.m_Port = 81;
    EXPECT_EQ(traced(host), "  m_ServerType = 4\n  m_IP   = 10.0.0.2\n  m_Port = 81\n");
    EXPECT_EQ(traced(CCmdServerRegister()), "");
}

} // namespace

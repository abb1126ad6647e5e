#include "commands/game_centre.h"
#include "commands/game_zone.h"
#include "commands/zone_combat.h"
#include "commands/zone_players.h"
#include "commands/zone_tunnel.h"

#include "tests/support/payload_helpers.h"

#include <gtest/gtest.h>

#include <cstring>

using tests::bytesOf;
using tests::writeHead;
using tests::written;

namespace
{

// Writes nothing and fails.
class FailingCommand : public CCmdPlatform
{
public:
    FailingCommand() : CCmdPlatform(command_id::CCmdGZ_gameOver) {}
    bool Write(CCmdPackager*) const override { return false; }
};

zet::Buffer bufferOf(const char* text)
{
    zet::Buffer buffer(static_cast<int>(std::strlen(text)));
    std::memcpy(buffer.getBuffer(), text, std::strlen(text));
    return buffer;
}

// The payload of a tunnel that announces bytes but contains none.
void beginTunnel(CCmdPackager& packager, unsigned short id, int length)
{
    writeHead(packager, id);
    packager.Write(length);
}

GameZoneInfo zone(const wchar_t* first, const wchar_t* second)
{
    GameZoneInfo info;
    info.m_Text1 = first;
    info.m_Text2 = second;
    return info;
}

} // namespace

TEST(ZoneTunnel, HoldsOneWholeFrame)
{
    CCmdGZ_createGameFail inner;
    inner.m_Text1 = L"no room";
    inner.SetClientIndex(9);
    zet::Uuid target;
    target.m_Data1 = 5;
    inner.SetTargetAddress(target);
    CCmdGZ_clientToServer tunnel;
    tunnel.m_Data1 = bufferOf("what was there before, and longer than the frame that comes, by far, for sure, indeed");
    tunnel.m_Text1 = L"to whom";
    ASSERT_TRUE(toCCmdGZ_clientToServer(&inner, &tunnel));
    CCmdPackager expected;
    ASSERT_TRUE(inner.Write(&expected));
    zet::Buffer frame;
    ASSERT_TRUE(CCmdPackager_packageToBuffer(expected, frame));
    EXPECT_EQ(tunnel.m_Data1, frame);

    CCmdPackager packager;
    ASSERT_TRUE(tunnel.Write(&packager));
    CCmdGZ_clientToServer received;
    ASSERT_TRUE(received.Read(&packager));
    EXPECT_EQ(received.m_Text1, L"to whom");
    CCmdPackager opened;
    ASSERT_TRUE(CCmdPackager_bufferToPackage(received.m_Data1, opened));
    CCmdGZ_createGameFail delivered;
    ASSERT_TRUE(delivered.Read(&opened));
    EXPECT_EQ(delivered.m_Text1, L"no room");
    EXPECT_EQ(delivered.GetClientIndex(), 9);
    EXPECT_EQ(delivered.GetTargetAddress(), target);
}

TEST(ZoneTunnel, WayBackHoldsTheFrameAndNothingElse)
{
    CCmdGZ_gameReadyOk inner;
    CCmdGZ_serverToClient tunnel;
    ASSERT_TRUE(toCCmdGZ_serverToClient(&inner, &tunnel));
    const int frame = 6 + static_cast<int>(written(inner).size());
    EXPECT_EQ(tunnel.m_Data1.getBufferSize(), frame);
    EXPECT_EQ(written(tunnel).size(), written(CCmdGZ_regGameServerOk()).size() + 4 + static_cast<size_t>(frame));
}

TEST(ZoneTunnel, CommandThatCannotBeWrittenLeavesTheTunnel)
{
    FailingCommand inner;
    CCmdGZ_clientToServer there;
    there.m_Data1 = bufferOf("kept");
    EXPECT_FALSE(toCCmdGZ_clientToServer(&inner, &there));
    EXPECT_EQ(there.m_Data1, bufferOf("kept"));
    CCmdGZ_serverToClient back;
    back.m_Data1 = bufferOf("kept");
    EXPECT_FALSE(toCCmdGZ_serverToClient(&inner, &back));
    EXPECT_EQ(back.m_Data1, bufferOf("kept"));
}

TEST(ZoneTunnel, LengthOfZeroEmptiesTheBuffer)
{
    CCmdPackager packager;
    beginTunnel(packager, command_id::CCmdGZ_serverToClient, 0);
    CCmdGZ_serverToClient tunnel;
    tunnel.m_Data1 = bufferOf("old");
    EXPECT_TRUE(tunnel.Read(&packager));
    EXPECT_EQ(tunnel.m_Data1.getBufferSize(), 0);
}

TEST(ZoneTunnel, NegativeLengthFailsAndLeavesTheBuffer)
{
    CCmdPackager packager;
    beginTunnel(packager, command_id::CCmdGZ_clientToServer, -1);
    CCmdGZ_clientToServer tunnel;
    tunnel.m_Data1 = bufferOf("old");
    EXPECT_FALSE(tunnel.Read(&packager));
    EXPECT_EQ(tunnel.m_Data1, bufferOf("old"));
}

TEST(ZoneTunnel, LengthWithoutBytesTakesNoMemory)
{
    CCmdPackager packager;
    beginTunnel(packager, command_id::CCmdGZ_serverToClient, 0x7FFFFFFF);
    CCmdGZ_serverToClient tunnel;
    EXPECT_FALSE(tunnel.Read(&packager));
    EXPECT_EQ(tunnel.m_Data1.getBufferSize(), 0);
}

// Unlike a buffer value, the tunnel is limited only by the packager.
TEST(ZoneTunnel, TakesMoreThanABufferValue)
{
    CCmdGZ_serverToClient sent;
    ASSERT_EQ(sent.m_Data1.setBufferSize(CCmdPackager::kMaxBufferSize + 1), CCmdPackager::kMaxBufferSize + 1);
    sent.m_Data1.getBuffer()[CCmdPackager::kMaxBufferSize] = 0x5A;
    CCmdPackager packager;
    ASSERT_TRUE(sent.Write(&packager));
    CCmdGZ_serverToClient received;
    ASSERT_TRUE(received.Read(&packager));
    EXPECT_EQ(received.m_Data1, sent.m_Data1);
}

TEST(GameServerRegistration, AnswerSharesTheIdOfTheRequest)
{
    EXPECT_EQ(CCmdGZ_regGameServer().GetID(), 0x1119);
    EXPECT_EQ(CCmdGZ_regGameServerOk().GetID(), 0x1119);
}

TEST(ZoneList, IsSizedFirstSoAFailedEntryKeepsItsOldTexts)
{
    CCmdPackager packager;
    writeHead(packager, command_id::CCmdGC_gameZoneListResponse);
    packager.Write(3);
    ASSERT_TRUE(zone(L"new", L"one").Write(&packager));
    packager.Write(zet::String_T<wchar_t>(L"half"));
    CCmdGC_gameZoneListResponse response;
    response.m_GameZoneInfos = {zone(L"a", L"b"), zone(L"c", L"d")};
    EXPECT_TRUE(response.Read(&packager));
    ASSERT_EQ(response.m_GameZoneInfos.size(), 3u);
    EXPECT_EQ(response.m_GameZoneInfos[0].m_Text1, L"new");
    EXPECT_EQ(response.m_GameZoneInfos[1].m_Text1, L"half");
    EXPECT_EQ(response.m_GameZoneInfos[1].m_Text2, L"d");
    EXPECT_EQ(response.m_GameZoneInfos[2].m_Text1, L"");
}

TEST(ZoneList, HostileCountCostsNoMoreThanThePayloadHolds)
{
    CCmdPackager packager;
    writeHead(packager, command_id::CCmdGC_gameZoneListResponse);
    packager.Write(0x7FFFFFFF);
    CCmdGC_gameZoneListResponse response;
    EXPECT_TRUE(response.Read(&packager));
    EXPECT_LE(response.m_GameZoneInfos.size(), 1u);
}

TEST(PlayerRecords, HaveOppositeOrdersWhenReadAndWritten)
{
    CCmdGZ_playerEnter enter;
    enter.m_Account.m_AccountId = 1;
    CCmdPackager expected;
    writeHead(expected, command_id::CCmdGZ_playerEnter);
    ASSERT_TRUE(enter.m_Account.Write(&expected));
    ASSERT_TRUE(enter.m_GlobalData.Write(&expected));
    EXPECT_EQ(written(enter), bytesOf(expected));

    CCmdGZ_playerExitOk leave;
    leave.m_Account.m_AccountId = 1;
    CCmdPackager opposite;
    writeHead(opposite, command_id::CCmdGZ_playerExitOk);
    ASSERT_TRUE(leave.m_GlobalData.Write(&opposite));
    ASSERT_TRUE(leave.m_Account.Write(&opposite));
    EXPECT_EQ(written(leave), bytesOf(opposite));
}

TEST(SetGameUse, ReadIsTrueWhateverThePayloadHolds)
{
    CCmdGZ_SetGameUse sent;
    sent.m_Entries.resize(2);
    const tests::Bytes bytes = written(sent);
    for (size_t length = 0; length <= bytes.size(); ++length)
    {
        CCmdPackager cut;
        cut.SetCmdID(command_id::CCmdGZ_SetGameUse);
        cut.Write(bytes.data(), static_cast<int>(length));
        CCmdGZ_SetGameUse received;
        ASSERT_TRUE(received.Read(&cut)) << length;
        ASSERT_LE(received.m_Entries.size(), 2u) << length;
    }
}

TEST(SetGameUse, FrameOfAnotherIdIsReadAllTheSame)
{
    CCmdPackager packager;
    packager.SetCmdID(command_id::CCmdGZ_gameOver);
    zet::Uuid game;
    game.m_Data1 = 17;
    packager.Write(game);
    packager.Write(0);
    CCmdGZ_SetGameUse received;
    EXPECT_TRUE(received.Read(&packager));
    EXPECT_EQ(received.m_Id1, game);
}

TEST(SetGameUse, ListIsEmptiedEvenWhereNothingFollows)
{
    CCmdPackager packager;
    packager.SetCmdID(command_id::CCmdGZ_SetGameUse);
    CCmdGZ_SetGameUse received;
    received.m_Entries.resize(3);
    EXPECT_TRUE(received.Read(&packager));
    EXPECT_TRUE(received.m_Entries.empty());
}

TEST(SetGameUse, HostileCountCostsNoMoreThanThePayloadHolds)
{
    CCmdPackager packager;
    writeHead(packager, command_id::CCmdGZ_SetGameUse);
    packager.Write(zet::Uuid());
    packager.Write(0x7FFFFFFF);
    CCmdGZ_SetGameUse received;
    EXPECT_TRUE(received.Read(&packager));
    EXPECT_LE(received.m_Entries.size(), 1u);
}

#include "runtime/system_cmd_info.h"

#include "commands/race_pawn.h"
#include "dispatch/command_id_limit.h"
#include "packs/envelope.h"

#include <gtest/gtest.h>

#include <climits>
#include <string>

using Wide = zet::String_T<wchar_t>;

namespace
{

std::wstring documentOf(SystemCmdInfo& info)
{
    return info.ToJsonString().getBuffer();
}

std::wstring operationOf(SystemCmdInfo& info)
{
    int count = -1, al = -1, ml = -1, d1 = -1, d2 = -1;
    unsigned long query = 99;
    info.GetCmdOperation(count, query, al, ml, d1, d2);
    return zet::formatText(L"%d %lu %d %d %d %d", count, query, al, ml, d1, d2).getBuffer();
}

// A server with different values in all figures.
SystemCmdInfo busyServer()
{
    SystemCmdInfo info;
    info.m_Process.m_MemoryMB = 512;
    info.m_Process.m_TickTime = 4294967295UL;
    info.m_ConnectCount = -3;
    info.SetCmdQuery(1, 2, 3, 4, 5, 6);
    info.AddRecvCmd(L"gate", 60 * 1536);
    info.AddSendCmd(L"gate", 60 * 7);
    info.AddSendCmd(L"", 60 * 100);
    info.Tick(60001);
    info.m_Process.m_MemoryMB = 512;
    info.m_Process.m_TickTime = 4294967295UL;
    return info;
}

zet::Uuid clientOf(unsigned int number)
{
    zet::Uuid id;
    id.m_Data1 = number;
    return id;
}

template <class Envelope>
int typeOf(int packType)
{
    Envelope envelope;
    envelope.m_PackType = packType;
    return SystemCmdInfo::GetCmdSecondLevelType(&envelope);
}

// A host's own command with the id of an envelope.
class HostsCommand : public CCmdPlatform
{
public:
    explicit HostsCommand(unsigned short id) : CCmdPlatform(id) {}
};

} // namespace

TEST(SystemCmdInfo, FreshObjectIsEmpty)
{
    zet::TestClock clock(0, 4000);
    SystemCmdInfo info;
    EXPECT_EQ(info.m_StartTick, 4000u);
    EXPECT_EQ(info.GetConnectCount(), 0);
    EXPECT_EQ(info.GetMemeryCost(), 0);
    EXPECT_EQ(info.GetTickTime(), 0u);
    EXPECT_EQ(info.GetAllRecvSize(), 0);
    EXPECT_EQ(info.GetAllSendSize(), 0);
    EXPECT_EQ(operationOf(info), L"0 0 0 0 0 0");
    EXPECT_TRUE(info.GetServerTPSMap().empty());
    EXPECT_TRUE(info.m_CmdStart.empty());
    EXPECT_EQ(info.m_Process.m_Period, 60000u);
}

TEST(SystemCmdInfo, PeriodEndsOnlyWhenItIsExceeded)
{
    SystemCmdInfo info;
    info.Tick(60000);
    EXPECT_EQ(info.GetMemeryCost(), 0);
    EXPECT_EQ(info.GetTickTime(), 0u);
    EXPECT_EQ(info.m_Process.m_TickCount, 1);
    EXPECT_EQ(info.m_Process.m_Elapsed, 60000u);
    info.Tick(1);
    EXPECT_GT(info.GetMemeryCost(), 0);
    EXPECT_EQ(info.GetTickTime(), 30000u);
    EXPECT_EQ(info.m_Process.m_TickCount, 0);
    EXPECT_EQ(info.m_Process.m_Elapsed, 0u);
}

TEST(SystemCmdInfo, TickTimeIsTheWholeMeanOfThePeriod)
{
    SystemCmdInfo info;
    for (int i = 0; i < 3750; ++i)
        info.Tick(16);
    EXPECT_EQ(info.GetTickTime(), 0u);
    info.Tick(16);
    EXPECT_EQ(info.GetTickTime(), 16u);
    info.Tick(60020);
    EXPECT_EQ(info.GetTickTime(), 60020u);
}

TEST(SystemCmdInfo, RatesChangeOnlyAtTheEndOfAPeriod)
{
    SystemCmdInfo info;
    info.AddRecvCmd(L"gate", 92160);
    info.AddRecvCmd(L"gate", 92160);
    info.Tick(60000);
    const auto& gate = info.GetServerTPSMap().at(L"gate");
    EXPECT_EQ(gate.m_RecvRate, 0u);
    EXPECT_EQ(gate.m_RecvBytes, 184320u);
    EXPECT_EQ(gate.m_RecvCount, 2u);
    EXPECT_EQ(gate.m_SendCount, 0u);
    EXPECT_EQ(gate.m_Period, 60000u);
    EXPECT_EQ(gate.m_Elapsed, 60000u);
    // 61 whole seconds.
    info.Tick(1999);
    EXPECT_EQ(gate.m_RecvRate, 184320u / 61);
    EXPECT_EQ(gate.m_RecvBytes, 0u);
    EXPECT_EQ(gate.m_RecvCount, 0u);
    EXPECT_EQ(gate.m_Elapsed, 0u);
    info.Tick(60000);
    EXPECT_EQ(gate.m_RecvRate, 184320u / 61);
    info.Tick(1);
    EXPECT_EQ(gate.m_RecvRate, 0u);
}

TEST(SystemCmdInfo, SocketThatSentNothingHasNoSendRate)
{
    SystemCmdInfo info;
    info.AddRecvCmd(L"gate", 600000);
    info.Tick(60001);
    EXPECT_EQ(info.GetServerTPSMap().at(L"gate").m_RecvRate, 10000u);
    EXPECT_EQ(info.GetServerTPSMap().at(L"gate").m_SendRate, 0u);
    EXPECT_EQ(info.GetSocketSendSize(L"gate"), 0);
}

TEST(SystemCmdInfo, SizesAreRoundedKiBPerSecond)
{
    SystemCmdInfo info;
    const auto sizeOf = [&](unsigned long rate)
    {
        info.m_SocketTPS[L"a"].m_RecvRate = rate;
        info.m_SocketTPS[L"a"].m_SendRate = rate;
        EXPECT_EQ(info.GetSocketSendSize(L"a"), info.GetSocketRecvSize(L"a"));
        return info.GetSocketRecvSize(L"a");
    };
    EXPECT_EQ(sizeOf(1536), 2);
    EXPECT_EQ(sizeOf(1535), 1);
    EXPECT_EQ(sizeOf(0), 0);
    EXPECT_EQ(sizeOf(511), 0);
    EXPECT_EQ(sizeOf(512), 1);
    EXPECT_EQ(sizeOf(1024), 1);
    EXPECT_EQ(sizeOf(4294967295UL), 4194304);
}

TEST(SystemCmdInfo, AllSizesAreTheRoundedSumNotTheSumOfTheRounded)
{
    SystemCmdInfo info;
    info.m_SocketTPS[L"a"].m_RecvRate = 400;
    info.m_SocketTPS[L"b"].m_RecvRate = 400;
    info.m_SocketTPS[L"c"].m_RecvRate = 400;
    info.m_SocketTPS[L"b"].m_SendRate = 2048;
    EXPECT_EQ(info.GetSocketRecvSize(L"a"), 0);
    EXPECT_EQ(info.GetAllRecvSize(), 1);
    EXPECT_EQ(info.GetAllSendSize(), 2);
}

TEST(SystemCmdInfo, UnknownNameGivesZeroAndMakesNoRecord)
{
    SystemCmdInfo info;
    EXPECT_EQ(info.GetSocketRecvSize(L"gate"), 0);
    EXPECT_EQ(info.GetSocketSendSize(L"gate"), 0);
    EXPECT_TRUE(info.GetServerTPSMap().empty());
}

TEST(SystemCmdInfo, EmptyNameCountsAsUnkown)
{
    SystemCmdInfo info;
    info.AddRecvCmd(L"", 10);
    info.AddSendCmd(Wide(), 20);
    ASSERT_EQ(info.GetServerTPSMap().size(), 1u);
    const auto& unknown = info.GetServerTPSMap().at(L"Unkown");
    EXPECT_EQ(unknown.m_RecvBytes, 10u);
    EXPECT_EQ(unknown.m_RecvCount, 1u);
    EXPECT_EQ(unknown.m_SendBytes, 20u);
    EXPECT_EQ(unknown.m_SendCount, 1u);
}

TEST(SystemCmdInfo, FiguresAreOf32Bits)
{
    SystemCmdInfo info;
    info.AddRecvCmd(L"a", INT_MAX);
    info.AddRecvCmd(L"a", INT_MAX);
    info.AddRecvCmd(L"a", 5);
    EXPECT_EQ(info.GetServerTPSMap().at(L"a").m_RecvBytes, 3u);
    info.AddSendCmd(L"a", 5);
    info.AddSendCmd(L"a", -6);
    EXPECT_EQ(info.GetServerTPSMap().at(L"a").m_SendBytes, 0xFFFFFFFFu);
    info.m_SocketTPS[L"a"].m_RecvRate = 0xFFFFFFFF;
    info.m_SocketTPS[L"b"].m_RecvRate = 1025;
    EXPECT_EQ(info.GetAllRecvSize(), 1);
}

TEST(SystemCmdInfo, NoPeriodDividesByZero)
{
    SystemCmdInfo info;
    info.AddRecvCmd(L"a", 500);
    info.m_SocketTPS[L"a"].m_Period = 100;
    info.Tick(101);
    EXPECT_EQ(info.GetServerTPSMap().at(L"a").m_RecvRate, 500u);
    info.m_Process.m_TickCount = -1;
    info.Tick(60000);
    EXPECT_EQ(info.GetTickTime(), 60101u);
}

TEST(SystemCmdInfo, RecordWithoutAPeriodIsNotTicked)
{
    SystemCmdInfo info;
    info.m_SocketTPS[L"a"].m_RecvRate = 7;
    info.Tick(1000000);
    EXPECT_EQ(info.GetServerTPSMap().at(L"a").m_RecvRate, 7u);
    EXPECT_EQ(info.GetServerTPSMap().at(L"a").m_Elapsed, 0u);
}

TEST(SystemCmdInfo, ConnectionsCountWithoutABound)
{
    SystemCmdInfo info;
    info.DelConnect();
    EXPECT_EQ(info.GetConnectCount(), -1);
    info.AddConnect();
    info.AddConnect();
    EXPECT_EQ(info.GetConnectCount(), 1);
    // A document may contain the limits of int.
    info.m_ConnectCount = INT_MAX;
    info.AddConnect();
    EXPECT_EQ(info.GetConnectCount(), INT_MIN);
    info.DelConnect();
    EXPECT_EQ(info.GetConnectCount(), INT_MAX);
}

TEST(SystemCmdInfo, RunningSpanIsInWholeSecondsAcrossTheWrap)
{
    zet::TestClock clock(0, 0xFFFFFF00u);
    SystemCmdInfo info;
    EXPECT_EQ(info.GetRunningSpan().getTotalSeconds(), 0);
    clock.advance(1999);
    EXPECT_EQ(info.GetRunningSpan().getTotalSeconds(), 1);
    clock.advance(1);
    EXPECT_EQ(info.GetRunningSpan().getTotalSeconds(), 2);
}

TEST(SystemCmdInfo, ClientHasOneCommandUnderWay)
{
    zet::TestClock clock(0, 100);
    SystemCmdInfo info;
    CCmdMatchPackRequest first;
    first.SetClientAddress(clientOf(1));
    CCmdHomePackRequest second;
    second.SetClientAddress(clientOf(1));
    CCmdHomePackRequest other;
    other.SetClientAddress(clientOf(2));
    info.AddCmd(&first);
    clock.advance(50);
    info.AddCmd(&second);
    info.AddCmd(&other);
    ASSERT_EQ(info.m_CmdStart.size(), 2u);
    EXPECT_EQ(info.m_CmdStart[clientOf(1)], 150u);
    info.EndCmd(&first);
    EXPECT_EQ(info.m_CmdStart.count(clientOf(1)), 0u);
    info.EndCmd(&second);
    EXPECT_EQ(info.m_CmdStart.size(), 1u);
    info.AddCmd(nullptr);
    info.EndCmd(nullptr);
    EXPECT_EQ(info.m_CmdStart.size(), 1u);
}

TEST(SystemCmdInfo, OperationComesBackInItsOrder)
{
    SystemCmdInfo info;
    info.SetCmdQuery(1, 2, 3, 4, 5, 6);
    EXPECT_EQ(operationOf(info), L"1 2 3 4 5 6");
}

TEST(SystemCmdInfo, CopiesHoldAllMembers)
{
    SystemCmdInfo info = busyServer();
    info.m_CmdStart[clientOf(3)] = 33;
    info.m_StartTick = 44;
    SystemCmdInfo assigned;
    assigned = info;
    EXPECT_EQ(documentOf(assigned), documentOf(info));
    EXPECT_EQ(assigned.m_CmdStart, info.m_CmdStart);
    EXPECT_EQ(assigned.m_StartTick, 44u);
}

TEST(SystemCmdInfoJson, FreshObjectHasNoServerTps)
{
    SystemCmdInfo info;
    EXPECT_EQ(documentOf(info), L"{\"mem\":0,\"tick\":0,\"connect\":0,"
                                L"\"cmdsop\":{\"count\":0,\"query\":0,\"al\":0,\"ml\":0,\"d1\":0,\"d2\":0}}");
}

TEST(SystemCmdInfoJson, DocumentByteForByte)
{
    SystemCmdInfo info = busyServer();
    info.m_SocketTPS[L"\u5927\u5385\"1\""].m_SendRate = 4294967295UL;
    EXPECT_EQ(documentOf(info), L"{\"mem\":512,\"tick\":4294967295,\"connect\":-3,"
                                L"\"cmdsop\":{\"count\":1,\"query\":2,\"al\":3,\"ml\":4,\"d1\":5,\"d2\":6},"
                                L"\"servertps\":[{\"socket\":\"Unkown\",\"recvsize\":0,\"sendsize\":100},"
                                L"{\"socket\":\"gate\",\"recvsize\":1536,\"sendsize\":7},"
                                L"{\"socket\":\"\u5927\u5385\\\"1\\\"\",\"recvsize\":0,\"sendsize\":4294967295}]}");
}

TEST(SystemCmdInfoJson, DocumentRoundTrips)
{
    SystemCmdInfo info = busyServer();
    SystemCmdInfo shown;
    shown.FromJsonString(info.ToJsonString());
    EXPECT_EQ(shown.GetMemeryCost(), 512);
    EXPECT_EQ(shown.GetTickTime(), 4294967295u);
    EXPECT_EQ(shown.GetConnectCount(), -3);
    EXPECT_EQ(operationOf(shown), L"1 2 3 4 5 6");
    EXPECT_EQ(shown.GetSocketRecvSize(L"gate"), 2);
    EXPECT_EQ(documentOf(shown), documentOf(info));
}

TEST(SystemCmdInfoJson, InvalidJsonChangesNothing)
{
    SystemCmdInfo info = busyServer();
    const std::wstring before = documentOf(info);
    std::wstring deep;
    for (int i = 0; i < 1000; ++i)
        deep += L"{\"cmdsop\":";
    for (const wchar_t* text : {L"", L" ", L"mem=5", L"{\"mem\":5", L"{\"mem\":5,}", L"null", L" null ", deep.c_str()})
    {
        info.FromJsonString(text);
        EXPECT_EQ(documentOf(info), before);
    }
}

TEST(SystemCmdInfoJson, MissingKeysGiveZero)
{
    SystemCmdInfo info = busyServer();
    info.FromJsonString(L"{}");
    EXPECT_EQ(info.GetMemeryCost(), 0);
    EXPECT_EQ(info.GetTickTime(), 0u);
    EXPECT_EQ(info.GetConnectCount(), 0);
    EXPECT_EQ(operationOf(info), L"0 0 0 0 0 0");
    // Sockets missing in the document stay.
    EXPECT_EQ(info.GetServerTPSMap().size(), 2u);
    info.FromJsonString(L"{\"mem\":null,\"connect\":7,\"cmdsop\":{\"ml\":8}}");
    EXPECT_EQ(info.GetMemeryCost(), 0);
    EXPECT_EQ(info.GetConnectCount(), 7);
    EXPECT_EQ(operationOf(info), L"0 0 0 8 0 0");
}

TEST(SystemCmdInfoJson, ExtraKeysAndTrailingTextAreIgnored)
{
    SystemCmdInfo info;
    info.FromJsonString(L" {\"version\":[1,{\"mem\":9}],\"mem\":5,\"tick\":6,\"cmdsop\":{\"count\":1,\"d3\":9},"
                        L"\"servertps\":[{\"socket\":\"a\",\"recvsize\":3,\"sendsize\":4,\"mem\":1}],\"Mem\":8} {");
    EXPECT_EQ(documentOf(info), L"{\"mem\":5,\"tick\":6,\"connect\":0,"
                                L"\"cmdsop\":{\"count\":1,\"query\":0,\"al\":0,\"ml\":0,\"d1\":0,\"d2\":0},"
                                L"\"servertps\":[{\"socket\":\"a\",\"recvsize\":3,\"sendsize\":4}]}");
}

TEST(SystemCmdInfoJson, KeysOfAnotherTypeGiveZero)
{
    SystemCmdInfo info = busyServer();
    info.m_SocketTPS.clear();
    info.FromJsonString(L"{\"mem\":\"5\",\"tick\":-1,\"connect\":true,\"cmdsop\":{\"count\":{},\"query\":4294967297,"
                        L"\"al\":[1],\"ml\":2147483648,\"d1\":1.9,\"d2\":\"6\"},"
                        L"\"servertps\":[{\"socket\":5,\"recvsize\":\"3\",\"sendsize\":7}]}");
    EXPECT_EQ(documentOf(info), L"{\"mem\":0,\"tick\":0,\"connect\":0,"
                                L"\"cmdsop\":{\"count\":0,\"query\":0,\"al\":0,\"ml\":0,\"d1\":1,\"d2\":0},"
                                L"\"servertps\":[{\"socket\":\"\",\"recvsize\":0,\"sendsize\":7}]}");
    for (const wchar_t* text : {L"[1,2]", L"5", L"\"mem\"", L"{\"cmdsop\":5,\"servertps\":{\"socket\":\"x\"}}",
                                L"{\"cmdsop\":[1,2,3,4,5,6],\"servertps\":\"x\"}"})
    {
        SystemCmdInfo other = busyServer();
        other.FromJsonString(text);
        EXPECT_EQ(operationOf(other), L"0 0 0 0 0 0");
        EXPECT_EQ(other.GetMemeryCost(), 0);
        EXPECT_EQ(other.GetServerTPSMap().size(), 2u);
    }
}

TEST(SystemCmdInfoJson, SocketsOfTheDocumentReplaceThoseOfTheirNames)
{
    SystemCmdInfo info = busyServer();
    info.AddRecvCmd(L"gate", 5);
    info.FromJsonString(L"{\"servertps\":[{\"socket\":\"gate\",\"recvsize\":1},{\"socket\":\"zone\",\"sendsize\":2},"
                        L"{\"socket\":\"zone\",\"sendsize\":3}]}");
    ASSERT_EQ(info.GetServerTPSMap().size(), 3u);
    const auto& gate = info.GetServerTPSMap().at(L"gate");
    EXPECT_EQ(gate.m_RecvRate, 1u);
    EXPECT_EQ(gate.m_SendRate, 0u);
    EXPECT_EQ(gate.m_RecvBytes, 0u);
    EXPECT_EQ(info.GetServerTPSMap().at(L"zone").m_SendRate, 3u);
    // Such a record shows its rates but is not ticked.
    info.Tick(60001);
    EXPECT_EQ(gate.m_RecvRate, 1u);
}

TEST(SecondLevelType, SixteenCommandsReturnTheirPackType)
{
    EXPECT_EQ(typeOf<CCmdVoidDataRequest>(7), 7);
    EXPECT_EQ(typeOf<CCmdVoidDataReply>(-1), -1);
    EXPECT_EQ(typeOf<CCmdMatchPackRequest>(1), 1);
    EXPECT_EQ(typeOf<CCmdMatchPackReply>(2), 2);
    EXPECT_EQ(typeOf<CCmdHomePackRequest>(3), 3);
    EXPECT_EQ(typeOf<CCmdHomePackReply>(4), 4);
    EXPECT_EQ(typeOf<CCmdWorldSquarePackRequest>(5), 5);
    EXPECT_EQ(typeOf<CCmdWorldSquarePackReply>(6), 6);
    EXPECT_EQ(typeOf<CCmdChangingRoomPackRequest>(7), 7);
    EXPECT_EQ(typeOf<CCmdChangingRoomPackReply>(8), 8);
    EXPECT_EQ(typeOf<CCmdTravelWorldPackRequest>(9), 9);
    EXPECT_EQ(typeOf<CCmdTravelWorldPackReply>(10), 10);
    EXPECT_EQ(typeOf<CCmdFriendSystemPackRequest>(11), 11);
    EXPECT_EQ(typeOf<CCmdFriendSystemPackReply>(12), 12);
    EXPECT_EQ(typeOf<CCmdAchievementPackRequest>(13), 13);
    EXPECT_EQ(typeOf<CCmdAchievementPackReply>(INT_MAX), INT_MAX);
}

TEST(SecondLevelType, OtherEnvelopesReturnNothing)
{
    EXPECT_EQ(typeOf<CCmdWizardPackRequest>(7), 0);
    EXPECT_EQ(typeOf<CCmdWizardPackReply>(7), 0);
    EXPECT_EQ(typeOf<CCmdInPurchasePackRequest>(7), 0);
    EXPECT_EQ(typeOf<CCmdInPurchasePackReply>(7), 0);
    EXPECT_EQ(typeOf<CCmdQueryToolRequest>(7), 0);
    EXPECT_EQ(typeOf<CCmdProfilingPackRequest>(7), 0);
    EXPECT_EQ(typeOf<CCmdProfilingPackReply>(7), 0);
    EXPECT_EQ(typeOf<CCmdSportPackRequest>(7), 0);
    EXPECT_EQ(typeOf<CCmdSportPackReply>(7), 0);
    EXPECT_EQ(typeOf<CCmdSportPackNotify>(7), 0);
}

TEST(SecondLevelType, NullAndOtherObjectsReturnNothing)
{
    EXPECT_EQ(SystemCmdInfo::GetCmdSecondLevelType(nullptr), 0);
    CCmdGS_PawnScore score;
    EXPECT_EQ(SystemCmdInfo::GetCmdSecondLevelType(&score), 0);
    for (int id = 0; id < kCommandIdLimit; ++id)
    {
        HostsCommand command(static_cast<unsigned short>(id));
        ASSERT_EQ(SystemCmdInfo::GetCmdSecondLevelType(&command), 0) << id;
        CCmdHead head(static_cast<unsigned short>(id));
        ASSERT_EQ(SystemCmdInfo::GetCmdSecondLevelType(&head), 0) << id;
    }
}

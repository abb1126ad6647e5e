#include "commands/race_pawn.h"

#include "dispatch/ids/server_status.h"
#include "tests/support/allocations.h"
#include "tests/support/payload_helpers.h"

#include <gtest/gtest.h>

using tests::Bytes;
using tests::writeHead;
using tests::written;

TEST(PawnRunning, EmptyListStillPrecedesHead)
{
    const Bytes bytes = written(CCmdGS_PawnRunning());
    const Bytes start = {0, 0, 0, 0, 0, 2};
    ASSERT_GT(bytes.size(), start.size());
    EXPECT_EQ(Bytes(bytes.begin(), bytes.begin() + 6), start);
}

TEST(PawnRunning, ReadEmptiesTheListEvenWhereTheCountIsCut)
{
    CCmdGS_PawnRunning running;
    running.m_Values = {1, 2, 3};
    CCmdPackager pk;
    pk.SetCmdID(command_id::CCmdGS_PawnRunning);
    EXPECT_FALSE(running.Read(&pk));
    EXPECT_TRUE(running.m_Values.empty());
}

TEST(PawnRunning, HostileCountTakesNoMemoryAndFailsAtTheHead)
{
    CCmdPackager pk;
    pk.SetCmdID(command_id::CCmdGS_PawnRunning);
    pk.Write(0x7fffffff);
    pk.Write(static_cast<short>(5));
    CCmdGS_PawnRunning running;
    const test::AllocationCount allocations;
    EXPECT_FALSE(running.Read(&pk));
    EXPECT_LT(allocations.bytes(), 1000);
    EXPECT_EQ(running.m_Values.front(), 5);
}

TEST(PawnRunning, CommandOfAnotherIdFailsAfterItsList)
{
    CCmdPackager pk;
    pk.Write(1);
    pk.Write(static_cast<short>(5));
    writeHead(pk, command_id::CCmdPlayerCountOnLineResponse + 1);
    CCmdGS_PawnRunning running;
    EXPECT_FALSE(running.Read(&pk));
    EXPECT_EQ(running.m_Values, (std::vector<short>{5}));
    EXPECT_EQ(pk.GetReadPointer(), 6);
}

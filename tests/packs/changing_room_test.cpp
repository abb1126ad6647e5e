#include "packs/changing_room.h"

#include "tests/support/payload_helpers.h"

#include <gtest/gtest.h>

using tests::written;

TEST(ChangingRoom, NewPlayerHasSixLooksAndTheWholeTable)
{
    const int part = 5 * 9 + 3;
    const int look = 8 * 4 + 3 + 6 * part;
    EXPECT_EQ(written(ChangingRoomPack_LoadUserDataReply()).size(), static_cast<size_t>(6 * look + 4 + 48 * 4));
}

TEST(ChangingRoom, PartHasNoConstantSize)
{
    ChangingRoomEquipPart part;
    const size_t size = written(part).size();
    part.m_Value3 = -100.25f;
    EXPECT_EQ(written(part).size(), size + 3);
}

TEST(ChangingRoom, CutCountEmptiesTheListAndFails)
{
    CCmdPackager pk;
    for (int i = 0; i < 6; ++i)
        ASSERT_TRUE(ChangingRoomEquip().Write(&pk));
    pk.Write(static_cast<unsigned short>(0));
    ChangingRoomPack_LoadUserDataReply reply;
    reply.m_Owned = {1, 2};
    reply.m_Values[0][0] = 9;
    EXPECT_FALSE(reply.Read(&pk));
    EXPECT_TRUE(reply.m_Owned.empty());
    EXPECT_EQ(reply.m_Values[0][0], 9);
}

TEST(ChangingRoom, CutLookLeavesTheListAsItWas)
{
    CCmdPackager pk;
    ASSERT_TRUE(ChangingRoomEquip().Write(&pk));
    ChangingRoomPack_LoadUserDataReply reply;
    reply.m_Owned = {1, 2};
    EXPECT_FALSE(reply.Read(&pk));
    EXPECT_EQ(reply.m_Owned.size(), 2u);
}

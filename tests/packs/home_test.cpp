// The home messages: the list of fixed size and the map whose read always succeeds.
#include "packs/home.h"

#include "tests/packs/payload.h"

#include <gtest/gtest.h>

namespace
{

using test::Payload;
using test::written;

TEST(HomePack, MessagesWithoutFieldsHaveNoBytes)
{
    EXPECT_EQ(written(HomePack_CountdownTime_Request()).size(), 0u);
    EXPECT_EQ(written(HomePack_PlayerNumList_Request()).size(), 0u);
}

TEST(HomePack, PlayerListIsOneHundredAndOneNumbersAfterTextAndNumber)
{
    EXPECT_EQ(written(HomePack_GetPlayerList_Reply()).size(), 1u + 4 + 404);
}

TEST(HomePack, PlayerListPastTheEndKeepsFormerNumbers)
{
    HomePack_GetPlayerList_Reply reply;
    reply.m_PlayerList[1] = 11;
    reply.m_PlayerList[2] = 12;
    reply.m_PlayerList[100] = 110;
    EXPECT_TRUE((Payload() << L"" << 7 << 20 << 21).into(reply));
    EXPECT_EQ(reply.m_Value1, 7);
    EXPECT_EQ(reply.m_PlayerList[0], 20);
    EXPECT_EQ(reply.m_PlayerList[1], 21);
    EXPECT_EQ(reply.m_PlayerList[2], 12);
    EXPECT_EQ(reply.m_PlayerList[100], 110);
}

TEST(HomePack, PlayerListWithoutItsFirstNumberIsRefused)
{
    HomePack_GetPlayerList_Reply reply;
    reply.m_PlayerList[0] = 5;
    EXPECT_FALSE((Payload() << L"m").into(reply));
    EXPECT_EQ(reply.m_PlayerList[0], 5);
}

TEST(HomePack, PlayerNumListIsEmptiedWhereTextOrCountFail)
{
    const Payload whole = Payload() << L"ab" << 1 << 5 << 6;
    for (const int last : {8 + 4, 8 + 4 + 1, whole.size()})
    {
        HomePack_PlayerNumList_Reply reply;
        reply.m_PlayerNum = {{1, 2}, {3, 4}};
        EXPECT_TRUE(whole.cut(last).into(reply)) << last;
        EXPECT_TRUE(reply.m_PlayerNum.empty()) << last;
    }
}

TEST(HomePack, PlayerNumListReplacesWhatItHeldAndKeepsTheLastValueOfAKey)
{
    HomePack_PlayerNumList_Reply reply;
    reply.m_PlayerNum = {{1, 2}};
    EXPECT_TRUE((Payload() << L"" << 3 << 9 << 1 << 4 << 2 << 9 << 3).into(reply));
    EXPECT_EQ(reply.m_PlayerNum, (std::map<int, int>{{4, 2}, {9, 3}}));
}

TEST(HomePack, PlayerNumListWritesAscendingKeys)
{
    HomePack_PlayerNumList_Reply reply;
    reply.m_PlayerNum = {{7, 1}, {-7, 2}};
    EXPECT_EQ(written(reply), (Payload() << L"" << 2 << -7 << 2 << 7 << 1).bytes());
    reply.m_PlayerNum.clear();
    EXPECT_EQ(written(reply), (Payload() << L"" << 0).bytes());
}

TEST(HomePack, JumpOffHasAFlagBetweenItsFirstNumbers)
{
    HomePack_JumpOff_Request request;
    request.m_Value1 = 1;
    request.m_Flag1 = true;
    request.m_Value2 = 2;
    EXPECT_EQ(written(request).substr(0, 9), (Payload() << 1 << true << 2).bytes());
}

} // namespace

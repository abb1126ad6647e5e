// The achievement messages: a map by the record's third field, sizes before all records, records that do not affect the
// result.
#include "packs/achievement.h"

#include "tests/packs/payload.h"

#include <gtest/gtest.h>

namespace
{

using test::Payload;
using test::written;

AccountAchievementData achievement(int key, int first)
{
    AccountAchievementData data;
    data.m_AchieveValue0 = first;
    data.m_AchieveValue1 = key;
    return data;
}

TEST(AchievementPack, TheLaterOfTwoRecordsWithOneKeyStays)
{
    AchievementPack_Notice_Reply reply;
    EXPECT_TRUE((Payload() << L"m" << 2 << achievement(3, 10) << achievement(3, 20)).into(reply));
    ASSERT_EQ(reply.m_Achievements.size(), 1u);
    EXPECT_EQ(reply.m_Achievements.at(3).m_AchieveValue0, 20);
}

TEST(AchievementPack, MapIsReplacedWhenItsSizeIsThereAndKeptWhenNot)
{
    AchievementPack_SendAchievement_Reply reply;
    reply.m_Achievements[5] = achievement(5, 1);
    EXPECT_FALSE((Payload() << L"m").into(reply));
    EXPECT_EQ(reply.m_Achievements.count(5), 1u);
    EXPECT_TRUE((Payload() << L"m" << 1 << achievement(6, 1)).into(reply));
    EXPECT_EQ(reply.m_Achievements.count(5), 0u);
    EXPECT_EQ(reply.m_Achievements.count(6), 1u);
}

TEST(AchievementPack, MapTravelsInAscendingOrderOfKey)
{
    AchievementPack_EndGame_Request request;
    request.m_Achievements[2] = achievement(2, 20);
    request.m_Achievements[-2] = achievement(-2, 10);
    EXPECT_EQ(written(request), (Payload() << 0 << 2 << achievement(-2, 10) << achievement(2, 20)).bytes());
}

TEST(AchievementPack, EmptyStartIsTextSizeTextSize)
{
    EXPECT_EQ(written(AchievementPack_StartGame_Reply()), (Payload() << L"" << 0 << L"" << 0).bytes());
}

TEST(AchievementPack, StartReplacesBothCollections)
{
    AchievementPack_StartGame_Reply reply;
    reply.m_Achievements[5] = achievement(5, 1);
    reply.m_Behaviours.resize(4);
    const Payload sizes = Payload() << L"1st" << 1 << L"2nd" << 2;
    EXPECT_TRUE((Payload(sizes) << achievement(6, 1) << AccountBehaviourData()).into(reply));
    EXPECT_EQ(reply.m_Msg, zet::String_T<wchar_t>(L"2nd"));
    EXPECT_EQ(reply.m_Achievements.size(), 1u);
    EXPECT_EQ(reply.m_Achievements.count(6), 1u);
    EXPECT_EQ(reply.m_Behaviours.size(), 2u) << "the missing one is a default one";
    for (int last = 1; last <= sizes.size(); ++last)
        EXPECT_FALSE(sizes.cut(last).into(reply)) << last;
    EXPECT_EQ(reply.m_Behaviours.size(), 2u) << "both stay where a size fails";
}

TEST(AchievementPack, FullListSendsBothSizesFirst)
{
    AchievementPack_GetAllAchievement_Request request;
    request.m_Numbers = {7, 8, 9};
    request.m_Achievements[1] = achievement(1, 4);
    EXPECT_EQ(written(request), (Payload() << 3 << 1 << achievement(1, 4) << 7 << 8 << 9).bytes());
}

TEST(AchievementPack, FullListSizesItsNumbersAndKeepsThoseThatFail)
{
    AchievementPack_GetAllAchievement_Request request;
    request.m_Numbers = {7, 8, 9};
    EXPECT_TRUE((Payload() << 2 << 0 << 5).into(request));
    EXPECT_EQ(request.m_Numbers, (std::vector<int>{5, 8}));
}

TEST(AchievementPack, HostileSizesCostNoMoreThanThePayload)
{
    AchievementPack_GetAllAchievement_Request request;
    EXPECT_TRUE((Payload() << 0x7FFFFFFF << 0x7FFFFFFF << 1 << 2).into(request));
    EXPECT_LE(request.m_Numbers.size(), 4u);
    EXPECT_LE(request.m_Achievements.size(), 2u);
}

TEST(AchievementPack, EndOfAGameIsItsTextAlone)
{
    AchievementPack_EndGame_Reply reply;
    reply.m_Msg = L"over";
    EXPECT_EQ(written(reply), (Payload() << L"over").bytes());
}

} // namespace

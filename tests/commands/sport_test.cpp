#include "commands/sport.h"

#include "packs/sport.h"
#include "tests/support/payload_helpers.h"

#include <gtest/gtest.h>

#include <climits>

TEST(SportScore, TotalOfAnEmptyListIsZero)
{
    EXPECT_EQ(CSportScore().getTotalScore(), 0);
    EXPECT_EQ(CSportScore().getSize(), 0);
}

TEST(SportScore, TotalIsTheSumOfTheList)
{
    CSportScore score;
    score.m_Values = {5, -2, 40};
    EXPECT_EQ(score.getTotalScore(), 43);
    EXPECT_EQ(score.getSize(), 3);
}

TEST(SportScore, TotalBeyondAnIntWraps)
{
    CSportScore score;
    score.m_Values = {INT_MAX, 1};
    EXPECT_EQ(score.getTotalScore(), INT_MIN);
}

TEST(SportScore, ReadReplacesTheList)
{
    CSportScore score;
    score.m_Values = {1, 2, 3};
    CDataPackager pk;
    pk.Write(1);
    pk.Write(9);
    EXPECT_TRUE(score.Read(&pk));
    EXPECT_EQ(score.m_Values, (std::vector<int>{9}));
}

TEST(SportGameOver, ReadReplacesTheEntriesAndTheLaterOfOneTextStays)
{
    CCmdPackager pk;
    tests::writeHead(pk, command_id::CCmdSport_GameOverMessage);
    pk.Write(zet::Uuid());
    pk.Write(2);
    for (int score : {1, 2})
    {
        pk.Write(zet::String_T<wchar_t>(L"bob"));
        pk.Write(1);
        pk.Write(score);
    }
    CCmdSport_GameOverMessage message;
    message.m_Entries[L"alice"].m_Values = {7};
    ASSERT_TRUE(message.Read(&pk));
    ASSERT_EQ(message.m_Entries.size(), 1u);
    EXPECT_EQ(message.m_Entries[L"bob"].m_Values, (std::vector<int>{2}));
}

TEST(SportGameOver, CutEntryFails)
{
    CDataPackager pk;
    pk.Write(2);
    pk.Write(zet::String_T<wchar_t>(L"bob"));
    pk.Write(1);
    pk.Write(zet::String_T<wchar_t>(L"eve"));
    CmdGameOverNotify notify;
    EXPECT_FALSE(notify.Read(&pk));
    EXPECT_EQ(notify.m_Entries.size(), 1u);
}

// How match records compare.
#include "playerdata/match_records.h"

#include "playerdata/match_data.h"

#include <gtest/gtest.h>

namespace
{

TEST(MatchAwardsCodeInfo, ComparesBothTextsAndTheNumber)
{
    MatchAwardsCodeInfo a;
    a.m_Text1 = L"code";
    a.m_Text2 = L"prize";
    a.m_Value1 = 3;
    MatchAwardsCodeInfo b = a;
    EXPECT_TRUE(a == b);
    b.m_Text1 = L"other";
    EXPECT_FALSE(a == b);
    b = a;
    b.m_Text2 = L"other";
    EXPECT_FALSE(a == b);
    b = a;
    b.m_Value1 = 4;
    EXPECT_FALSE(a == b);
}

TEST(MatchTotalScoreRank, IsThePlayersRowByTheFirstTextAlone)
{
    AccountMatchData data;
    data.m_MatchText0 = L"player";
    data.m_MatchText1 = L"one";
    data.m_MatchScore = 5;
    MatchTotalScoreRank row;
    row.m_Text1 = L"player";
    row.m_Text2 = L"two";
    row.m_Value1 = 6;
    EXPECT_TRUE(row == data);
    row.m_Text1 = L"one";
    EXPECT_FALSE(row == data);
}

} // namespace

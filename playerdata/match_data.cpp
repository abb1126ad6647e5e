#include "playerdata/match_data.h"

#include "packaging/wire/order.h"

WIRE_ORDER_BOTH(AccountMatchData)
{
    return FIELDS(r.m_MatchText0, r.m_MatchText1, r.m_TeamId, r.m_MatchValue0, r.m_MatchScore, r.m_MatchValue1,
                  r.m_MatchValue2, r.m_MatchValue3, r.m_MatchName, r.m_MatchText2, r.m_MatchText3);
}

WIRE_ORDER_CMD(AccountMatchRankData)
{
    return FIELDS(r.m_RankText0, r.m_RankText1, r.m_RankScore, r.m_RankName);
}

void AccountMatchRankData::ReadData(const AccountMatchData& data)
{
    m_RankText0 = data.m_MatchText0;
    m_RankText1 = data.m_MatchText1;
    m_RankScore = data.m_MatchScore;
    m_RankName = data.m_MatchName;
}

WIRE_ORDER_BOTH(AccountMatchData3)
{
    return FIELDS(r.m_WeekValue0, r.m_WeekLives, r.m_Match3Value0, r.m_Match3Flag0, r.m_Match3Value1, r.m_Match3Value2,
                  r.m_Match3Value3, r.m_Match3Value4, r.m_WeekValue1, r.m_Match3Text0, r.m_MatchGame, r.m_MatchStage,
                  r.m_MatchTeam, r.m_Match3Value5, r.m_Match3Value6, r.m_Match3Flag1, r.m_Match3Flag2, r.m_Match3Value7,
                  r.m_Match3Value8, r.m_Match3Value9, r.m_Match3Value10, r.m_Match3Text1, r.m_Match3Value11,
                  r.m_Match3Value12, r.m_Match3Value13, r.m_Match3Text2, r.m_WeekResult, r.m_Match3Row, r.m_Match3Flag3,
                  r.m_Match3Value14, r.m_Match3Value15, r.m_Match3Value16, r.m_Match3Value17, r.m_Match3Value18,
                  r.m_Match3Value19, r.m_Match3Value20, r.m_Match3Text3, r.m_Match3Text4, r.m_Match3Text5,
                  r.m_Match3Text6, r.m_Match3Value21, r.m_Match3Value22) &&
           LIST(r.m_ScoreMap, wire::Pairs) && NOT_SENT(r.m_Match3Local);
}

void AccountMatchData3::ClearScoreMap()
{
    constexpr int kMarker = -1;
    constexpr int kStartScore = 10000;
    // No game has number 5, but its entry has the marker.
    m_ScoreMap[5] = kMarker;
    for (const int game : {2, 6, 7, 8, 9, 10, 11, 13})
        m_ScoreMap[game] = kStartScore;
}

int AccountMatchData3::GetTotalGameScore() const
{
    // Scores come from the wire and may have any value: the sum wraps instead of overflowing.
    unsigned total = 0;
    for (const auto& [game, score] : m_ScoreMap)
        total += static_cast<unsigned>(score);
    return static_cast<int>(total);
}

void AccountMatchData3::WeekCleanData()
{
    if (m_MatchStage >= 2 && m_MatchStage <= 5)
        m_WeekResult = m_MatchStage + 3;
    m_WeekValue1 = 0;
    m_WeekValue0 = 0;
    m_MatchTeam = 0;
    m_MatchStage = 0;
    m_WeekLives = kWeekLives;
}

WIRE_ORDER_BOTH(AccountMatchData4)
{
    return FIELDS(r.m_MatchRating, r.m_Match4Value0, r.m_Match4Value1, r.m_Match4Value2, r.m_Match4Value3,
                  r.m_Match4Value4, r.m_Match4Text0, r.m_Match4Value5, r.m_MatchGrade, r.m_Match4Text1,
                  r.m_Match4Value6, r.m_Match4Value7, r.m_Match4Value8, r.m_Match4Value9, r.m_Match4Value10,
                  r.m_Match4Value11, r.m_Match4Value12, r.m_Match4Value13, r.m_Match4Value14, r.m_Match4Value15,
                  r.m_Match4Value16, r.m_Match4Value17, r.m_Match4Flag, r.m_Match4Value18, r.m_Match4Value19,
                  r.m_Match4Value20, r.m_Match4Value21, r.m_Match4Value22, r.m_Match4Value23);
}

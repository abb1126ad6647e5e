// A player's standing in the match events, one record per generation. Almost all fields are carried: copied without
// being interpreted.
#pragma once

#include "framework/export.h"
#include "framework/string.h"
#include "packaging/wire_interface.h"
#include "playerdata/game_kinds.h"

#include <map>

// The first generation: stamps and teams. Sent in the stamp and team messages of the match feature.
class COMMONGROUND_API AccountMatchData
{
public:
    WIRE_INTERFACE_BOTH

    zet::String_T<wchar_t> m_MatchText0;
    zet::String_T<wchar_t> m_MatchText1;
    int m_TeamId = -1;
    int m_MatchValue0 = 0;
    int m_MatchScore = 0;
    int m_MatchValue1 = 0;
    int m_MatchValue2 = -1;
    int m_MatchValue3 = -2;
    zet::String_T<wchar_t> m_MatchName;
    zet::String_T<wchar_t> m_MatchText2;
    zet::String_T<wchar_t> m_MatchText3;
};

// The part of an AccountMatchData that a ranking shows. Sent in MatchPackType_QueryPersonTeamRank_Reply.
class COMMONGROUND_API AccountMatchRankData
{
public:
    WIRE_INTERFACE_CMD

    // Copies the first two texts, m_MatchScore and m_MatchName.
    void ReadData(const AccountMatchData& data);

    zet::String_T<wchar_t> m_RankText0;
    zet::String_T<wchar_t> m_RankText1;
    int m_RankScore = 0;
    zet::String_T<wchar_t> m_RankName;
};

// The third generation: the best family event, with weekly lives and a score for each of its games.
class COMMONGROUND_API AccountMatchData3
{
public:
    static constexpr int kWeekLives = 15;
    static constexpr int kRow = 6;

    AccountMatchData3() { ClearScoreMap(); }
    WIRE_INTERFACE_BOTH

    // Sets the start scores of the event's games; other scores do not change.
    void ClearScoreMap();
    // The sum of all scores, including start scores and the marker.
    int GetTotalGameScore() const;
    // Whether stage and team are both above 0.
    bool IsJoinMatch() const { return m_MatchStage > 0 && m_MatchTeam > 0; }
    // The weekly reset: stages 2 to 5 set m_WeekResult to 5 to 8, other stages do not change it; then stage, team and
    // the weekly values become 0 and the lives 15. The scores do not change.
    void WeekCleanData();

    // Cleared weekly.
    int m_WeekValue0 = 0;
    // Back to kWeekLives weekly.
    int m_WeekLives = kWeekLives;
    int m_Match3Value0 = 0;
    bool m_Match3Flag0 = false;
    int m_Match3Value1 = 5;
    int m_Match3Value2 = 0;
    int m_Match3Value3 = 5;
    int m_Match3Value4 = 0;
    // Cleared weekly.
    int m_WeekValue1 = 0;
    zet::String_T<wchar_t> m_Match3Text0;
    FGameMatch m_MatchGame;
    // Stage and team: IsJoinMatch needs both above 0. Both are cleared weekly.
    int m_MatchStage = 0;
    int m_MatchTeam = 0;
    int m_Match3Value5 = 0;
    int m_Match3Value6 = 0;
    bool m_Match3Flag1 = false;
    bool m_Match3Flag2 = true;
    int m_Match3Value7 = -1;
    int m_Match3Value8 = 0;
    int m_Match3Value9 = 0;
    int m_Match3Value10 = 0;
    zet::String_T<wchar_t> m_Match3Text1;
    int m_Match3Value11 = 0;
    int m_Match3Value12 = 0;
    int m_Match3Value13 = -1;
    zet::String_T<wchar_t> m_Match3Text2;
    // Set by WeekCleanData from the stage.
    int m_WeekResult = 0;
    int m_Match3Row[kRow] = {-1, -1, -1, -1, -1, -1};
    bool m_Match3Flag3 = false;
    int m_Match3Value14 = 0;
    int m_Match3Value15 = 0;
    int m_Match3Value16 = 0;
    int m_Match3Value17 = 0;
    int m_Match3Value18 = 0;
    int m_Match3Value19 = 0;
    int m_Match3Value20 = 0;
    zet::String_T<wchar_t> m_Match3Text3;
    zet::String_T<wchar_t> m_Match3Text4;
    zet::String_T<wchar_t> m_Match3Text5;
    zet::String_T<wchar_t> m_Match3Text6;
    int m_Match3Value21 = 0;
    int m_Match3Value22 = 0;
    // From game number to score.
    std::map<int, int> m_ScoreMap;
    // For the process that owns the record.
    bool m_Match3Local = false;
};

// The fourth generation: the sports meet, with rating and grade.
class COMMONGROUND_API AccountMatchData4
{
public:
    WIRE_INTERFACE_BOTH

    int m_MatchRating = 1200;
    int m_Match4Value0 = 0;
    int m_Match4Value1 = 0;
    int m_Match4Value2 = 0;
    int m_Match4Value3 = 0;
    int m_Match4Value4 = 0;
    zet::String_T<wchar_t> m_Match4Text0;
    int m_Match4Value5 = 0;
    // The grade, a letter.
    char m_MatchGrade = 'E';
    zet::String_T<wchar_t> m_Match4Text1;
    int m_Match4Value6 = 0;
    int m_Match4Value7 = 0;
    int m_Match4Value8 = 0;
    int m_Match4Value9 = 0;
    int m_Match4Value10 = 0;
    int m_Match4Value11 = 0;
    int m_Match4Value12 = 0;
    int m_Match4Value13 = 1;
    int m_Match4Value14 = 0;
    int m_Match4Value15 = 0;
    int m_Match4Value16 = 0;
    int m_Match4Value17 = 0;
    bool m_Match4Flag = false;
    int m_Match4Value18 = 0;
    int m_Match4Value19 = 0;
    int m_Match4Value20 = 0;
    int m_Match4Value21 = 0;
    int m_Match4Value22 = 0;
    int m_Match4Value23 = 0;
};

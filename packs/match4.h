// The sports meet season of the match feature: entering and leaving, games and mates, ranks and history.
// The shop of the meet is in match4_shop.h.
#pragma once

#include "framework/export.h"
#include "framework/string.h"
#include "packaging/wire_interface.h"
#include "packs/match4_shop.h"
#include "playerdata/account_core.h"
#include "playerdata/account_global.h"
#include "playerdata/match_data.h"
#include "playerdata/match_records.h"

#include <vector>

// Request in CCmdMatchPackRequest: enters the meet. Answered by Match4Pack_EnterYundonghui_Reply.
struct COMMONGROUND_API Match4Pack_EnterYundonghui_Request
{
    WIRE_INTERFACE_CMD

    zet::String_T<wchar_t> m_Text1;
    AccountData m_Account;
    bool m_Flag1 = false;
    AccountGlobalData m_GlobalData;
};

// Reply in CCmdMatchPackReply to Match4Pack_EnterYundonghui_Request: the changed records.
struct COMMONGROUND_API Match4Pack_EnterYundonghui_Reply
{
    WIRE_INTERFACE_CMD

    zet::String_T<wchar_t> m_Text1;
    zet::String_T<wchar_t> m_Text2;
    AccountData m_Account;
    AccountMatchData4 m_MatchData4;
    bool m_Flag1 = false;
    zet::String_T<wchar_t> m_Text3;
    AccountGlobalData m_GlobalData;
};

// Request in CCmdMatchPackRequest: leaves the meet. Answered by Match4Pack_ExitYundonghui_Reply.
struct COMMONGROUND_API Match4Pack_ExitYundonghui_Request
{
    WIRE_INTERFACE_CMD

    zet::String_T<wchar_t> m_Text1;
    AccountMatchData4 m_MatchData4;
    AccountData m_Account;
};

// Reply in CCmdMatchPackReply to Match4Pack_ExitYundonghui_Request: the changed records.
struct COMMONGROUND_API Match4Pack_ExitYundonghui_Reply
{
    WIRE_INTERFACE_CMD

    zet::String_T<wchar_t> m_Text1;
    zet::String_T<wchar_t> m_Text2;
    AccountMatchData4 m_MatchData4;
    AccountData m_Account;
};

// Request in CCmdMatchPackRequest: asks for the player's record of the meet. Answered by
// Match4Pack_GetAccuntInfo_Reply.
struct COMMONGROUND_API Match4Pack_GetAccuntInfo_Request
{
    WIRE_INTERFACE_CMD

    zet::String_T<wchar_t> m_Text1;
};

// Reply in CCmdMatchPackReply to Match4Pack_GetAccuntInfo_Request: the record.
struct COMMONGROUND_API Match4Pack_GetAccuntInfo_Reply
{
    WIRE_INTERFACE_CMD

    zet::String_T<wchar_t> m_Text1;
    zet::String_T<wchar_t> m_Text2;
    AccountMatchData4 m_MatchData4;
};

// Request in CCmdMatchPackRequest: saves the records. Answered by Match4Pack_SaveMatchData_Reply.
struct COMMONGROUND_API Match4Pack_SaveMatchData_Request
{
    WIRE_INTERFACE_CMD

    zet::String_T<wchar_t> m_Text1;
    AccountMatchData4 m_MatchData4;
    AccountData m_Account;
    AccountGlobalData m_GlobalData;
};

// Reply in CCmdMatchPackReply to Match4Pack_SaveMatchData_Request: a result text.
struct COMMONGROUND_API Match4Pack_SaveMatchData_Reply
{
    WIRE_INTERFACE_CMD

    zet::String_T<wchar_t> m_Msg;
};

// Request in CCmdMatchPackRequest: deducts energy for a game. Answered by Match4Pack_DeductEnergy_Reply.
struct COMMONGROUND_API Match4Pack_DeductEnergy_Request
{
    WIRE_INTERFACE_CMD

    int m_Value1 = 0;
};

// Reply in CCmdMatchPackReply to Match4Pack_DeductEnergy_Request: the changed account.
struct COMMONGROUND_API Match4Pack_DeductEnergy_Reply
{
    WIRE_INTERFACE_CMD

    zet::String_T<wchar_t> m_Msg;
    AccountData m_Account;
};

// Reply in CCmdMatchPackReply: the end of a game, calculated. It has no request message of its own.
struct COMMONGROUND_API Match4Pack_EndGameCalculate_Reply
{
    WIRE_INTERFACE_CMD

    zet::String_T<wchar_t> m_Msg;
    AccountMatchData4 m_MatchData4;
};

// Request in CCmdMatchPackRequest: looks for a mate to play with. Answered by Match4Pack_FindMate_Reply.
struct COMMONGROUND_API Match4Pack_FindMate_Request
{
    WIRE_INTERFACE_CMD

    AccountData m_Account;
    AccountMatchData4 m_MatchData4;
};

// Reply in CCmdMatchPackReply to Match4Pack_FindMate_Request: the changed record.
struct COMMONGROUND_API Match4Pack_FindMate_Reply
{
    WIRE_INTERFACE_CMD

    AccountMatchData4 m_MatchData4;
    zet::String_T<wchar_t> m_Text1;
    zet::String_T<wchar_t> m_Text2;
    int m_Value1 = 0;
};

// One line of the history of earlier results, in Match4Pack_CheckHstryRec_Reply.
struct COMMONGROUND_API Match4HistoryRec
{
    WIRE_INTERFACE_CMD

    zet::String_T<wchar_t> m_Text1;
    zet::String_T<wchar_t> m_Text2;
    bool m_Flag1 = false;
    zet::String_T<wchar_t> m_Text3;
    int m_Value1 = 0;
};

// Request in CCmdMatchPackRequest: asks for the history of earlier results. Answered by Match4Pack_CheckHstryRec_Reply.
struct COMMONGROUND_API Match4Pack_CheckHstryRec_Request
{
    WIRE_INTERFACE_CMD

    zet::String_T<wchar_t> m_Text1;
};

// Reply in CCmdMatchPackReply to Match4Pack_CheckHstryRec_Request: the history. The reader sets the size of both lists
// before; elements without a slot are dropped. The second list is sent first.
struct COMMONGROUND_API Match4Pack_CheckHstryRec_Reply
{
    WIRE_INTERFACE_CMD

    zet::String_T<wchar_t> m_Text1;
    zet::String_T<wchar_t> m_Text2;
    std::vector<Match4HistoryRec> m_History1;
    std::vector<Match4HistoryRec> m_History2;
};

// Reply in CCmdMatchPackReply: whether the time of the server falls on a weekend. It has no request message of its own.
struct COMMONGROUND_API Match4Pack_CheckBeWeekend_Reply final
{
    WIRE_INTERFACE_CMD_VIRTUAL

    zet::String_T<wchar_t> m_Msg;
    bool m_Flag1 = false;
    int m_Value1 = 0;
};

// Request in CCmdMatchPackRequest: a number. It has no reply message of its own.
struct COMMONGROUND_API Match4Pack_RememberStateIn_Request
{
    WIRE_INTERFACE_CMD

    int m_Value1 = 0;
};

// Reply in CCmdMatchPackReply: the ranks of the season, two tables of six rows and five columns each. It has no request
// message of its own. A cell of the first table precedes the same cell of the second. Values of a peer beyond the
// tables are read and dropped.
struct COMMONGROUND_API Match4Pack_SportRank_Reply
{
    WIRE_INTERFACE_CMD

    static constexpr int kBoards = 6;
    static constexpr int kRanks = 5;
    static constexpr int kSelfRanks = 2;

    int m_Value1 = 0;
    int m_Value2 = 0;
    int m_Value3 = 0;
    int m_Value4 = 0;
    zet::String_T<wchar_t> m_Msg;
    MatchRankData m_Self[kSelfRanks];
    bool m_Flag1 = false;
    bool m_Flag2 = false;
    int m_Value5 = 0;
    int m_Value6 = 0;
    int m_Value7 = 0;
    MatchRankData m_Table1[kBoards][kRanks];
    MatchRankData m_Table2[kBoards][kRanks];
};

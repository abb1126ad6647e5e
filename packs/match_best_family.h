// The best family event of the match feature: entering and leaving it, its dice, machine, tasks and countdown.
// Each reply is two texts and the whole record of the event.
#pragma once

#include "framework/export.h"
#include "framework/string.h"
#include "packaging/wire_interface.h"
#include "playerdata/account_core.h"
#include "playerdata/match_data.h"

// Request in CCmdMatchPackRequest: enters the event. Answered by MatchPack_EnterBestFamily_Reply.
struct COMMONGROUND_API MatchPack_EnterBestFamily_Request
{
    WIRE_INTERFACE_CMD

    zet::String_T<wchar_t> m_Text1;
    AccountData m_Account;
    bool m_Flag1 = false;
};

// Reply in CCmdMatchPackReply to MatchPack_EnterBestFamily_Request: two texts and the changed records.
struct COMMONGROUND_API MatchPack_EnterBestFamily_Reply
{
    WIRE_INTERFACE_CMD

    zet::String_T<wchar_t> m_Text1;
    zet::String_T<wchar_t> m_Text2;
    AccountData m_Account;
    AccountMatchData3 m_MatchData3;
    bool m_Flag1 = false;
};

// Request in CCmdMatchPackRequest: leaves the event. Answered by MatchPack_ExitBestFamily_Reply.
struct COMMONGROUND_API MatchPack_ExitBestFamily_Request
{
    WIRE_INTERFACE_CMD

    zet::String_T<wchar_t> m_Text1;
    AccountMatchData3 m_MatchData3;
    AccountData m_Account;
};

// Reply in CCmdMatchPackReply to MatchPack_ExitBestFamily_Request: two texts and the changed records.
struct COMMONGROUND_API MatchPack_ExitBestFamily_Reply
{
    WIRE_INTERFACE_CMD

    zet::String_T<wchar_t> m_Text1;
    zet::String_T<wchar_t> m_Text2;
    AccountMatchData3 m_MatchData3;
    AccountData m_Account;
};

// Request in CCmdMatchPackRequest: throws a random die. Answered by MatchPack_BestFamilyRandomDice_Reply.
struct COMMONGROUND_API MatchPack_BestFamilyRandomDice_Request
{
    WIRE_INTERFACE_CMD

    zet::String_T<wchar_t> m_Text1;
};

// Reply in CCmdMatchPackReply to MatchPack_BestFamilyRandomDice_Request: two texts and the record of the event.
struct COMMONGROUND_API MatchPack_BestFamilyRandomDice_Reply
{
    WIRE_INTERFACE_CMD

    zet::String_T<wchar_t> m_Text1;
    zet::String_T<wchar_t> m_Text2;
    AccountMatchData3 m_MatchData3;
};

// Request in CCmdMatchPackRequest: sets a die. Answered by MatchPack_BestFamilySetDice_Reply.
struct COMMONGROUND_API MatchPack_BestFamilySetDice_Request
{
    WIRE_INTERFACE_CMD

    zet::String_T<wchar_t> m_Text1;
    int m_Value1 = 0;
};

// Reply in CCmdMatchPackReply to MatchPack_BestFamilySetDice_Request: two texts and the record of the event.
struct COMMONGROUND_API MatchPack_BestFamilySetDice_Reply
{
    WIRE_INTERFACE_CMD

    zet::String_T<wchar_t> m_Text1;
    zet::String_T<wchar_t> m_Text2;
    AccountMatchData3 m_MatchData3;
};

// Request in CCmdMatchPackRequest: plays the tiger machine. Answered by MatchPack_BestFamilyTigerMachine_Reply.
struct COMMONGROUND_API MatchPack_BestFamilyTigerMachine_Request
{
    WIRE_INTERFACE_CMD

    zet::String_T<wchar_t> m_Text1;
};

// Reply in CCmdMatchPackReply to MatchPack_BestFamilyTigerMachine_Request: two texts and the record of the event.
struct COMMONGROUND_API MatchPack_BestFamilyTigerMachine_Reply
{
    WIRE_INTERFACE_CMD

    zet::String_T<wchar_t> m_Text1;
    zet::String_T<wchar_t> m_Text2;
    AccountMatchData3 m_MatchData3;
};

// Request in CCmdMatchPackRequest: does a task. Answered by MatchPack_BestFamilyTask_Reply.
struct COMMONGROUND_API MatchPack_BestFamilyTask_Request
{
    WIRE_INTERFACE_CMD

    zet::String_T<wchar_t> m_Text1;
    int m_Value1 = 0;
};

// Reply in CCmdMatchPackReply to MatchPack_BestFamilyTask_Request: two texts and the record of the event.
struct COMMONGROUND_API MatchPack_BestFamilyTask_Reply
{
    WIRE_INTERFACE_CMD

    zet::String_T<wchar_t> m_Text1;
    zet::String_T<wchar_t> m_Text2;
    AccountMatchData3 m_MatchData3;
};

// Request in CCmdMatchPackRequest: has the result of a game checked. Answered by
// MatchPack_BestFamilyCheckGameResult_Reply.
struct COMMONGROUND_API MatchPack_BestFamilyCheckGameResult_Request
{
    WIRE_INTERFACE_CMD

    zet::String_T<wchar_t> m_Text1;
    int m_Value1 = 0;
    int m_Value2 = 0;
    char m_Char1 = 0;
};

// Reply in CCmdMatchPackReply to MatchPack_BestFamilyCheckGameResult_Request: two texts and the record of the event.
struct COMMONGROUND_API MatchPack_BestFamilyCheckGameResult_Reply
{
    WIRE_INTERFACE_CMD

    zet::String_T<wchar_t> m_Text1;
    zet::String_T<wchar_t> m_Text2;
    AccountMatchData3 m_MatchData3;
};

// Request in CCmdMatchPackRequest: reads the countdown. Answered by MatchPack_BestFamilyCountDownTime_Reply.
struct COMMONGROUND_API MatchPack_BestFamilyCountDownTime_Request
{
    WIRE_INTERFACE_CMD

    zet::String_T<wchar_t> m_Text1;
};

// Reply in CCmdMatchPackReply to MatchPack_BestFamilyCountDownTime_Request: two texts and the record of the event.
struct COMMONGROUND_API MatchPack_BestFamilyCountDownTime_Reply
{
    WIRE_INTERFACE_CMD

    zet::String_T<wchar_t> m_Text1;
    zet::String_T<wchar_t> m_Text2;
    AccountMatchData3 m_MatchData3;
};

// Reply in CCmdMatchPackReply: the countdown is changed, with two texts and the record of the event. It has no request
// message of its own.
struct COMMONGROUND_API MatchPack_ModifyCountDownTime_Reply
{
    WIRE_INTERFACE_CMD

    zet::String_T<wchar_t> m_Text1;
    zet::String_T<wchar_t> m_Text2;
    AccountMatchData3 m_MatchData3;
};

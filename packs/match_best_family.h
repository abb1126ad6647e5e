// The best family event of the match feature: entering and leaving it, its dice, machine, tasks and countdown.
// Each reply is two texts and the whole record of the event.
#pragma once

#include "framework/export.h"
#include "framework/string.h"
#include "packaging/wire_interface.h"
#include "playerdata/account_core.h"
#include "playerdata/match_data.h"

struct COMMONGROUND_API MatchPack_EnterBestFamily_Request
{
    WIRE_INTERFACE_CMD

    zet::String_T<wchar_t> m_Text1;
    AccountData m_Account;
    bool m_Flag1 = false;
};

struct COMMONGROUND_API MatchPack_EnterBestFamily_Reply
{
    WIRE_INTERFACE_CMD

    zet::String_T<wchar_t> m_Text1;
    zet::String_T<wchar_t> m_Text2;
    AccountData m_Account;
    AccountMatchData3 m_MatchData3;
    bool m_Flag1 = false;
};

struct COMMONGROUND_API MatchPack_ExitBestFamily_Request
{
    WIRE_INTERFACE_CMD

    zet::String_T<wchar_t> m_Text1;
    AccountMatchData3 m_MatchData3;
    AccountData m_Account;
};

struct COMMONGROUND_API MatchPack_ExitBestFamily_Reply
{
    WIRE_INTERFACE_CMD

    zet::String_T<wchar_t> m_Text1;
    zet::String_T<wchar_t> m_Text2;
    AccountMatchData3 m_MatchData3;
    AccountData m_Account;
};

// Throws a die.
struct COMMONGROUND_API MatchPack_BestFamilyRandomDice_Request
{
    WIRE_INTERFACE_CMD

    zet::String_T<wchar_t> m_Text1;
};

struct COMMONGROUND_API MatchPack_BestFamilyRandomDice_Reply
{
    WIRE_INTERFACE_CMD

    zet::String_T<wchar_t> m_Text1;
    zet::String_T<wchar_t> m_Text2;
    AccountMatchData3 m_MatchData3;
};

// Sets a die to a number of the player's choice.
struct COMMONGROUND_API MatchPack_BestFamilySetDice_Request
{
    WIRE_INTERFACE_CMD

    zet::String_T<wchar_t> m_Text1;
    int m_Value1 = 0;
};

struct COMMONGROUND_API MatchPack_BestFamilySetDice_Reply
{
    WIRE_INTERFACE_CMD

    zet::String_T<wchar_t> m_Text1;
    zet::String_T<wchar_t> m_Text2;
    AccountMatchData3 m_MatchData3;
};

struct COMMONGROUND_API MatchPack_BestFamilyTigerMachine_Request
{
    WIRE_INTERFACE_CMD

    zet::String_T<wchar_t> m_Text1;
};

struct COMMONGROUND_API MatchPack_BestFamilyTigerMachine_Reply
{
    WIRE_INTERFACE_CMD

    zet::String_T<wchar_t> m_Text1;
    zet::String_T<wchar_t> m_Text2;
    AccountMatchData3 m_MatchData3;
};

struct COMMONGROUND_API MatchPack_BestFamilyTask_Request
{
    WIRE_INTERFACE_CMD

    zet::String_T<wchar_t> m_Text1;
    int m_Value1 = 0;
};

struct COMMONGROUND_API MatchPack_BestFamilyTask_Reply
{
    WIRE_INTERFACE_CMD

    zet::String_T<wchar_t> m_Text1;
    zet::String_T<wchar_t> m_Text2;
    AccountMatchData3 m_MatchData3;
};

struct COMMONGROUND_API MatchPack_BestFamilyCheckGameResult_Request
{
    WIRE_INTERFACE_CMD

    zet::String_T<wchar_t> m_Text1;
    int m_Value1 = 0;
    int m_Value2 = 0;
    char m_Char1 = 0;
};

struct COMMONGROUND_API MatchPack_BestFamilyCheckGameResult_Reply
{
    WIRE_INTERFACE_CMD

    zet::String_T<wchar_t> m_Text1;
    zet::String_T<wchar_t> m_Text2;
    AccountMatchData3 m_MatchData3;
};

struct COMMONGROUND_API MatchPack_BestFamilyCountDownTime_Request
{
    WIRE_INTERFACE_CMD

    zet::String_T<wchar_t> m_Text1;
};

struct COMMONGROUND_API MatchPack_BestFamilyCountDownTime_Reply
{
    WIRE_INTERFACE_CMD

    zet::String_T<wchar_t> m_Text1;
    zet::String_T<wchar_t> m_Text2;
    AccountMatchData3 m_MatchData3;
};

struct COMMONGROUND_API MatchPack_ModifyCountDownTime_Reply
{
    WIRE_INTERFACE_CMD

    zet::String_T<wchar_t> m_Text1;
    zet::String_T<wchar_t> m_Text2;
    AccountMatchData3 m_MatchData3;
};

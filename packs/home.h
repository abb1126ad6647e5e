// The messages of the home feature: games of the rush, its lives, unlocking and jumping off, and lists of players.
// A request that changes something contains the player's records, and the reply returns them: the server keeps no state
// between two calls.
#pragma once

#include "framework/export.h"
#include "framework/string.h"
#include "packaging/wire_interface.h"
#include "playerdata/account_core.h"
#include "playerdata/account_global.h"
#include "playerdata/home_data.h"

#include <map>

struct COMMONGROUND_API HomePack_LoadData_Request
{
    WIRE_INTERFACE_CMD

    AccountData m_Account;
    AccountGlobalData m_GlobalData;
};

struct COMMONGROUND_API HomePack_LoadData_Reply
{
    WIRE_INTERFACE_CMD

    zet::String_T<wchar_t> m_Msg;
    bool m_Flag1 = false;
    AccountHomeData m_HomeData;
};

struct COMMONGROUND_API HomePack_SaveData_Request
{
    WIRE_INTERFACE_CMD

    AccountHomeData m_HomeData;
    AccountGlobalData m_GlobalData;
};

struct COMMONGROUND_API HomePack_SaveData_Reply
{
    WIRE_INTERFACE_CMD

    zet::String_T<wchar_t> m_Msg;
};

struct COMMONGROUND_API HomePack_StartGame_Request final
{
    WIRE_INTERFACE_CMD_VIRTUAL

    int m_Value1 = 0;
    int m_Value2 = 0;
    int m_Value3 = 0;
    int m_Value4 = 0;
    int m_Value5 = 0;
    zet::String_T<wchar_t> m_Text1;
    zet::String_T<wchar_t> m_Text2;
};

struct COMMONGROUND_API HomePack_StartGame_Reply final
{
    WIRE_INTERFACE_CMD_VIRTUAL

    int m_Value1 = 0;
    int m_Value2 = 0;
    int m_Value3 = 0;
    AccountData m_Account;
    AccountHomeData m_HomeData;
    zet::String_T<wchar_t> m_Msg;
};

struct COMMONGROUND_API HomePack_EndGame_Request final
{
    WIRE_INTERFACE_CMD_VIRTUAL

    int m_Value1 = 0;
    int m_Value2 = 0;
    int m_Value3 = 0;
    int m_Value4 = 0;
    int m_Value5 = 0;
    float m_Float1 = 0;
    float m_Float2 = 0;
    bool m_Flag1 = false;
    bool m_Flag2 = false;
    zet::String_T<wchar_t> m_Text1;
};

struct COMMONGROUND_API HomePack_EndGame_Reply final
{
    WIRE_INTERFACE_CMD_VIRTUAL

    int m_Value1 = 0;
    int m_Value2 = 0;
    int m_Value3 = 0;
    int m_Value4 = 0;
    bool m_Flag1 = false;
    bool m_Flag2 = false;
    int m_Value5 = 0;
    int m_Value6 = 0;
    int m_Value7 = 0;
    int m_Value8 = 0;
    int m_Value9 = 0;
    int m_Value10 = 0;
    int m_Value11 = 0;
    int m_Value12 = 0;
    int m_Value13 = 0;
    int m_Value14 = 0;
    int m_Value15 = 0;
    int m_Value16 = 0;
    int m_Value17 = 0;
    bool m_Flag3 = false;
    AccountData m_Account;
    AccountGlobalData m_GlobalData;
    AccountHomeData m_HomeData;
    zet::String_T<wchar_t> m_Msg;
};

struct COMMONGROUND_API HomePack_CountdownTime_Request final
{
    WIRE_INTERFACE_CMD_VIRTUAL
};

struct COMMONGROUND_API HomePack_CountdownTime_Reply final
{
    WIRE_INTERFACE_CMD_VIRTUAL

    zet::String_T<wchar_t> m_Msg;
    int m_Value1 = 0;
    AccountHomeData m_HomeData;
};

struct COMMONGROUND_API HomePack_JumpOff_Request final
{
    WIRE_INTERFACE_CMD_VIRTUAL

    int m_Value1 = 0;
    bool m_Flag1 = false;
    int m_Value2 = 0;
    int m_Value3 = 0;
    int m_Value4 = 0;
    AccountData m_Account;
    AccountHomeData m_HomeData;
};

struct COMMONGROUND_API HomePack_JumpOff_Reply final
{
    WIRE_INTERFACE_CMD_VIRTUAL

    bool m_Flag1 = false;
    int m_Value1 = 0;
    AccountData m_Account;
    AccountHomeData m_HomeData;
    AccountGlobalData m_GlobalData;
    zet::String_T<wchar_t> m_Msg;
};

// A reward without a game played.
struct COMMONGROUND_API HomePack_DirectReWard_Request final
{
    WIRE_INTERFACE_CMD_VIRTUAL

    int m_Value1 = 0;
    int m_Value2 = 0;
    int m_Value3 = 0;
    AccountData m_Account;
    AccountHomeData m_HomeData;
    AccountGlobalData m_GlobalData;
};

struct COMMONGROUND_API HomePack_DirectReWard_Reply final
{
    WIRE_INTERFACE_CMD_VIRTUAL

    zet::String_T<wchar_t> m_Msg;
    int m_Value1 = 0;
    int m_Value2 = 0;
    int m_Value3 = 0;
    AccountData m_Account;
    AccountHomeData m_HomeData;
    AccountGlobalData m_GlobalData;
};

struct COMMONGROUND_API HomePack_UnlockGame_Request final
{
    WIRE_INTERFACE_CMD_VIRTUAL

    int m_Value1 = 0;
    int m_Value2 = 0;
    int m_Value3 = 0;
    AccountData m_Account;
    AccountHomeData m_HomeData;
};

struct COMMONGROUND_API HomePack_UnlockGame_Reply final
{
    WIRE_INTERFACE_CMD_VIRTUAL

    zet::String_T<wchar_t> m_Msg;
    int m_Value1 = 0;
    int m_Value2 = 0;
    int m_Value3 = 0;
    AccountData m_Account;
    AccountHomeData m_HomeData;
    AccountGlobalData m_GlobalData;
};

struct COMMONGROUND_API HomePack_GetPlayerList_Request final
{
    WIRE_INTERFACE_CMD_VIRTUAL

    int m_Value1 = 0;
};

// The list is always sent in full, without a count.
struct COMMONGROUND_API HomePack_GetPlayerList_Reply final
{
    WIRE_INTERFACE_CMD_VIRTUAL

    zet::String_T<wchar_t> m_Msg;
    int m_Value1 = 0;
    int m_PlayerList[101] = {};
};

struct COMMONGROUND_API HomePack_PlayerNumList_Request
{
    WIRE_INTERFACE_CMD
};

// Read and Write never fail.
struct COMMONGROUND_API HomePack_PlayerNumList_Reply
{
    WIRE_INTERFACE_CMD

    zet::String_T<wchar_t> m_Msg;
    std::map<int, int> m_PlayerNum;
};

struct COMMONGROUND_API HomePack_ClearDaily_Request
{
    WIRE_INTERFACE_CMD

    int m_Value1 = 0;
    zet::String_T<wchar_t> m_Text1;
};

struct COMMONGROUND_API HomePack_ClearDaily_Reply
{
    WIRE_INTERFACE_CMD

    int m_Value1 = 0;
    zet::String_T<wchar_t> m_Text1;
    zet::String_T<wchar_t> m_Text2;
    AccountHomeData m_HomeData;
};

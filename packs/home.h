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

// Request in CCmdHomePackRequest: loads the player's home record. Answered by HomePack_LoadData_Reply.
struct COMMONGROUND_API HomePack_LoadData_Request
{
    WIRE_INTERFACE_CMD

    AccountData m_Account;
    AccountGlobalData m_GlobalData;
};

// Reply in CCmdHomePackReply to HomePack_LoadData_Request: the home record and a flag.
struct COMMONGROUND_API HomePack_LoadData_Reply
{
    WIRE_INTERFACE_CMD

    zet::String_T<wchar_t> m_Msg;
    bool m_Flag1 = false;
    AccountHomeData m_HomeData;
};

// Request in CCmdHomePackRequest: saves the changed home record and the global record. Answered by
// HomePack_SaveData_Reply.
struct COMMONGROUND_API HomePack_SaveData_Request
{
    WIRE_INTERFACE_CMD

    AccountHomeData m_HomeData;
    AccountGlobalData m_GlobalData;
};

// Reply in CCmdHomePackReply to HomePack_SaveData_Request: a result text only.
struct COMMONGROUND_API HomePack_SaveData_Reply
{
    WIRE_INTERFACE_CMD

    zet::String_T<wchar_t> m_Msg;
};

// Request in CCmdHomePackRequest: starts a game, with the fields of CCmdRequestStartGame. Answered by
// HomePack_StartGame_Reply.
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

// Reply in CCmdHomePackReply to HomePack_StartGame_Request: three numbers and the changed records.
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

// Request in CCmdHomePackRequest: reports the result of a game, with the leading fields of CCmdRequestEndGame. Answered
// by HomePack_EndGame_Reply.
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

// Reply in CCmdHomePackReply to HomePack_EndGame_Request: seventeen numbers, three flags and all three records.
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

// Request in CCmdHomePackRequest: asks for the countdown; has no bytes. Answered by HomePack_CountdownTime_Reply.
struct COMMONGROUND_API HomePack_CountdownTime_Request final
{
    WIRE_INTERFACE_CMD_VIRTUAL
};

// Reply in CCmdHomePackReply to HomePack_CountdownTime_Request: a number and the home record.
struct COMMONGROUND_API HomePack_CountdownTime_Reply final
{
    WIRE_INTERFACE_CMD_VIRTUAL

    zet::String_T<wchar_t> m_Msg;
    int m_Value1 = 0;
    AccountHomeData m_HomeData;
};

// Request in CCmdHomePackRequest: pays diamonds for a jump off. Answered by HomePack_JumpOff_Reply. The record computes
// the price: AccountHomeData::GetHomeJumpOffCostDiamond.
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

// Reply in CCmdHomePackReply to HomePack_JumpOff_Request: a flag, a number and all three records.
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

// Request in CCmdHomePackRequest: takes a reward without playing. Answered by HomePack_DirectReWard_Reply.
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

// Reply in CCmdHomePackReply to HomePack_DirectReWard_Request: three numbers and all three records.
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

// Request in CCmdHomePackRequest: pays to unlock a game. Answered by HomePack_UnlockGame_Reply. The record computes the
// price: AccountHomeData::GetHomeRushUnlockPrice.
struct COMMONGROUND_API HomePack_UnlockGame_Request final
{
    WIRE_INTERFACE_CMD_VIRTUAL

    int m_Value1 = 0;
    int m_Value2 = 0;
    int m_Value3 = 0;
    AccountData m_Account;
    AccountHomeData m_HomeData;
};

// Reply in CCmdHomePackReply to HomePack_UnlockGame_Request: three numbers and all three records.
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

// Request in CCmdHomePackRequest: asks for a list of players. Answered by HomePack_GetPlayerList_Reply.
struct COMMONGROUND_API HomePack_GetPlayerList_Request final
{
    WIRE_INTERFACE_CMD_VIRTUAL

    int m_Value1 = 0;
};

// Reply in CCmdHomePackReply to HomePack_GetPlayerList_Request: a list of numbers, always sent in full, without a
// count. A list that ends early does not affect the result: the missing numbers do not change.
struct COMMONGROUND_API HomePack_GetPlayerList_Reply final
{
    static constexpr int kPlayers = 101;

    WIRE_INTERFACE_CMD_VIRTUAL

    zet::String_T<wchar_t> m_Msg;
    int m_Value1 = 0;
    int m_PlayerList[kPlayers] = {};
};

// Request in CCmdHomePackRequest: asks for the numbers of the players; has no bytes. Answered by
// HomePack_PlayerNumList_Reply.
struct COMMONGROUND_API HomePack_PlayerNumList_Request
{
    WIRE_INTERFACE_CMD
};

// Reply in CCmdHomePackReply to HomePack_PlayerNumList_Request: the map of the numbers. Read clears the map; Read and
// Write never fail.
struct COMMONGROUND_API HomePack_PlayerNumList_Reply
{
    WIRE_INTERFACE_CMD

    zet::String_T<wchar_t> m_Msg;
    std::map<int, int> m_PlayerNum;
};

// Request in CCmdHomePackRequest: clears the daily state. Answered by HomePack_ClearDaily_Reply. The reset of the
// record is AccountHomeData::ResetHomData.
struct COMMONGROUND_API HomePack_ClearDaily_Request
{
    WIRE_INTERFACE_CMD

    int m_Value1 = 0;
    zet::String_T<wchar_t> m_Text1;
};

// Reply in CCmdHomePackReply to HomePack_ClearDaily_Request: the home record.
struct COMMONGROUND_API HomePack_ClearDaily_Reply
{
    WIRE_INTERFACE_CMD

    int m_Value1 = 0;
    zet::String_T<wchar_t> m_Text1;
    zet::String_T<wchar_t> m_Text2;
    AccountHomeData m_HomeData;
};

// A player's progress, between client and platform server: games started and ended, missions, energy, saving.
#pragma once

#include "dispatch/command_process.h"
#include "dispatch/ids/progress.h"
#include "packaging/command_head.h"
#include "playerdata/account_core.h"
#include "playerdata/account_global.h"
#include "playerdata/match_data.h"

// Client to platform server: starts a game. Answered by CCmdReplyStartGame.
class COMMONGROUND_API CCmdRequestStartGame : public CCmdPlatform
{
public:
    CCmdRequestStartGame() : CCmdPlatform(command_id::CCmdRequestStartGame) {}
    COMMAND_INTERFACE(CCmdRequestStartGame)

    int m_Value1 = 0;
    int m_Value2 = 0;
    int m_Value3 = 0;
    int m_Value4 = 0;
    int m_Value5 = 0;
    zet::String_T<wchar_t> m_Text1;
    zet::String_T<wchar_t> m_Text2;
};

// Answers CCmdRequestStartGame.
class COMMONGROUND_API CCmdReplyStartGame : public CCmdPlatform
{
public:
    CCmdReplyStartGame() : CCmdPlatform(command_id::CCmdReplyStartGame) {}
    COMMAND_INTERFACE(CCmdReplyStartGame)

    int m_Value1 = 0;
    zet::String_T<wchar_t> m_Text1;
    int m_Value2 = 0;
    int m_Value3 = 0;
    AccountData m_Account;
};

// Client to platform server: ends a game. Answered by CCmdReplyEndGame.
class COMMONGROUND_API CCmdRequestEndGame : public CCmdPlatform
{
public:
    CCmdRequestEndGame() : CCmdPlatform(command_id::CCmdRequestEndGame) {}
    COMMAND_INTERFACE(CCmdRequestEndGame)

    int m_Value1 = 0;
    int m_Value2 = 0;
    int m_Value3 = 0;
    int m_Value4 = 0;
    int m_Value5 = 0;
    float m_Float1 = 0.0f;
    float m_Float2 = 0.0f;
    bool m_Flag1 = false;
    zet::String_T<wchar_t> m_Text1;
    zet::String_T<wchar_t> m_Text2;
};

// Answers CCmdRequestEndGame.
class COMMONGROUND_API CCmdReplyEndGame : public CCmdPlatform
{
public:
    CCmdReplyEndGame() : CCmdPlatform(command_id::CCmdReplyEndGame) {}
    COMMAND_INTERFACE(CCmdReplyEndGame)

    int m_Value1 = 0;
    int m_Value2 = 0;
    int m_Value3 = 0;
    int m_Value4 = 0;
    bool m_Flag1 = false;
    int m_Value5 = 0;
    AccountData m_Account;
    AccountMatchData3 m_MatchData3;
    AccountGlobalData m_GlobalData;
    zet::String_T<wchar_t> m_Text1;
    // Not sent; for the process that sets it.
    AccountMatchData4 m_MatchData4;
};

// Client to platform server: finishes a mission. Answered by CCmdReplyFinishMission.
class COMMONGROUND_API CCmdRequestFinishMission : public CCmdPlatform
{
public:
    CCmdRequestFinishMission() : CCmdPlatform(command_id::CCmdRequestFinishMission) {}
    COMMAND_INTERFACE(CCmdRequestFinishMission)

    int m_Value1 = 0;
    int m_Value2 = 0;
};

// Answers CCmdRequestFinishMission.
class COMMONGROUND_API CCmdReplyFinishMission : public CCmdPlatform
{
public:
    CCmdReplyFinishMission() : CCmdPlatform(command_id::CCmdReplyFinishMission) {}
    COMMAND_INTERFACE(CCmdReplyFinishMission)

    zet::String_T<wchar_t> m_Text1;
    // True unless its sender sets otherwise.
    bool m_Flag1 = true;
    int m_Value1 = 0;
    int m_Value2 = 0;
    AccountData m_Account;
};

// Client to platform server: saves a mission of today. Answered by CCmdReplySaveTodayMission.
class COMMONGROUND_API CCmdRequestSaveTodayMission : public CCmdPlatform
{
public:
    CCmdRequestSaveTodayMission() : CCmdPlatform(command_id::CCmdRequestSaveTodayMission) {}
    COMMAND_INTERFACE(CCmdRequestSaveTodayMission)

    zet::String_T<wchar_t> m_Text1;
};

// Answers CCmdRequestSaveTodayMission.
class COMMONGROUND_API CCmdReplySaveTodayMission : public CCmdPlatform
{
public:
    CCmdReplySaveTodayMission() : CCmdPlatform(command_id::CCmdReplySaveTodayMission) {}
    COMMAND_INTERFACE(CCmdReplySaveTodayMission)

    zet::String_T<wchar_t> m_Text1;
    AccountData m_Account;
};

// Client to platform server: a player's energy. Answered by CCmdEnergyReply.
class COMMONGROUND_API CCmdEnergyRequest : public CCmdPlatform
{
public:
    CCmdEnergyRequest() : CCmdPlatform(command_id::CCmdEnergyRequest) {}
    COMMAND_INTERFACE(CCmdEnergyRequest)

    int m_Value1 = 0;
    int m_Value2 = 0;
    int m_Value3 = 0;
    int m_Value4 = 0;
};

// Answers CCmdEnergyRequest.
class COMMONGROUND_API CCmdEnergyReply : public CCmdPlatform
{
public:
    CCmdEnergyReply() : CCmdPlatform(command_id::CCmdEnergyReply) {}
    COMMAND_INTERFACE(CCmdEnergyReply)

    int m_Value1 = 0;
    int m_Value2 = 0;
    int m_Value3 = 0;
    float m_Float1 = 0.0f;
    zet::String_T<wchar_t> m_Text1;
    zet::String_T<wchar_t> m_Text2;
};

// Between client and platform server: saves the account.
class COMMONGROUND_API CCmdSaveAccount : public CCmdPlatform
{
public:
    CCmdSaveAccount() : CCmdPlatform(command_id::CCmdSaveAccount) {}
    COMMAND_INTERFACE(CCmdSaveAccount)

    AccountData m_Account;
};

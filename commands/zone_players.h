// The players of a zone: they enter, report ready, cancel that, and leave.
#pragma once

#include "dispatch/command_process.h"
#include "dispatch/ids/zone_players.h"
#include "packaging/command_head.h"
#include "playerdata/account_core.h"
#include "playerdata/account_global.h"
#include "playerdata/account_other.h"

// A player enters, with the account's records, the account first. Answered by CCmdGZ_playerEnterOk or, on failure,
// CCmdGZ_playerEnterFail.
class COMMONGROUND_API CCmdGZ_playerEnter : public CCmdPlatform
{
public:
    CCmdGZ_playerEnter() : CCmdPlatform(command_id::CCmdGZ_playerEnter) {}
    COMMAND_INTERFACE(CCmdGZ_playerEnter)

    AccountData m_Account;
    AccountGlobalData m_GlobalData;
};

// Answers CCmdGZ_playerEnter: with the player's record of the BS4 season.
class COMMONGROUND_API CCmdGZ_playerEnterOk : public CCmdPlatform
{
public:
    CCmdGZ_playerEnterOk() : CCmdPlatform(command_id::CCmdGZ_playerEnterOk) {}
    COMMAND_INTERFACE(CCmdGZ_playerEnterOk)

    AccountBS4Data m_BS4Data;
};

// Answers CCmdGZ_playerEnter on failure.
class COMMONGROUND_API CCmdGZ_playerEnterFail : public CCmdPlatform
{
public:
    CCmdGZ_playerEnterFail() : CCmdPlatform(command_id::CCmdGZ_playerEnterFail) {}
    COMMAND_INTERFACE(CCmdGZ_playerEnterFail)
};

// Brings a player back at the end of a game. Answered by CCmdGZ_playerExitOk or, on failure, CCmdGZ_playerExitFail.
class COMMONGROUND_API CCmdGZ_playerExit : public CCmdPlatform
{
public:
    CCmdGZ_playerExit() : CCmdPlatform(command_id::CCmdGZ_playerExit) {}
    COMMAND_INTERFACE(CCmdGZ_playerExit)

    zet::String_T<wchar_t> m_Text1;
};

// Answers CCmdGZ_playerExit: returns the account's records, the global data first.
class COMMONGROUND_API CCmdGZ_playerExitOk : public CCmdPlatform
{
public:
    CCmdGZ_playerExitOk() : CCmdPlatform(command_id::CCmdGZ_playerExitOk) {}
    COMMAND_INTERFACE(CCmdGZ_playerExitOk)

    AccountGlobalData m_GlobalData;
    AccountData m_Account;
};

// Answers CCmdGZ_playerExit on failure.
class COMMONGROUND_API CCmdGZ_playerExitFail : public CCmdPlatform
{
public:
    CCmdGZ_playerExitFail() : CCmdPlatform(command_id::CCmdGZ_playerExitFail) {}
    COMMAND_INTERFACE(CCmdGZ_playerExitFail)
};

// A player is ready. Answered by CCmdGZ_gameReadyOk or, on failure, CCmdGZ_gameReadyFail.
class COMMONGROUND_API CCmdGZ_gameReady : public CCmdPlatform
{
public:
    CCmdGZ_gameReady() : CCmdPlatform(command_id::CCmdGZ_gameReady) {}
    COMMAND_INTERFACE(CCmdGZ_gameReady)

    zet::String_T<wchar_t> m_Text1;
    int m_Value1 = 0;
};

// Answers CCmdGZ_gameReady on success.
class COMMONGROUND_API CCmdGZ_gameReadyOk : public CCmdPlatform
{
public:
    CCmdGZ_gameReadyOk() : CCmdPlatform(command_id::CCmdGZ_gameReadyOk) {}
    COMMAND_INTERFACE(CCmdGZ_gameReadyOk)
};

// Answers CCmdGZ_gameReady on failure.
class COMMONGROUND_API CCmdGZ_gameReadyFail : public CCmdPlatform
{
public:
    CCmdGZ_gameReadyFail() : CCmdPlatform(command_id::CCmdGZ_gameReadyFail) {}
    COMMAND_INTERFACE(CCmdGZ_gameReadyFail)
};

// A player is no longer ready. Answered by CCmdGZ_gameUnreadyOk or, on failure, CCmdGZ_gameUnreadyFail.
class COMMONGROUND_API CCmdGZ_gameUnready : public CCmdPlatform
{
public:
    CCmdGZ_gameUnready() : CCmdPlatform(command_id::CCmdGZ_gameUnready) {}
    COMMAND_INTERFACE(CCmdGZ_gameUnready)

    zet::String_T<wchar_t> m_Text1;
};

// Answers CCmdGZ_gameUnready on success.
class COMMONGROUND_API CCmdGZ_gameUnreadyOk : public CCmdPlatform
{
public:
    CCmdGZ_gameUnreadyOk() : CCmdPlatform(command_id::CCmdGZ_gameUnreadyOk) {}
    COMMAND_INTERFACE(CCmdGZ_gameUnreadyOk)
};

// Answers CCmdGZ_gameUnready on failure.
class COMMONGROUND_API CCmdGZ_gameUnreadyFail : public CCmdPlatform
{
public:
    CCmdGZ_gameUnreadyFail() : CCmdPlatform(command_id::CCmdGZ_gameUnreadyFail) {}
    COMMAND_INTERFACE(CCmdGZ_gameUnreadyFail)
};

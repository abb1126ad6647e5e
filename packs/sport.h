// Messages between a client and the sport server: actions are sent in requests, results in replies, notices in
// CCmdSportPackNotify.
#pragma once

#include "commands/sport.h"
#include "packaging/wire_interface.h"

#include <map>

// Request in CCmdSportPackRequest: starts a session. Answered by CmdSportCommonResult.
class COMMONGROUND_API CmdStartSessionAction
{
public:
    WIRE_INTERFACE_DATA

    zet::String_T<wchar_t> m_Text1;
};

// Request in CCmdSportPackRequest: enters the lobby. Answered by CmdSportCommonResult.
class COMMONGROUND_API CmdEnterLobbyAction
{
public:
    WIRE_INTERFACE_DATA

    zet::String_T<wchar_t> m_Text1;
    zet::String_T<wchar_t> m_Text2;
    zet::String_T<wchar_t> m_Text3;
};

// Request in CCmdSportPackRequest: enters a room. Answered by CmdSportCommonResult.
class COMMONGROUND_API CmdEnterRoomAction
{
public:
    WIRE_INTERFACE_DATA

    zet::String_T<wchar_t> m_Text1;
};

// Request in CCmdSportPackRequest: asks for an automatic match. Answered by CmdSportCommonResult.
class COMMONGROUND_API CmdAutoMatchAction
{
public:
    WIRE_INTERFACE_DATA

    unsigned short m_Word1 = 0;
};

// Request in CCmdSportPackRequest: prepares a game. Answered by CmdSportCommonResult.
class COMMONGROUND_API CmdPrepareGameAction
{
public:
    WIRE_INTERFACE_DATA

    zet::Uuid m_Id1;
};

// Request in CCmdSportPackRequest: sets whether the player is ready. Answered by CmdSportCommonResult.
class COMMONGROUND_API CmdSetReadyAction
{
public:
    WIRE_INTERFACE_DATA

    bool m_Flag1 = false;
};

// Request in CCmdSportPackRequest: ends a game, with the scores. Answered by CmdSportCommonResult.
class COMMONGROUND_API CmdEndGameAction
{
public:
    WIRE_INTERFACE_DATA

    CSportScore m_SportScore;
};

// Request in CCmdSportPackRequest: submits three values. Answered by CmdSportCommonResult.
class COMMONGROUND_API CmdSubmitActEffectDataAction
{
public:
    WIRE_INTERFACE_DATA

    CSportActEffectData m_SportActEffectData;
};

// Reply in CCmdSportPackReply to every action of this file.
class COMMONGROUND_API CmdSportCommonResult
{
public:
    WIRE_INTERFACE_DATA

    unsigned char m_Byte1 = 0;
    zet::String_T<wchar_t> m_Text1;
};

// Notice in CCmdSportPackNotify: a session has started.
class COMMONGROUND_API CmdSessionStartedNotify
{
public:
    WIRE_INTERFACE_DATA

    zet::String_T<wchar_t> m_Text1;
    unsigned short m_Word1 = 0;
    zet::Uuid m_Id1;
};

// Notice in CCmdSportPackNotify: a room was created.
class COMMONGROUND_API CmdCreateRoomNotify
{
public:
    WIRE_INTERFACE_DATA

    zet::String_T<wchar_t> m_Text1;
};

// Notice in CCmdSportPackNotify: a room was entered.
class COMMONGROUND_API CmdEnterRoomNotify
{
public:
    WIRE_INTERFACE_DATA

    zet::String_T<wchar_t> m_Text1;
    zet::String_T<wchar_t> m_Text2;
    zet::String_T<wchar_t> m_Text3;
};

// Notice in CCmdSportPackNotify: three values.
class COMMONGROUND_API CmdActEffectNotify
{
public:
    WIRE_INTERFACE_DATA

    zet::String_T<wchar_t> m_Text1;
    CSportActEffectData m_SportActEffectData;
};

// Notice in CCmdSportPackNotify: a game is over. Of two entries with the same text the later is kept.
class COMMONGROUND_API CmdGameOverNotify
{
public:
    WIRE_INTERFACE_DATA

    std::map<zet::String_T<wchar_t>, int> m_Entries;
};

// Notice in CCmdSportPackNotify: a text.
class COMMONGROUND_API CmdSportCommonNotify
{
public:
    WIRE_INTERFACE_DATA

    zet::String_T<wchar_t> m_Text1;
};

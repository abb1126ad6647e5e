// Messages between a client and the sport server: actions are sent in requests, results in replies, notices in
// CCmdSportPackNotify.
#pragma once

#include "commands/sport.h"
#include "packaging/wire_interface.h"

#include <map>

class COMMONGROUND_API CmdStartSessionAction
{
public:
    WIRE_INTERFACE_DATA

    zet::String_T<wchar_t> m_Text1;
};

class COMMONGROUND_API CmdEnterLobbyAction
{
public:
    WIRE_INTERFACE_DATA

    zet::String_T<wchar_t> m_Text1;
    zet::String_T<wchar_t> m_Text2;
    zet::String_T<wchar_t> m_Text3;
};

class COMMONGROUND_API CmdEnterRoomAction
{
public:
    WIRE_INTERFACE_DATA

    zet::String_T<wchar_t> m_Text1;
};

class COMMONGROUND_API CmdAutoMatchAction
{
public:
    WIRE_INTERFACE_DATA

    unsigned short m_Word1 = 0;
};

class COMMONGROUND_API CmdPrepareGameAction
{
public:
    WIRE_INTERFACE_DATA

    zet::Uuid m_Id1;
};

class COMMONGROUND_API CmdSetReadyAction
{
public:
    WIRE_INTERFACE_DATA

    bool m_Flag1 = false;
};

class COMMONGROUND_API CmdEndGameAction
{
public:
    WIRE_INTERFACE_DATA

    CSportScore m_SportScore;
};

class COMMONGROUND_API CmdSubmitActEffectDataAction
{
public:
    WIRE_INTERFACE_DATA

    CSportActEffectData m_SportActEffectData;
};

// The reply to an action.
class COMMONGROUND_API CmdSportCommonResult
{
public:
    WIRE_INTERFACE_DATA

    unsigned char m_Byte1 = 0;
    zet::String_T<wchar_t> m_Text1;
};

class COMMONGROUND_API CmdSessionStartedNotify
{
public:
    WIRE_INTERFACE_DATA

    zet::String_T<wchar_t> m_Text1;
    unsigned short m_Word1 = 0;
    zet::Uuid m_Id1;
};

class COMMONGROUND_API CmdCreateRoomNotify
{
public:
    WIRE_INTERFACE_DATA

    zet::String_T<wchar_t> m_Text1;
};

class COMMONGROUND_API CmdEnterRoomNotify
{
public:
    WIRE_INTERFACE_DATA

    zet::String_T<wchar_t> m_Text1;
    zet::String_T<wchar_t> m_Text2;
    zet::String_T<wchar_t> m_Text3;
};

class COMMONGROUND_API CmdActEffectNotify
{
public:
    WIRE_INTERFACE_DATA

    zet::String_T<wchar_t> m_Text1;
    CSportActEffectData m_SportActEffectData;
};

// Of two entries with the same text the later is kept.
class COMMONGROUND_API CmdGameOverNotify
{
public:
    WIRE_INTERFACE_DATA

    std::map<zet::String_T<wchar_t>, int> m_Entries;
};

class COMMONGROUND_API CmdSportCommonNotify
{
public:
    WIRE_INTERFACE_DATA

    zet::String_T<wchar_t> m_Text1;
};

// Messages between a client and the sport server: actions are sent in requests, results in replies, notices in
// CCmdSportPackNotify.
#pragma once

#include "commands/sport.h"

#include <map>

class COMMONGROUND_API CmdStartSessionAction
{
public:
    bool Write(CDataPackager* pk) const;
    bool Read(CDataPackager* pk);
    static const wire::Schema& Wire();

    zet::String_T<wchar_t> m_Text1;
};

class COMMONGROUND_API CmdEnterLobbyAction
{
public:
    bool Write(CDataPackager* pk) const;
    bool Read(CDataPackager* pk);
    static const wire::Schema& Wire();

    zet::String_T<wchar_t> m_Text1;
    zet::String_T<wchar_t> m_Text2;
    zet::String_T<wchar_t> m_Text3;
};

class COMMONGROUND_API CmdEnterRoomAction
{
public:
    bool Write(CDataPackager* pk) const;
    bool Read(CDataPackager* pk);
    static const wire::Schema& Wire();

    zet::String_T<wchar_t> m_Text1;
};

class COMMONGROUND_API CmdAutoMatchAction
{
public:
    bool Write(CDataPackager* pk) const;
    bool Read(CDataPackager* pk);
    static const wire::Schema& Wire();

    unsigned short m_Word1 = 0;
};

class COMMONGROUND_API CmdPrepareGameAction
{
public:
    bool Write(CDataPackager* pk) const;
    bool Read(CDataPackager* pk);
    static const wire::Schema& Wire();

    zet::Uuid m_Id1;
};

class COMMONGROUND_API CmdSetReadyAction
{
public:
    bool Write(CDataPackager* pk) const;
    bool Read(CDataPackager* pk);
    static const wire::Schema& Wire();

    bool m_Flag1 = false;
};

class COMMONGROUND_API CmdEndGameAction
{
public:
    bool Write(CDataPackager* pk) const;
    bool Read(CDataPackager* pk);
    static const wire::Schema& Wire();

    CSportScore m_SportScore;
};

class COMMONGROUND_API CmdSubmitActEffectDataAction
{
public:
    bool Write(CDataPackager* pk) const;
    bool Read(CDataPackager* pk);
    static const wire::Schema& Wire();

    CSportActEffectData m_SportActEffectData;
};

// The reply to an action.
class COMMONGROUND_API CmdSportCommonResult
{
public:
    bool Write(CDataPackager* pk) const;
    bool Read(CDataPackager* pk);
    static const wire::Schema& Wire();

    unsigned char m_Byte1 = 0;
    zet::String_T<wchar_t> m_Text1;
};

class COMMONGROUND_API CmdSessionStartedNotify
{
public:
    bool Write(CDataPackager* pk) const;
    bool Read(CDataPackager* pk);
    static const wire::Schema& Wire();

    zet::String_T<wchar_t> m_Text1;
    unsigned short m_Word1 = 0;
    zet::Uuid m_Id1;
};

class COMMONGROUND_API CmdCreateRoomNotify
{
public:
    bool Write(CDataPackager* pk) const;
    bool Read(CDataPackager* pk);
    static const wire::Schema& Wire();

    zet::String_T<wchar_t> m_Text1;
};

class COMMONGROUND_API CmdEnterRoomNotify
{
public:
    bool Write(CDataPackager* pk) const;
    bool Read(CDataPackager* pk);
    static const wire::Schema& Wire();

    zet::String_T<wchar_t> m_Text1;
    zet::String_T<wchar_t> m_Text2;
    zet::String_T<wchar_t> m_Text3;
};

class COMMONGROUND_API CmdActEffectNotify
{
public:
    bool Write(CDataPackager* pk) const;
    bool Read(CDataPackager* pk);
    static const wire::Schema& Wire();

    zet::String_T<wchar_t> m_Text1;
    CSportActEffectData m_SportActEffectData;
};

// Of two entries with the same text the later is kept.
class COMMONGROUND_API CmdGameOverNotify
{
public:
    bool Write(CDataPackager* pk) const;
    bool Read(CDataPackager* pk);
    static const wire::Schema& Wire();

    std::map<zet::String_T<wchar_t>, int> m_Entries;
};

class COMMONGROUND_API CmdSportCommonNotify
{
public:
    bool Write(CDataPackager* pk) const;
    bool Read(CDataPackager* pk);
    static const wire::Schema& Wire();

    zet::String_T<wchar_t> m_Text1;
};

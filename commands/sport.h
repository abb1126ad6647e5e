// The sport server: sessions of a sport game for a room of players. These are sent between servers; clients and the
// sport server exchange messages in envelopes, see packs/sport.h.
#pragma once

#include "dispatch/command_process.h"
#include "dispatch/ids/sport.h"
#include "packaging/command_head.h"
#include "packaging/wire_interface.h"

#include <map>
#include <vector>

// A list of scores.
class COMMONGROUND_API CSportScore
{
public:
    WIRE_INTERFACE_BOTH

    // The number of scores.
    int getSize() const { return static_cast<int>(m_Values.size()); }
    // The sum of the list; wraps beyond int.
    int getTotalScore() const;

    std::vector<int> m_Values;
};

// Three values of CmdSubmitActEffectDataAction and CmdActEffectNotify. The sport server defines them.
class COMMONGROUND_API CSportActEffectData
{
public:
    WIRE_INTERFACE_DATA

    int m_Value1 = 0;
    int m_Value2 = 0;
    int m_Value3 = 0;
};

// One player of CCmdSport_StartSessionRequest.
class COMMONGROUND_API CSportPlayerData
{
public:
    WIRE_INTERFACE_CMD

    zet::String_T<wchar_t> m_Text1;
    zet::String_T<wchar_t> m_Text2;
    zet::String_T<wchar_t> m_Text3;
    unsigned char m_Byte1 = 0;
    CSportScore m_SportScore;
};

// The room of CCmdSport_StartSessionRequest.
class COMMONGROUND_API CSportRoomData
{
public:
    WIRE_INTERFACE_CMD

    zet::Uuid m_Id1;
    zet::String_T<wchar_t> m_Text1;
    zet::String_T<wchar_t> m_Text2;
};

// A sport server, in CCmdSport_AskServerInfoReply. The sport server defines the numbers.
class COMMONGROUND_API CSportGameServerInfo
{
public:
    static constexpr int kData1Size = 6;

    WIRE_INTERFACE_BOTH

    bool m_Flag1 = false;
    int m_Value1 = 0;
    int m_Value2 = 0;
    int m_Value3 = 0;
    zet::String_T<wchar_t> m_Text1;
    unsigned short m_Word1 = 0;
    zet::String_T<wchar_t> m_Text2;
    unsigned char m_Data1[kData1Size] = {};
};

// Server to server: asks for the sport server. Answered by CCmdSport_AskServerInfoReply.
class COMMONGROUND_API CCmdSport_AskServerInfoRequest : public CCmdPlatform
{
public:
    CCmdSport_AskServerInfoRequest() : CCmdPlatform(command_id::CCmdSport_AskServerInfoRequest) {}
    COMMAND_INTERFACE(CCmdSport_AskServerInfoRequest)
};

// Answers CCmdSport_AskServerInfoRequest: a result and the sport server.
class COMMONGROUND_API CCmdSport_AskServerInfoReply : public CCmdPlatform
{
public:
    CCmdSport_AskServerInfoReply() : CCmdPlatform(command_id::CCmdSport_AskServerInfoReply) {}
    COMMAND_INTERFACE(CCmdSport_AskServerInfoReply)

    // The result.
    unsigned char m_Byte1 = 0;
    CSportGameServerInfo m_SportGameServerInfo;
};

// Server to server: hands over a room and its players. Answered by CCmdSport_StartSessionReply.
class COMMONGROUND_API CCmdSport_StartSessionRequest : public CCmdPlatform
{
public:
    CCmdSport_StartSessionRequest() : CCmdPlatform(command_id::CCmdSport_StartSessionRequest) {}
    COMMAND_INTERFACE(CCmdSport_StartSessionRequest)

    CSportRoomData m_SportRoomData;
    std::vector<CSportPlayerData> m_SportPlayerDatas;
};

// Answers CCmdSport_StartSessionRequest: a result and two identifiers.
class COMMONGROUND_API CCmdSport_StartSessionReply : public CCmdPlatform
{
public:
    CCmdSport_StartSessionReply() : CCmdPlatform(command_id::CCmdSport_StartSessionReply) {}
    COMMAND_INTERFACE(CCmdSport_StartSessionReply)

    // The result.
    unsigned char m_Byte1 = 0;
    zet::Uuid m_Id1;
    zet::Uuid m_Id2;
};

// Server to server: reports the scores by player. Of two entries with the same text the later is kept.
class COMMONGROUND_API CCmdSport_GameOverMessage : public CCmdPlatform
{
public:
    CCmdSport_GameOverMessage() : CCmdPlatform(command_id::CCmdSport_GameOverMessage) {}
    COMMAND_INTERFACE(CCmdSport_GameOverMessage)

    zet::Uuid m_Id1;
    std::map<zet::String_T<wchar_t>, CSportScore> m_Entries;
};

// Server to server: reports a player who has left.
class COMMONGROUND_API CCmdSport_UserDisconnectNotify : public CCmdPlatform
{
public:
    CCmdSport_UserDisconnectNotify() : CCmdPlatform(command_id::CCmdSport_UserDisconnectNotify) {}
    COMMAND_INTERFACE(CCmdSport_UserDisconnectNotify)

    zet::String_T<wchar_t> m_Text1;
};

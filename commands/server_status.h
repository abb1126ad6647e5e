// Additions to the registry: the address records of servers, the two count queries and the status commands.
#pragma once

#include "dispatch/command_process.h"
#include "dispatch/ids/server_status.h"
#include "packaging/command_head.h"
#include "packaging/wire_interface.h"

// One entry of the server list offered to a client, in CCmdServerListReply. The hosts define the numbers.
struct COMMONGROUND_API PlatformServerInfo
{
    WIRE_INTERFACE_CMD

    bool m_Enabled = false;
    int m_Value1 = 0;
    int m_Value2 = 0;
    int m_Value3 = 0;
    int m_Value4 = 0;
    zet::String_T<wchar_t> m_Name;
    // Identifies the server; the key of the list.
    zet::uuid_node_t m_Node;
};

// The address of a game server that registers at its zone, in CCmdGZ_regGameServer. The hosts define the numbers.
struct COMMONGROUND_API GameSvrInfo
{
    WIRE_INTERFACE_CMD

    zet::String_T<wchar_t> m_Name;
    zet::uuid_node_t m_Node;
    zet::String_T<wchar_t> m_IP;
    unsigned short m_Port = 0;
    zet::String_T<wchar_t> m_Text;
    int m_Value1 = 0;
    int m_Value2 = 0;
    int m_Value3 = 0;
};

// A count query. Answered by CCmdInGamePlayerCountResponse. The hosts define the number.
class COMMONGROUND_API CCmdInGamePlayerCountRequest : public CCmdPlatform
{
public:
    explicit CCmdInGamePlayerCountRequest(unsigned short id = command_id::CCmdInGamePlayerCountRequest)
        : CCmdPlatform(id)
    {
    }
    COMMAND_INTERFACE(CCmdInGamePlayerCountRequest)

    int m_Value1 = 0;
};

// Answers CCmdInGamePlayerCountRequest: two numbers, which the hosts define.
class COMMONGROUND_API CCmdInGamePlayerCountResponse : public CCmdPlatform
{
public:
    explicit CCmdInGamePlayerCountResponse(unsigned short id = command_id::CCmdInGamePlayerCountResponse)
        : CCmdPlatform(id)
    {
    }
    COMMAND_INTERFACE(CCmdInGamePlayerCountResponse)

    int m_Value1 = 0;
    int m_Value2 = 0;
};

// A count query without arguments. Answered by CCmdPlayerCountOnLineResponse.
class COMMONGROUND_API CCmdPlayerCountOnLineRequest : public CCmdPlatform
{
public:
    explicit CCmdPlayerCountOnLineRequest(unsigned short id = command_id::CCmdPlayerCountOnLineRequest)
        : CCmdPlatform(id)
    {
    }
    COMMAND_INTERFACE(CCmdPlayerCountOnLineRequest)
};

// Answers CCmdPlayerCountOnLineRequest: a number, which the hosts define.
class COMMONGROUND_API CCmdPlayerCountOnLineResponse : public CCmdPlatform
{
public:
    explicit CCmdPlayerCountOnLineResponse(unsigned short id = command_id::CCmdPlayerCountOnLineResponse)
        : CCmdPlatform(id)
    {
    }
    COMMAND_INTERFACE(CCmdPlayerCountOnLineResponse)

    int m_Value1 = 0;
};

// A status of a server, as a text.
class COMMONGROUND_API CCmdServerBusy : public CCmdPlatform
{
public:
    CCmdServerBusy() : CCmdPlatform(command_id::CCmdServerBusy) {}
    COMMAND_INTERFACE(CCmdServerBusy)

    zet::String_T<wchar_t> m_Text1;
};

// The result of a connection over UDP: it succeeded.
class COMMONGROUND_API CCmdUdpServerConnectOk : public CCmdPlatform
{
public:
    CCmdUdpServerConnectOk() : CCmdPlatform(command_id::CCmdUdpServerConnectOk) {}
    COMMAND_INTERFACE(CCmdUdpServerConnectOk)

    zet::String_T<wchar_t> m_Text1;
};

// The result of a connection over UDP: it failed.
class COMMONGROUND_API CCmdUdpServerConnectFail : public CCmdPlatform
{
public:
    CCmdUdpServerConnectFail() : CCmdPlatform(command_id::CCmdUdpServerConnectFail) {}
    COMMAND_INTERFACE(CCmdUdpServerConnectFail)

    zet::String_T<wchar_t> m_Text1;
};

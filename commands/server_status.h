// Additions to the registry: the address records of servers, the two count queries and the status commands.
#pragma once

#include "dispatch/command_process.h"
#include "dispatch/ids/server_status.h"
#include "packaging/command_head.h"
#include "packaging/wire_interface.h"

// One entry of the server list offered to a client.
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

// A game server's registration at its zone.
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

class COMMONGROUND_API CCmdPlayerCountOnLineRequest : public CCmdPlatform
{
public:
    explicit CCmdPlayerCountOnLineRequest(unsigned short id = command_id::CCmdPlayerCountOnLineRequest)
        : CCmdPlatform(id)
    {
    }
    COMMAND_INTERFACE(CCmdPlayerCountOnLineRequest)
};

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

class COMMONGROUND_API CCmdServerBusy : public CCmdPlatform
{
public:
    CCmdServerBusy() : CCmdPlatform(command_id::CCmdServerBusy) {}
    COMMAND_INTERFACE(CCmdServerBusy)

    zet::String_T<wchar_t> m_Text1;
};

class COMMONGROUND_API CCmdUdpServerConnectOk : public CCmdPlatform
{
public:
    CCmdUdpServerConnectOk() : CCmdPlatform(command_id::CCmdUdpServerConnectOk) {}
    COMMAND_INTERFACE(CCmdUdpServerConnectOk)

    zet::String_T<wchar_t> m_Text1;
};

class COMMONGROUND_API CCmdUdpServerConnectFail : public CCmdPlatform
{
public:
    CCmdUdpServerConnectFail() : CCmdPlatform(command_id::CCmdUdpServerConnectFail) {}
    COMMAND_INTERFACE(CCmdUdpServerConnectFail)

    zet::String_T<wchar_t> m_Text1;
};

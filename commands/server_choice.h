// The list of servers offered to a client, and its choice, before a session starts.
#pragma once

#include "commands/server_status.h"
#include "dispatch/command_process.h"
#include "dispatch/ids/server_choice.h"
#include "packaging/command_head.h"

#include <map>

// Client to platform server: asks for the servers to choose from, before a login. Answered by CCmdServerListReply.
class COMMONGROUND_API CCmdServerListRequest : public CCmdPlatform
{
public:
    CCmdServerListRequest() : CCmdPlatform(command_id::CCmdServerListRequest) {}
    COMMAND_INTERFACE(CCmdServerListRequest)
};

// Answers CCmdServerListRequest: the servers with their state. Read ends with false at the first entry that cannot be
// read; the entries before it stay.
class COMMONGROUND_API CCmdServerListReply : public CCmdPlatform
{
public:
    CCmdServerListReply() : CCmdPlatform(command_id::CCmdServerListReply) {}
    COMMAND_INTERFACE(CCmdServerListReply)

    int m_Value1 = 0;
    zet::String_T<wchar_t> m_Text1;
    // By node, the key: of two entries with the same node the later is kept.
    std::map<zet::uuid_node_t, PlatformServerInfo> m_PlatformServerInfos;
};

// Client to platform server: chooses a server of the list. Answered by CCmdSelectServerReply.
class COMMONGROUND_API CCmdSelectServerRequest : public CCmdPlatform
{
public:
    CCmdSelectServerRequest() : CCmdPlatform(command_id::CCmdSelectServerRequest) {}
    COMMAND_INTERFACE(CCmdSelectServerRequest)

    int m_Value1 = 0;
    int m_Value2 = 0;
    zet::String_T<wchar_t> m_Text1;
    zet::String_T<wchar_t> m_Text2;
    zet::String_T<wchar_t> m_Text3;
};

// Answers CCmdSelectServerRequest.
class COMMONGROUND_API CCmdSelectServerReply : public CCmdPlatform
{
public:
    CCmdSelectServerReply() : CCmdPlatform(command_id::CCmdSelectServerReply) {}
    COMMAND_INTERFACE(CCmdSelectServerReply)

    zet::String_T<wchar_t> m_Text1;
    int m_Value1 = 0;
    int m_Value2 = 0;
    int m_Value3 = 0;
};

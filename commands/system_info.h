// A server's statistics, for a client that shows them.
#pragma once

#include "dispatch/command_process.h"
#include "dispatch/ids/system_info.h"
#include "packaging/command_head.h"
#include "packaging/wire_interface.h"

#include <vector>

// One entry of CCmdSystemInfoReply: four texts, which the answering server defines.
struct COMMONGROUND_API cSystemInfo
{
    WIRE_INTERFACE_CMD

    zet::String_T<wchar_t> m_Text1;
    zet::String_T<wchar_t> m_Text2;
    zet::String_T<wchar_t> m_Text3;
    zet::String_T<wchar_t> m_Text4;
};

// Monitoring client to server: asks for the statistics of a server. Answered by CCmdSystemInfoReply.
class COMMONGROUND_API CCmdSystemInfoRequest : public CCmdPlatform
{
public:
    CCmdSystemInfoRequest() : CCmdPlatform(command_id::CCmdSystemInfoRequest) {}
    COMMAND_INTERFACE(CCmdSystemInfoRequest)

    zet::String_T<wchar_t> m_Text1;
};

// Answers CCmdSystemInfoRequest: the statistics. Its list precedes its head on the wire.
class COMMONGROUND_API CCmdSystemInfoReply : public CCmdPlatform
{
public:
    CCmdSystemInfoReply() : CCmdPlatform(command_id::CCmdSystemInfoReply) {}
    COMMAND_INTERFACE(CCmdSystemInfoReply)

    std::vector<cSystemInfo> m_SystemInfos;
    bool m_Flag1 = false;
    int m_Value1 = 0;
    bool m_Flag2 = false;
    int m_Value2 = 0;
};

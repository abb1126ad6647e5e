// The query tool's reports on how many players are online. See query_tool_payment.h for the form of a report.
#pragma once

#include "framework/export.h"
#include "framework/string.h"
#include "packaging/wire_interface.h"

#include <vector>

// Request in CCmdQueryToolRequest: asks for the report on the players online over 24 hours. Answered by
// QT_OnlineQuery_Hours24Online_Reply.
struct COMMONGROUND_API QT_OnlineQuery_Hours24Online_Request final
{
    WIRE_INTERFACE_CMD_VIRTUAL

    zet::String_T<wchar_t> m_Text1;
    zet::String_T<wchar_t> m_Text2;
};

// Reply in CCmdQueryToolReply to QT_OnlineQuery_Hours24Online_Request: the report.
struct COMMONGROUND_API QT_OnlineQuery_Hours24Online_Reply final
{
    WIRE_INTERFACE_CMD_VIRTUAL

    zet::String_T<wchar_t> m_Msg;
    std::vector<zet::String_T<wchar_t>> m_Column1;
    std::vector<int> m_Column2;
};

// Request in CCmdQueryToolRequest: asks for the report on the players online over days. Answered by
// QT_OnlineQuery_DaysOnline_Reply.
struct COMMONGROUND_API QT_OnlineQuery_DaysOnline_Request final
{
    WIRE_INTERFACE_CMD_VIRTUAL

    zet::String_T<wchar_t> m_Text1;
    zet::String_T<wchar_t> m_Text2;
    int m_Value1 = 0;
};

// Reply in CCmdQueryToolReply to QT_OnlineQuery_DaysOnline_Request: the report.
struct COMMONGROUND_API QT_OnlineQuery_DaysOnline_Reply final
{
    WIRE_INTERFACE_CMD_VIRTUAL

    zet::String_T<wchar_t> m_Msg;
    std::vector<zet::String_T<wchar_t>> m_Column1;
    std::vector<int> m_Column2;
    std::vector<int> m_Column3;
    std::vector<float> m_Column4;
};

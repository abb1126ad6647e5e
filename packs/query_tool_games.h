// The query tool's statistics of the best family and zillionaire games. See query_tool_payment.h for the form of a
// report.
#pragma once

#include "framework/export.h"
#include "framework/string.h"
#include "packaging/wire_interface.h"

#include <vector>

// Request in CCmdQueryToolRequest: asks for a report on the best family game. Answered by QT_BstFmy3_DailyStats_Reply.
struct COMMONGROUND_API QT_BstFmy3_DailyStats_Request final
{
    WIRE_INTERFACE_CMD_VIRTUAL

    zet::String_T<wchar_t> m_Text1;
    zet::String_T<wchar_t> m_Text2;
};

// Reply in CCmdQueryToolReply to QT_BstFmy3_DailyStats_Request: the report.
struct COMMONGROUND_API QT_BstFmy3_DailyStats_Reply final
{
    WIRE_INTERFACE_CMD_VIRTUAL

    zet::String_T<wchar_t> m_Msg;
    std::vector<zet::String_T<wchar_t>> m_Column1;
    std::vector<int> m_Column2;
    std::vector<int> m_Column3;
    std::vector<int> m_Column4;
    std::vector<int> m_Column5;
};

// Request in CCmdQueryToolRequest: asks for a report on the best family game. Answered by
// QT_BstFmy3_EventTrigger_Reply.
struct COMMONGROUND_API QT_BstFmy3_EventTrigger_Request final
{
    WIRE_INTERFACE_CMD_VIRTUAL

    zet::String_T<wchar_t> m_Text1;
    zet::String_T<wchar_t> m_Text2;
};

// Reply in CCmdQueryToolReply to QT_BstFmy3_EventTrigger_Request: the report.
struct COMMONGROUND_API QT_BstFmy3_EventTrigger_Reply final
{
    WIRE_INTERFACE_CMD_VIRTUAL

    zet::String_T<wchar_t> m_Msg;
    std::vector<zet::String_T<wchar_t>> m_Column1;
    std::vector<int> m_Column2;
    std::vector<int> m_Column3;
    std::vector<int> m_Column4;
};

// Request in CCmdQueryToolRequest: asks for a report on the best family game. Answered by QT_BstFmy3_PropsOutput_Reply.
struct COMMONGROUND_API QT_BstFmy3_PropsOutput_Request final
{
    WIRE_INTERFACE_CMD_VIRTUAL

    zet::String_T<wchar_t> m_Text1;
    zet::String_T<wchar_t> m_Text2;
};

// Reply in CCmdQueryToolReply to QT_BstFmy3_PropsOutput_Request: the report.
struct COMMONGROUND_API QT_BstFmy3_PropsOutput_Reply final
{
    WIRE_INTERFACE_CMD_VIRTUAL

    zet::String_T<wchar_t> m_Msg;
    std::vector<zet::String_T<wchar_t>> m_Column1;
    std::vector<int> m_Column2;
    std::vector<int> m_Column3;
    std::vector<int> m_Column4;
    std::vector<int> m_Column5;
};

// Request in CCmdQueryToolRequest: asks for a report on the best family game. Answered by
// QT_BstFmy3_WeekMatchStats_Reply.
struct COMMONGROUND_API QT_BstFmy3_WeekMatchStats_Request final
{
    WIRE_INTERFACE_CMD_VIRTUAL

    zet::String_T<wchar_t> m_Text1;
    zet::String_T<wchar_t> m_Text2;
};

// Reply in CCmdQueryToolReply to QT_BstFmy3_WeekMatchStats_Request: the report.
struct COMMONGROUND_API QT_BstFmy3_WeekMatchStats_Reply final
{
    WIRE_INTERFACE_CMD_VIRTUAL

    zet::String_T<wchar_t> m_Msg;
    std::vector<zet::String_T<wchar_t>> m_Column1;
    std::vector<int> m_Column2;
    std::vector<int> m_Column3;
    std::vector<int> m_Column4;
    std::vector<int> m_Column5;
    std::vector<int> m_Column6;
};

// Request in CCmdQueryToolRequest: asks for a report on the zillionaire game. Answered by
// QT_BstFmy3_ZillionaireProps_Reply.
struct COMMONGROUND_API QT_BstFmy3_ZillionaireProps_Request final
{
    WIRE_INTERFACE_CMD_VIRTUAL

    zet::String_T<wchar_t> m_Text1;
    zet::String_T<wchar_t> m_Text2;
};

// Reply in CCmdQueryToolReply to QT_BstFmy3_ZillionaireProps_Request: the report.
struct COMMONGROUND_API QT_BstFmy3_ZillionaireProps_Reply final
{
    WIRE_INTERFACE_CMD_VIRTUAL

    zet::String_T<wchar_t> m_Msg;
    std::vector<zet::String_T<wchar_t>> m_Column1;
    std::vector<int> m_Column2;
    std::vector<int> m_Column3;
    std::vector<int> m_Column4;
    std::vector<int> m_Column5;
};

// Request in CCmdQueryToolRequest: asks for a report on the zillionaire game. Answered by
// QT_BstFmy3_ZillionaireStats_Reply.
struct COMMONGROUND_API QT_BstFmy3_ZillionaireStats_Request final
{
    WIRE_INTERFACE_CMD_VIRTUAL

    zet::String_T<wchar_t> m_Text1;
    zet::String_T<wchar_t> m_Text2;
};

// Reply in CCmdQueryToolReply to QT_BstFmy3_ZillionaireStats_Request: the report.
struct COMMONGROUND_API QT_BstFmy3_ZillionaireStats_Reply final
{
    WIRE_INTERFACE_CMD_VIRTUAL

    zet::String_T<wchar_t> m_Msg;
    std::vector<zet::String_T<wchar_t>> m_Column1;
    std::vector<int> m_Column2;
    std::vector<int> m_Column3;
    std::vector<int> m_Column4;
};

// The query tool's reports on payment and consumption.
// A report is a set of columns of equal length, sent row by row, each row an element of every column. A writer uses the
// length of the first column for all.
#pragma once

#include "framework/export.h"
#include "framework/string.h"
#include "packaging/wire_interface.h"

#include <vector>

// Request in CCmdQueryToolRequest: asks for the overview of payments. Answered by QT_OverviewPay_Reply.
struct COMMONGROUND_API QT_OverviewPay_Request final
{
    WIRE_INTERFACE_CMD_VIRTUAL

    zet::String_T<wchar_t> m_Text1;
    zet::String_T<wchar_t> m_Text2;
    int m_Value1 = 0;
};

// Reply in CCmdQueryToolReply to QT_OverviewPay_Request: eight figures.
struct COMMONGROUND_API QT_OverviewPay_Reply final
{
    WIRE_INTERFACE_CMD_VIRTUAL

    zet::String_T<wchar_t> m_Msg;
    float m_Float1 = 0;
    float m_Float2 = 0;
    float m_Float3 = 0;
    float m_Float4 = 0;
    float m_Float5 = 0;
    float m_Float6 = 0;
    float m_Float7 = 0;
    float m_Float8 = 0;
};

// Request in CCmdQueryToolRequest: asks for the report on payment. Answered by QT_Payment_Pay_Reply.
struct COMMONGROUND_API QT_Payment_Pay_Request final
{
    WIRE_INTERFACE_CMD_VIRTUAL

    int m_Value1 = 1;
    zet::String_T<wchar_t> m_Text1;
    zet::String_T<wchar_t> m_Text2;
    zet::String_T<wchar_t> m_Text3;
    zet::String_T<wchar_t> m_Text4;
    zet::String_T<wchar_t> m_Text5;
};

// Reply in CCmdQueryToolReply to QT_Payment_Pay_Request: the report.
struct COMMONGROUND_API QT_Payment_Pay_Reply final
{
    WIRE_INTERFACE_CMD_VIRTUAL

    zet::String_T<wchar_t> m_Msg;
    int m_Value1 = 0;
    int m_Value2 = 0;
    int m_Value3 = 0;
    int m_Value4 = 0;
    int m_Value5 = 0;
    std::vector<zet::String_T<wchar_t>> m_Column1;
    std::vector<zet::String_T<wchar_t>> m_Column2;
    std::vector<zet::String_T<wchar_t>> m_Column3;
    std::vector<zet::String_T<wchar_t>> m_Column4;
    std::vector<zet::String_T<wchar_t>> m_Column5;
    std::vector<zet::String_T<wchar_t>> m_Column6;
};

// Request in CCmdQueryToolRequest: asks for the report on consumption. Answered by QT_Payment_Consumption_Reply.
struct COMMONGROUND_API QT_Payment_Consumption_Request final
{
    WIRE_INTERFACE_CMD_VIRTUAL

    int m_Value1 = 1;
    zet::String_T<wchar_t> m_Text1;
    zet::String_T<wchar_t> m_Text2;
    zet::String_T<wchar_t> m_Text3;
};

// Reply in CCmdQueryToolReply to QT_Payment_Consumption_Request: the report.
struct COMMONGROUND_API QT_Payment_Consumption_Reply final
{
    WIRE_INTERFACE_CMD_VIRTUAL

    zet::String_T<wchar_t> m_Msg;
    int m_Value1 = 0;
    int m_Value2 = 0;
    int m_Value3 = 0;
    std::vector<zet::String_T<wchar_t>> m_Column1;
    std::vector<zet::String_T<wchar_t>> m_Column2;
    std::vector<zet::String_T<wchar_t>> m_Column3;
    std::vector<zet::String_T<wchar_t>> m_Column4;
    std::vector<zet::String_T<wchar_t>> m_Column5;
};

// Request in CCmdQueryToolRequest: asks for a report on payment. Answered by QT_Nib2Nib3_Pay_Reply.
struct COMMONGROUND_API QT_Nib2Nib3_Pay_Request final
{
    WIRE_INTERFACE_CMD_VIRTUAL

    int m_Value1 = 1;
    zet::String_T<wchar_t> m_Text1;
    zet::String_T<wchar_t> m_Text2;
    zet::String_T<wchar_t> m_Text3;
    zet::String_T<wchar_t> m_Text4;
    zet::String_T<wchar_t> m_Text5;
};

// Reply in CCmdQueryToolReply to QT_Nib2Nib3_Pay_Request: the report.
struct COMMONGROUND_API QT_Nib2Nib3_Pay_Reply final
{
    WIRE_INTERFACE_CMD_VIRTUAL

    zet::String_T<wchar_t> m_Msg;
    int m_Value1 = 0;
    int m_Value2 = 0;
    float m_Float1 = 0;
    int m_Value3 = 0;
    std::vector<zet::String_T<wchar_t>> m_Column1;
    std::vector<zet::String_T<wchar_t>> m_Column2;
    std::vector<zet::String_T<wchar_t>> m_Column3;
    std::vector<zet::String_T<wchar_t>> m_Column4;
};

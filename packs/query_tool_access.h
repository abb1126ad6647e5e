// The query tool's access: login, version, and the conditions of a query.
// Every message has a virtual pair, Write before Read, and no virtual destructor: none is destroyed through a base.
#pragma once

#include "framework/export.h"
#include "framework/string.h"
#include "packaging/wire_interface.h"

#include <vector>

// Request in CCmdQueryToolRequest: the tool logs in. Answered by QT_Login_Reply.
struct COMMONGROUND_API QT_Login_Request final
{
    WIRE_INTERFACE_CMD_VIRTUAL

    zet::String_T<wchar_t> m_Text1;
    zet::String_T<wchar_t> m_Text2;
};

// Reply in CCmdQueryToolReply to QT_Login_Request.
struct COMMONGROUND_API QT_Login_Reply final
{
    WIRE_INTERFACE_CMD_VIRTUAL

    bool m_Flag1 = false;
    zet::String_T<wchar_t> m_Text1;
    zet::String_T<wchar_t> m_Text2;
};

// Request in CCmdQueryToolRequest: the tool checks its version. Answered by QT_CheckVersion_Reply.
struct COMMONGROUND_API QT_CheckVersion_Request final
{
    WIRE_INTERFACE_CMD_VIRTUAL

    // The version of the tool.
    zet::String_T<wchar_t> m_Version;
};

// Reply in CCmdQueryToolReply to QT_CheckVersion_Request.
struct COMMONGROUND_API QT_CheckVersion_Reply final
{
    WIRE_INTERFACE_CMD_VIRTUAL

    bool m_Flag1 = false;
    zet::String_T<wchar_t> m_Text1;
};

// In CCmdQueryToolRequest and CCmdQueryToolReply, either way: a type of product.
struct COMMONGROUND_API QT_SendProductType final
{
    WIRE_INTERFACE_CMD_VIRTUAL

    int m_ProductType = 0;
};

// Request in CCmdQueryToolRequest: a list of texts. It has no reply message of its own.
struct COMMONGROUND_API QT_InsertMac_Request final
{
    WIRE_INTERFACE_CMD_VIRTUAL

    std::vector<zet::String_T<wchar_t>> m_Texts;
};

// Reply in CCmdQueryToolReply: two texts. It has no request message of its own.
struct COMMONGROUND_API QT_TableTimeFrom_Reply final
{
    WIRE_INTERFACE_CMD_VIRTUAL

    zet::String_T<wchar_t> m_Text1;
    zet::String_T<wchar_t> m_Text2;
};

// Reply in CCmdQueryToolReply: nine lists of texts. It has no request message of its own. All counts precede all texts.
struct COMMONGROUND_API QT_QueryCondition_Reply final
{
    WIRE_INTERFACE_CMD_VIRTUAL

    zet::String_T<wchar_t> m_Msg;
    std::vector<zet::String_T<wchar_t>> m_List1;
    std::vector<zet::String_T<wchar_t>> m_List2;
    std::vector<zet::String_T<wchar_t>> m_List3;
    std::vector<zet::String_T<wchar_t>> m_List4;
    std::vector<zet::String_T<wchar_t>> m_List5;
    std::vector<zet::String_T<wchar_t>> m_List6;
    std::vector<zet::String_T<wchar_t>> m_List7;
    std::vector<zet::String_T<wchar_t>> m_List8;
    std::vector<zet::String_T<wchar_t>> m_List9;
};

// The query tool's access: login, version, and the filters of a query.
// Every message has a virtual pair, Write before Read, and no virtual destructor: none is destroyed through a base.
#pragma once

#include "framework/export.h"
#include "framework/string.h"
#include "packaging/wire_interface.h"

#include <vector>

struct COMMONGROUND_API QT_Login_Request final
{
    WIRE_INTERFACE_CMD_VIRTUAL

    zet::String_T<wchar_t> m_Text1;
    zet::String_T<wchar_t> m_Text2;
};

struct COMMONGROUND_API QT_Login_Reply final
{
    WIRE_INTERFACE_CMD_VIRTUAL

    bool m_Flag1 = false;
    zet::String_T<wchar_t> m_Text1;
    zet::String_T<wchar_t> m_Text2;
};

struct COMMONGROUND_API QT_CheckVersion_Request final
{
    WIRE_INTERFACE_CMD_VIRTUAL

    zet::String_T<wchar_t> m_Version;
};

struct COMMONGROUND_API QT_CheckVersion_Reply final
{
    WIRE_INTERFACE_CMD_VIRTUAL

    bool m_Flag1 = false;
    zet::String_T<wchar_t> m_Text1;
};

struct COMMONGROUND_API QT_SendProductType final
{
    WIRE_INTERFACE_CMD_VIRTUAL

    int m_ProductType = 0;
};

struct COMMONGROUND_API QT_InsertMac_Request final
{
    WIRE_INTERFACE_CMD_VIRTUAL

    std::vector<zet::String_T<wchar_t>> m_Texts;
};

struct COMMONGROUND_API QT_TableTimeFrom_Reply final
{
    WIRE_INTERFACE_CMD_VIRTUAL

    zet::String_T<wchar_t> m_Text1;
    zet::String_T<wchar_t> m_Text2;
};

// The nine lists of choices of a query. All counts precede all texts.
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

// The query tool's reports on how many players are online. See query_tool_payment.h for the form of a report.
#pragma once

#include "framework/platform/export.h"
#include "framework/string.h"

#include <vector>

class CCmdPackager;
namespace wire
{
struct Schema;
}

struct COMMONGROUND_API QT_OnlineQuery_Hours24Online_Request final
{
    virtual bool Write(CCmdPackager* pk) const;
    virtual bool Read(CCmdPackager* pk);
    static const wire::Schema& Wire();

    zet::String_T<wchar_t> m_Text1;
    zet::String_T<wchar_t> m_Text2;
};

struct COMMONGROUND_API QT_OnlineQuery_Hours24Online_Reply final
{
    virtual bool Write(CCmdPackager* pk) const;
    virtual bool Read(CCmdPackager* pk);
    static const wire::Schema& Wire();

    zet::String_T<wchar_t> m_Msg;
    std::vector<zet::String_T<wchar_t>> m_Column1;
    std::vector<int> m_Column2;
};

struct COMMONGROUND_API QT_OnlineQuery_DaysOnline_Request final
{
    virtual bool Write(CCmdPackager* pk) const;
    virtual bool Read(CCmdPackager* pk);
    static const wire::Schema& Wire();

    zet::String_T<wchar_t> m_Text1;
    zet::String_T<wchar_t> m_Text2;
    int m_Value1 = 0;
};

struct COMMONGROUND_API QT_OnlineQuery_DaysOnline_Reply final
{
    virtual bool Write(CCmdPackager* pk) const;
    virtual bool Read(CCmdPackager* pk);
    static const wire::Schema& Wire();

    zet::String_T<wchar_t> m_Msg;
    std::vector<zet::String_T<wchar_t>> m_Column1;
    std::vector<int> m_Column2;
    std::vector<int> m_Column3;
    std::vector<float> m_Column4;
};

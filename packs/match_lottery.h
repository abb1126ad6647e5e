// The lottery of a match, as reported by the server. All are replies.
#pragma once

#include "framework/platform/export.h"
#include "framework/string.h"

#include <vector>

class CCmdPackager;
namespace wire
{
struct Schema;
}

struct COMMONGROUND_API MatchPackType_LotteryBaseNum
{
    bool Write(CCmdPackager* pk) const;
    bool Read(CCmdPackager* pk);
    static const wire::Schema& Wire();

    int m_Value1 = 0;
    int m_Value2 = 0;
    int m_Value3 = 0;
    int m_Value4 = 0;
    zet::String_T<wchar_t> m_Text1;
    int m_Value5 = 0;
};

// Seven tables of fixed size. A count precedes each, and readers ignore it.
struct COMMONGROUND_API MatchPackType_LotteryAllNum
{
    bool Write(CCmdPackager* pk) const;
    bool Read(CCmdPackager* pk);
    static const wire::Schema& Wire();

    // Cells of a row, and rows of a table.
    static constexpr int kSide = 5;

    int m_Table1[kSide][kSide] = {};
    int m_Table2[kSide][kSide] = {};
    int m_Row1[kSide] = {};
    zet::String_T<wchar_t> m_Names1[kSide];
    zet::String_T<wchar_t> m_Names2[kSide];
    int m_Row2[kSide] = {};
    int m_Row3[kSide] = {};
    zet::String_T<wchar_t> m_Msg;
    int m_Value1 = 0;
    int m_Value2 = 0;
};

// The reply to MatchPack_LotteryReset_Request.
struct COMMONGROUND_API MatchPackType_LotteryReset
{
    bool Write(CCmdPackager* pk) const;
    bool Read(CCmdPackager* pk);
    static const wire::Schema& Wire();

    int m_Value1 = 0;
    int m_Value2 = 0;
    zet::String_T<wchar_t> m_Text1;
};

// The reply to MatchPack_LotteryRevealer_Request.
struct COMMONGROUND_API MatchPackType_LotteryRevealer
{
    bool Write(CCmdPackager* pk) const;
    bool Read(CCmdPackager* pk);
    static const wire::Schema& Wire();

    std::vector<int> m_Numbers1;
    std::vector<zet::String_T<wchar_t>> m_Names;
    std::vector<int> m_Numbers2;
    std::vector<int> m_Numbers3;
    int m_Value1 = 0;
    int m_Value2 = 0;
    int m_Value3 = 0;
    int m_Value4 = 0;
};

struct COMMONGROUND_API MatchPackType_IsCanRevealer
{
    bool Write(CCmdPackager* pk) const;
    bool Read(CCmdPackager* pk);
    static const wire::Schema& Wire();

    int m_Value1 = 0;
    zet::String_T<wchar_t> m_Text1;
};

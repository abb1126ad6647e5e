// The lottery of a match, as reported by the server. All are replies.
#pragma once

#include "framework/export.h"
#include "framework/string.h"
#include "packaging/wire_interface.h"

#include <vector>

// Reply in CCmdMatchPackReply: numbers of the lottery. Asked for by MatchPack_LotteryReset_Request and
// MatchPack_LotteryRevealer_Request.
struct COMMONGROUND_API MatchPackType_LotteryBaseNum
{
    WIRE_INTERFACE_CMD

    int m_Value1 = 0;
    int m_Value2 = 0;
    int m_Value3 = 0;
    int m_Value4 = 0;
    zet::String_T<wchar_t> m_Text1;
    int m_Value5 = 0;
};

// Reply in CCmdMatchPackReply: seven tables of fixed size. A count precedes each, and readers ignore it; the tables do
// not affect the result. Asked for by MatchPack_LotteryReset_Request and MatchPack_LotteryRevealer_Request.
struct COMMONGROUND_API MatchPackType_LotteryAllNum
{
    WIRE_INTERFACE_CMD

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

// Reply in CCmdMatchPackReply to MatchPack_LotteryReset_Request.
struct COMMONGROUND_API MatchPackType_LotteryReset
{
    WIRE_INTERFACE_CMD

    int m_Value1 = 0;
    int m_Value2 = 0;
    zet::String_T<wchar_t> m_Text1;
};

// Reply in CCmdMatchPackReply to MatchPack_LotteryRevealer_Request. Its lists do not affect the result.
struct COMMONGROUND_API MatchPackType_LotteryRevealer
{
    WIRE_INTERFACE_CMD

    std::vector<int> m_Numbers1;
    std::vector<zet::String_T<wchar_t>> m_Names;
    std::vector<int> m_Numbers2;
    std::vector<int> m_Numbers3;
    int m_Value1 = 0;
    int m_Value2 = 0;
    int m_Value3 = 0;
    int m_Value4 = 0;
};

// Reply in CCmdMatchPackReply: a number and a text. Asked for by MatchPack_LotteryReset_Request and
// MatchPack_LotteryRevealer_Request.
struct COMMONGROUND_API MatchPackType_IsCanRevealer
{
    WIRE_INTERFACE_CMD

    int m_Value1 = 0;
    zet::String_T<wchar_t> m_Text1;
};

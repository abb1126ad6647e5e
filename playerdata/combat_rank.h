// The rank boards of the two later competition seasons.
#pragma once

#include "framework/export.h"
#include "framework/string.h"
#include "packaging/wire_interface.h"

// One line of a board, in CombatRankData_Pack_Reply and BS4RankData_Pack_Reply.
class COMMONGROUND_API CombatRankData
{
public:
    WIRE_INTERFACE_BOTH

    zet::String_T<wchar_t> m_Name;
    int m_Value1 = 0;
    int m_Value2 = 0;
};

// The whole combat board. To the client a reply in CCmdMatchPackReply. Its tables are sent interleaved by cell, the
// third in its three columns only, and do not affect the result: a truncated board reads true and keeps the tables'
// previous values.
class COMMONGROUND_API CombatRankData_Pack_Reply
{
public:
    static constexpr int kRows = 6;
    static constexpr int kColumns = 5;
    static constexpr int kThirdColumns = 3;
    static constexpr int kSelfRanks = 2;

    WIRE_INTERFACE_CMD

    int m_Value1 = 0;
    int m_Value2 = 0;
    int m_Value3 = 0;
    int m_Value4 = 0;
    zet::String_T<wchar_t> m_Msg;
    CombatRankData m_Self[kSelfRanks];
    bool m_Flag1 = false;
    bool m_Flag2 = false;
    int m_Value5 = 0;
    int m_Value6 = 0;
    int m_Value7 = 0;
    CombatRankData m_CombatRankDatas1[kRows][kColumns];
    CombatRankData m_CombatRankDatas2[kRows][kColumns];
    CombatRankData m_CombatRankDatas3[kRows][kThirdColumns];
};

// The whole BS4 board: two tables of a hundred lines, interleaved by line, which do not affect the result. Sent to the
// zone in CCmdGZ_CBRankDataPackReply, and to the client as a reply in CCmdMatchPackReply.
class COMMONGROUND_API BS4RankData_Pack_Reply
{
public:
    static constexpr int kRows = 100;

    WIRE_INTERFACE_CMD

    zet::String_T<wchar_t> m_Msg;
    int m_Value1 = 0;
    CombatRankData m_Self;
    CombatRankData m_CombatRankDatas1[kRows];
    CombatRankData m_CombatRankDatas2[kRows];
};

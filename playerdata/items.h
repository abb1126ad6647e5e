// Things that a player owns or can win: stacks of items, prize rows of the big table, small values.
// Plain values, owned by their containers. A field marked "carried" is copied without being interpreted.
#pragma once

#include "framework/export.h"
#include "framework/string.h"
#include "packaging/wire_interface.h"

// One stack of a thing, in the bag, in the gift box or in an offer.
class COMMONGROUND_API FGameItem
{
public:
    // The origin of the deadlines in the item string: 2000-1-1 0:0:0, in the form of m_Deadline. Built when the library
    // is loaded. Not const, since hosts know it as a variable; nothing in the library assigns to it.
    static zet::String_T<wchar_t> _DiscardStartTime;

    WIRE_INTERFACE_BOTH

    // Whether m_Num is above 0, the name is not empty and the deadline is in the future. The item expires at the second
    // of the deadline; an invalid deadline counts as expired.
    bool IsValid() const;

    int m_ItemType = 0; // carried
    // Pieces in the stack.
    int m_Num = 0;
    zet::String_T<wchar_t> m_Text0; // carried
    // The key of the bag: stacks merge and are found by it.
    zet::String_T<wchar_t> m_Name;
    zet::String_T<wchar_t> m_Text1; // carried
    zet::String_T<wchar_t> m_Text2; // carried
    zet::String_T<wchar_t> m_Text3; // carried
    zet::String_T<wchar_t> m_Text4; // carried
    // The local standard time at which the item expires, for zet::Time::convertFromString; empty for never.
    zet::String_T<wchar_t> m_Deadline;
    zet::String_T<wchar_t> m_Text5; // carried
    zet::String_T<wchar_t> m_Text6; // carried
    zet::String_T<wchar_t> m_Text7; // carried
    zet::String_T<wchar_t> m_Text8; // carried
    zet::String_T<wchar_t> m_Text9; // carried
};

// A prize row of the big table, with its stock. A stock or reserve below 0 means unlimited.
class COMMONGROUND_API FBigTableItem
{
public:
    WIRE_INTERFACE_BOTH

    // Whether a prize is left in stock or reserve.
    bool IsHaveSku() const;
    // Takes one prize from the stock or, if that is empty, from the reserve; neither falls below 0. Does nothing if
    // either is unlimited.
    void SubtractSku();

    int m_Value0 = 0; // carried
    int m_Value1 = 0; // carried
    int m_Value2 = 0; // carried
    int m_Value3 = 0; // carried
    // Prizes in stock, and in reserve.
    int m_Sku = 0;
    int m_SkuBackup = 0;
    int m_Value4 = 0;                   // carried
    zet::String_T<wchar_t> m_ItemText0; // carried
    zet::String_T<wchar_t> m_ItemText1; // carried
};

// A small record of values, all carried.
class COMMONGROUND_API Prop
{
public:
    WIRE_INTERFACE_CMD

    int m_PropId = 0;
    unsigned long m_Value0 = 0;
    unsigned long m_Value1 = 0;
    int m_Value2 = 0;
    int m_Value3 = 0;
};

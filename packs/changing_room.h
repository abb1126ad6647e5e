// The changing room, where a player's equipment is kept: looks are loaded, an equipment is updated, bought or drawn by
// luck. In the replies the flag is the outcome and m_Msg its text.
#pragma once

#include "framework/export.h"
#include "framework/string.h"
#include "packaging/wire_interface.h"

#include <vector>

// A part of a look, in ChangingRoomEquip. The hosts define its values.
class COMMONGROUND_API ChangingRoomEquipPart
{
public:
    WIRE_INTERFACE_CMD

    float m_Value1 = 0.0f;
    float m_Value2 = 0.0f;
    float m_Value3 = 0.0f;
    float m_Value4 = 0.0f;
    float m_Value5 = 0.0f;
    unsigned char m_Byte1 = 0;
    unsigned char m_Byte2 = 0;
    unsigned char m_Byte3 = 0;
};

// The look of one character. The hosts define its values.
class COMMONGROUND_API ChangingRoomEquip
{
public:
    WIRE_INTERFACE_CMD

    int m_Value1 = 0;
    int m_Value2 = 0;
    int m_Value3 = 0;
    unsigned char m_Byte1 = 0;
    unsigned char m_Byte2 = 0;
    unsigned char m_Byte3 = 0;
    int m_Value4 = 0;
    ChangingRoomEquipPart m_Part1;
    ChangingRoomEquipPart m_Part2;
    int m_Value5 = 0;
    ChangingRoomEquipPart m_Part3;
    int m_Value6 = 0;
    ChangingRoomEquipPart m_Part4;
    ChangingRoomEquipPart m_Part5;
    int m_Value7 = 0;
    int m_Value8 = 0;
    ChangingRoomEquipPart m_Part6;
};

// Request in CCmdChangingRoomPackRequest: loads the looks. Answered by ChangingRoomPack_LoadUserDataReply.
class COMMONGROUND_API ChangingRoomPack_LoadUserDataRequest
{
public:
    WIRE_INTERFACE_CMD

    int m_Value1 = 0;
};

// Reply in CCmdChangingRoomPackReply to ChangingRoomPack_LoadUserDataRequest: six looks and the whole table, also for a
// new player. Read clears the list; if the count of the list fails, the table is still read.
class COMMONGROUND_API ChangingRoomPack_LoadUserDataReply
{
public:
    static constexpr int kLooks = 6;
    static constexpr int kRows = 6;
    static constexpr int kColumns = 8;

    WIRE_INTERFACE_CMD

    ChangingRoomEquip m_ChangingRoomEquips[kLooks];
    std::vector<int> m_Owned;
    int m_Values[kRows][kColumns] = {};
};

// Request in CCmdChangingRoomPackRequest: updates an equipment. Answered by ChangingRoomPack_UpdateEquipReply.
class COMMONGROUND_API ChangingRoomPack_UpdateEquipRequest
{
public:
    WIRE_INTERFACE_CMD

    int m_Value1 = 0;
    ChangingRoomEquip m_Equip;
};

// Reply in CCmdChangingRoomPackReply to ChangingRoomPack_UpdateEquipRequest.
class COMMONGROUND_API ChangingRoomPack_UpdateEquipReply
{
public:
    WIRE_INTERFACE_CMD

    // The outcome.
    bool m_Flag1 = false;
    // The result text.
    zet::String_T<wchar_t> m_Msg;
};

// Request in CCmdChangingRoomPackRequest: buys an equipment. Answered by ChangingRoomPack_BuyEquipReply.
class COMMONGROUND_API ChangingRoomPack_BuyEquipRequest
{
public:
    WIRE_INTERFACE_CMD

    int m_Value1 = 0;
    int m_Value2 = 0;
    int m_Value3 = 0;
    int m_Value4 = 0;
};

// Reply in CCmdChangingRoomPackReply to ChangingRoomPack_BuyEquipRequest.
class COMMONGROUND_API ChangingRoomPack_BuyEquipReply
{
public:
    WIRE_INTERFACE_CMD

    // The outcome.
    bool m_Flag1 = false;
    int m_Value1 = 0;
    // The result text.
    zet::String_T<wchar_t> m_Msg;
    int m_Value2 = 0;
    int m_Value3 = 0;
};

// Request in CCmdChangingRoomPackRequest: draws an equipment by luck. Answered by ChangingRoomPack_LuckDrawEquipReply.
class COMMONGROUND_API ChangingRoomPack_LuckDrawEquipRequest
{
public:
    WIRE_INTERFACE_CMD

    int m_Value1 = 0;
};

// Reply in CCmdChangingRoomPackReply to ChangingRoomPack_LuckDrawEquipRequest.
class COMMONGROUND_API ChangingRoomPack_LuckDrawEquipReply
{
public:
    WIRE_INTERFACE_CMD

    // The outcome.
    bool m_Flag1 = false;
    // The result text.
    zet::String_T<wchar_t> m_Msg;
    int m_Value1 = 0;
};

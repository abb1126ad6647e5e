// The changing room, where a player's equipment is kept: looks are loaded, an equipment is updated, bought or drawn by
// luck. In the replies the flag is the outcome and m_Msg its text.
#pragma once

#include "framework/export.h"
#include "framework/string.h"
#include "packaging/wire_interface.h"

#include <vector>

// A part of a look.
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

// The look of one character.
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

class COMMONGROUND_API ChangingRoomPack_LoadUserDataRequest
{
public:
    WIRE_INTERFACE_CMD

    int m_Value1 = 0;
};

// Six looks and the whole table, also for a new player.
class COMMONGROUND_API ChangingRoomPack_LoadUserDataReply
{
public:
    WIRE_INTERFACE_CMD

    ChangingRoomEquip m_ChangingRoomEquips[6];
    std::vector<int> m_Owned;
    int m_Values[6][8] = {};
};

class COMMONGROUND_API ChangingRoomPack_UpdateEquipRequest
{
public:
    WIRE_INTERFACE_CMD

    int m_Value1 = 0;
    ChangingRoomEquip m_Equip;
};

class COMMONGROUND_API ChangingRoomPack_UpdateEquipReply
{
public:
    WIRE_INTERFACE_CMD

    bool m_Flag1 = false;
    zet::String_T<wchar_t> m_Msg;
};

class COMMONGROUND_API ChangingRoomPack_BuyEquipRequest
{
public:
    WIRE_INTERFACE_CMD

    int m_Value1 = 0;
    int m_Value2 = 0;
    int m_Value3 = 0;
    int m_Value4 = 0;
};

class COMMONGROUND_API ChangingRoomPack_BuyEquipReply
{
public:
    WIRE_INTERFACE_CMD

    bool m_Flag1 = false;
    int m_Value1 = 0;
    zet::String_T<wchar_t> m_Msg;
    int m_Value2 = 0;
    int m_Value3 = 0;
};

class COMMONGROUND_API ChangingRoomPack_LuckDrawEquipRequest
{
public:
    WIRE_INTERFACE_CMD

    int m_Value1 = 0;
};

class COMMONGROUND_API ChangingRoomPack_LuckDrawEquipReply
{
public:
    WIRE_INTERFACE_CMD

    bool m_Flag1 = false;
    zet::String_T<wchar_t> m_Msg;
    int m_Value1 = 0;
};

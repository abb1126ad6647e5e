#include "packs/changing_room.h"

#include "packaging/wire/order.h"

WIRE_ORDER_CMD(ChangingRoomEquipPart)
{
    return FIELDS(r.m_Value1, r.m_Value2, r.m_Value3, r.m_Value4, r.m_Value5, r.m_Byte1, r.m_Byte2, r.m_Byte3);
}

WIRE_ORDER_CMD(ChangingRoomEquip)
{
    return FIELDS(r.m_Value1, r.m_Value2, r.m_Value3, r.m_Byte1, r.m_Byte2, r.m_Byte3, r.m_Value4, r.m_Part1, r.m_Part2,
                  r.m_Value5, r.m_Part3, r.m_Value6, r.m_Part4, r.m_Part5, r.m_Value7, r.m_Value8, r.m_Part6);
}

WIRE_ORDER_CMD(ChangingRoomPack_LoadUserDataRequest)
{
    return FIELDS(r.m_Value1);
}

WIRE_ORDER_CMD(ChangingRoomPack_LoadUserDataReply)
{
    return FIELDS(r.m_ChangingRoomEquips) && LIST(r.m_Owned, wire::ClearedFirst) && FIELDS(r.m_Values);
}

WIRE_ORDER_CMD(ChangingRoomPack_UpdateEquipRequest)
{
    return FIELDS(r.m_Value1, r.m_Equip);
}

WIRE_ORDER_CMD(ChangingRoomPack_UpdateEquipReply)
{
    return FIELDS(r.m_Flag1, r.m_Msg);
}

WIRE_ORDER_CMD(ChangingRoomPack_BuyEquipRequest)
{
    return FIELDS(r.m_Value1, r.m_Value2, r.m_Value3, r.m_Value4);
}

WIRE_ORDER_CMD(ChangingRoomPack_BuyEquipReply)
{
    return FIELDS(r.m_Flag1, r.m_Value1, r.m_Msg, r.m_Value2, r.m_Value3);
}

WIRE_ORDER_CMD(ChangingRoomPack_LuckDrawEquipRequest)
{
    return FIELDS(r.m_Value1);
}

WIRE_ORDER_CMD(ChangingRoomPack_LuckDrawEquipReply)
{
    return FIELDS(r.m_Flag1, r.m_Msg, r.m_Value1);
}

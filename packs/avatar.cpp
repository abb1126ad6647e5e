#include "packs/avatar.h"

#include "packaging/wire/order.h"

WIRE_ORDER_DATA(CmdAvatarItem)
{
    return FIELDS(r.m_ItemId, r.m_Text1, r.m_Text2, r.m_Text3, r.m_Text4, r.m_Text5, r.m_Text6, r.m_Text7, r.m_Value1,
                  r.m_Value2, r.m_Value3);
}

WIRE_ORDER_DATA(CmdAvatarLoadDataRequest)
{
    return FIELDS(r.m_Value1);
}

WIRE_ORDER_DATA(CmdAvatarLoadDataReply)
{
    return FIELDS(r.m_Value1, r.m_Msg) && LIST(r.m_CmdAvatarItems1, wire::UntestedOnRead) &&
           LIST(r.m_CmdAvatarItems2, wire::UntestedOnRead) && LIST(r.m_CmdAvatarItems3, wire::UntestedOnRead) &&
           LIST(r.m_CmdAvatarItems4, wire::UntestedOnRead) && LIST(r.m_CmdAvatarItems5, wire::UntestedOnRead) &&
           LIST(r.m_CmdAvatarItems6, wire::UntestedOnRead) && LIST(r.m_CmdAvatarItems7, wire::UntestedOnRead) &&
           LIST(r.m_CmdAvatarItems8, wire::UntestedOnRead) && LIST(r.m_CmdAvatarItems9, wire::UntestedOnRead) &&
           LIST(r.m_CmdAvatarItems10, wire::UntestedOnRead) && LIST(r.m_Map1, wire::Pairs, wire::UntestedOnRead) &&
           LIST(r.m_Map2, wire::Pairs, wire::UntestedOnRead) && LIST(r.m_Map3, wire::Pairs, wire::UntestedOnRead) &&
           LIST(r.m_Map4, wire::Pairs, wire::UntestedOnRead) && LIST(r.m_Map5, wire::Pairs, wire::UntestedOnRead) &&
           LIST(r.m_Map6, wire::Pairs, wire::UntestedOnRead) && LIST(r.m_Owned, wire::UntestedOnRead);
}

WIRE_ORDER_DATA(CmdAvatarSaveDataRequest)
{
    return FIELDS(r.m_Value1) && LIST(r.m_Map1, wire::Pairs, wire::UntestedOnRead) &&
           LIST(r.m_Map2, wire::Pairs, wire::UntestedOnRead) && LIST(r.m_Map3, wire::Pairs, wire::UntestedOnRead) &&
           LIST(r.m_Map4, wire::Pairs, wire::UntestedOnRead) && LIST(r.m_Map5, wire::Pairs, wire::UntestedOnRead) &&
           LIST(r.m_Map6, wire::Pairs, wire::UntestedOnRead);
}

WIRE_ORDER_DATA(CmdAvatarSaveDataReply)
{
    return FIELDS(r.m_Value1, r.m_Msg);
}

WIRE_ORDER_DATA(CmdAvatarBuyDataRequest)
{
    return FIELDS(r.m_Value1, r.m_Value2) && LIST(r.m_Items, wire::UntestedOnRead);
}

WIRE_ORDER_DATA(CmdAvatarBuyDataReply)
{
    return FIELDS(r.m_Value1, r.m_Value2, r.m_Msg) && LIST(r.m_Items, wire::UntestedOnRead);
}

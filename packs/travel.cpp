#include "packs/travel.h"

#include "packaging/wire/order.h"

WIRE_ORDER_CMD(TravelWorldPack_LoadData_Request)
{
    return FIELDS(r.m_Account);
}

WIRE_ORDER_CMD(TravelWorldPack_LoadData_Reply)
{
    return FIELDS(r.m_Msg, r.m_TravelData);
}

WIRE_ORDER_CMD(TravelWorldPack_SaveData_Request)
{
    return FIELDS(r.m_TravelData, r.m_GlobalData);
}

WIRE_ORDER_CMD(TravelWorldPack_SaveData_Reply)
{
    return FIELDS(r.m_Msg);
}

WIRE_ORDER_CMD(TravelWorldPack_AttractUnLock_Request)
{
    return FIELDS(r.m_AttractId, r.m_Value1, r.m_TravelData);
}

WIRE_ORDER_CMD(TravelWorldPack_AttractUnLock_Reply)
{
    return FIELDS(r.m_Msg, r.m_TravelData);
}

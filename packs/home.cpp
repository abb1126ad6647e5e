#include "packs/home.h"

#include "packaging/wire/order.h"

WIRE_ORDER_CMD(HomePack_LoadData_Request)
{
    return FIELDS(r.m_Account, r.m_GlobalData);
}

WIRE_ORDER_CMD(HomePack_LoadData_Reply)
{
    return FIELDS(r.m_Msg, r.m_Flag1, r.m_HomeData);
}

WIRE_ORDER_CMD(HomePack_SaveData_Request)
{
    return FIELDS(r.m_HomeData, r.m_GlobalData);
}

WIRE_ORDER_CMD(HomePack_SaveData_Reply)
{
    return FIELDS(r.m_Msg);
}

WIRE_ORDER_CMD(HomePack_StartGame_Request)
{
    return FIELDS(r.m_Value1, r.m_Value2, r.m_Value3, r.m_Value4, r.m_Value5, r.m_Text1, r.m_Text2);
}

WIRE_ORDER_CMD(HomePack_StartGame_Reply)
{
    return FIELDS(r.m_Value1, r.m_Value2, r.m_Value3, r.m_Account, r.m_HomeData, r.m_Msg);
}

WIRE_ORDER_CMD(HomePack_EndGame_Request)
{
    return FIELDS(r.m_Value1, r.m_Value2, r.m_Value3, r.m_Value4, r.m_Value5, r.m_Float1, r.m_Float2, r.m_Flag1,
                  r.m_Flag2, r.m_Text1);
}

WIRE_ORDER_CMD(HomePack_EndGame_Reply)
{
    return FIELDS(r.m_Value1, r.m_Value2, r.m_Value3, r.m_Value4, r.m_Flag1, r.m_Flag2, r.m_Value5, r.m_Value6,
                  r.m_Value7, r.m_Value8, r.m_Value9, r.m_Value10, r.m_Value11, r.m_Value12, r.m_Value13, r.m_Value14,
                  r.m_Value15, r.m_Value16, r.m_Value17, r.m_Flag3, r.m_Account, r.m_GlobalData, r.m_HomeData, r.m_Msg);
}

WIRE_ORDER_CMD(HomePack_CountdownTime_Request)
{
    return NO_FIELDS;
}

WIRE_ORDER_CMD(HomePack_CountdownTime_Reply)
{
    return FIELDS(r.m_Msg, r.m_Value1, r.m_HomeData);
}

WIRE_ORDER_CMD(HomePack_JumpOff_Request)
{
    return FIELDS(r.m_Value1, r.m_Flag1, r.m_Value2, r.m_Value3, r.m_Value4, r.m_Account, r.m_HomeData);
}

WIRE_ORDER_CMD(HomePack_JumpOff_Reply)
{
    return FIELDS(r.m_Flag1, r.m_Value1, r.m_Account, r.m_HomeData, r.m_GlobalData, r.m_Msg);
}

WIRE_ORDER_CMD(HomePack_DirectReWard_Request)
{
    return FIELDS(r.m_Value1, r.m_Value2, r.m_Value3, r.m_Account, r.m_HomeData, r.m_GlobalData);
}

WIRE_ORDER_CMD(HomePack_DirectReWard_Reply)
{
    return FIELDS(r.m_Msg, r.m_Value1, r.m_Value2, r.m_Value3, r.m_Account, r.m_HomeData, r.m_GlobalData);
}

WIRE_ORDER_CMD(HomePack_UnlockGame_Request)
{
    return FIELDS(r.m_Value1, r.m_Value2, r.m_Value3, r.m_Account, r.m_HomeData);
}

WIRE_ORDER_CMD(HomePack_UnlockGame_Reply)
{
    return FIELDS(r.m_Msg, r.m_Value1, r.m_Value2, r.m_Value3, r.m_Account, r.m_HomeData, r.m_GlobalData);
}

WIRE_ORDER_CMD(HomePack_GetPlayerList_Request)
{
    return FIELDS(r.m_Value1);
}

WIRE_ORDER_CMD(HomePack_GetPlayerList_Reply)
{
    return FIELDS(r.m_Msg, r.m_Value1) && UNTESTED(r.m_PlayerList);
}

WIRE_ORDER_CMD(HomePack_PlayerNumList_Request)
{
    return NO_FIELDS;
}

WIRE_ORDER_CMD(HomePack_PlayerNumList_Reply)
{
    return EITHER_WAY(FIELDS(r.m_Msg) && COUNT_OF(r.m_PlayerNum)) &&
           ELEMENTS_OF(r.m_PlayerNum, wire::Pairs, wire::ElementsUntested);
}

WIRE_ORDER_CMD(HomePack_ClearDaily_Request)
{
    return FIELDS(r.m_Value1, r.m_Text1);
}

WIRE_ORDER_CMD(HomePack_ClearDaily_Reply)
{
    return FIELDS(r.m_Value1, r.m_Text1, r.m_Text2, r.m_HomeData);
}

#include "packs/in_purchase.h"

#include "packaging/wire/order.h"

WIRE_ORDER_CMD(InPurchaseFCodeRow)
{
    return FIELDS(r.m_Text1, r.m_Text2, r.m_Text3, r.m_Value1);
}

WIRE_ORDER_CMD(InPurchasePack_CheckIfOpenInPurchase_Request)
{
    return FIELDS(r.m_Text1, r.m_Text2, r.m_Text3);
}

WIRE_ORDER_CMD(InPurchasePack_CheckIfOpenInPurchase_Reply)
{
    return FIELDS(r.m_Text1, r.m_Text2);
}

WIRE_ORDER_CMD(InPurchasePack_SaveOrderId_Request)
{
    return FIELDS(r.m_Text1, r.m_Text2, r.m_Text3, r.m_Text4, r.m_Text5);
}

WIRE_ORDER_CMD(InPurchasePack_SaveOrderId_Reply)
{
    return FIELDS(r.m_Msg);
}

WIRE_ORDER_CMD(InPurchasePack_GetCheckResult_Request)
{
    return FIELDS(r.m_Text1, r.m_Text2);
}

WIRE_ORDER_CMD(InPurchasePack_GetCheckResult_Reply)
{
    return FIELDS(r.m_Text1, r.m_Text2, r.m_Text3, r.m_Text4);
}

WIRE_ORDER_CMD(InPurchasePack_SendBuySuccessMessage_Request)
{
    return FIELDS(r.m_Text1, r.m_Text2, r.m_Text3, r.m_Text4, r.m_Text5, r.m_Text6);
}

WIRE_ORDER_CMD(InPurchasePack_CheckAuthorizationCode_Request)
{
    return FIELDS(r.m_Text1, r.m_Text2);
}

WIRE_ORDER_CMD(InPurchasePack_CheckAuthorizationCode_Reply)
{
    return FIELDS(r.m_Msg);
}

WIRE_ORDER_CMD(InPurchasePack_CreateAndSaveFCode_Request)
{
    return FIELDS(r.m_Text1);
}

WIRE_ORDER_CMD(InPurchasePack_CreateAndSaveFCode_Reply)
{
    return FIELDS(r.m_Text1, r.m_Text2, r.m_Text3, r.m_Text4);
}

WIRE_ORDER_CMD(InPurchasePack_GetFCodeList_Reply)
{
    return SKIPPED_ON_FAILURE(r.m_Msg) && LIST(r.m_InPurchaseFCodeRows, wire::OnlyAboveZero);
}

WIRE_ORDER_CMD(InPurchasePack_UseFCode_Request)
{
    return FIELDS(r.m_Text1, r.m_Text2);
}

WIRE_ORDER_CMD(InPurchasePack_UseFCode_Reply)
{
    return FIELDS(r.m_Msg);
}

#include "packs/query_tool_access.h"

#include "packaging/wire/order.h"

WIRE_ORDER_CMD(QT_Login_Request)
{
    return FIELDS(r.m_Text1, r.m_Text2);
}

WIRE_ORDER_CMD(QT_Login_Reply)
{
    return FIELDS(r.m_Flag1, r.m_Text1, r.m_Text2);
}

WIRE_ORDER_CMD(QT_CheckVersion_Request)
{
    return FIELDS(r.m_Version);
}

WIRE_ORDER_CMD(QT_CheckVersion_Reply)
{
    return FIELDS(r.m_Flag1, r.m_Text1);
}

WIRE_ORDER_CMD(QT_SendProductType)
{
    return FIELDS(r.m_ProductType);
}

WIRE_ORDER_CMD(QT_InsertMac_Request)
{
    return LIST(r.m_Texts);
}

WIRE_ORDER_CMD(QT_TableTimeFrom_Reply)
{
    return FIELDS(r.m_Text1, r.m_Text2);
}

WIRE_ORDER_CMD(QT_QueryCondition_Reply)
{
    return FIELDS(r.m_Msg) && COUNT_OF(r.m_List1) && COUNT_OF(r.m_List2) && COUNT_OF(r.m_List3) &&
           COUNT_OF(r.m_List4) && COUNT_OF(r.m_List5) && COUNT_OF(r.m_List6) && COUNT_OF(r.m_List7) &&
           COUNT_OF(r.m_List8) && COUNT_OF(r.m_List9) && ELEMENTS_OF(r.m_List1) && ELEMENTS_OF(r.m_List2) &&
           ELEMENTS_OF(r.m_List3) && ELEMENTS_OF(r.m_List4) && ELEMENTS_OF(r.m_List5) && ELEMENTS_OF(r.m_List6) &&
           ELEMENTS_OF(r.m_List7) && ELEMENTS_OF(r.m_List8) && ELEMENTS_OF(r.m_List9);
}

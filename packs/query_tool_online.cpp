#include "packs/query_tool_online.h"

#include "packaging/wire/order.h"

WIRE_ORDER_CMD(QT_OnlineQuery_Hours24Online_Request)
{
    return FIELDS(r.m_Text1, r.m_Text2);
}

WIRE_ORDER_CMD(QT_OnlineQuery_Hours24Online_Reply)
{
    return FIELDS(r.m_Msg) && COUNT_OF(r.m_Column1) && TABLE(wire::CountedRows, r.m_Column1, r.m_Column2);
}

WIRE_ORDER_CMD(QT_OnlineQuery_DaysOnline_Request)
{
    return FIELDS(r.m_Text1, r.m_Text2, r.m_Value1);
}

WIRE_ORDER_CMD(QT_OnlineQuery_DaysOnline_Reply)
{
    return FIELDS(r.m_Msg) && COUNT_OF(r.m_Column1) &&
           TABLE(wire::CountedRows, r.m_Column1, r.m_Column2, r.m_Column3, r.m_Column4);
}

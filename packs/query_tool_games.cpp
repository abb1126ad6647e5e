#include "packs/query_tool_games.h"

#include "packaging/wire/order.h"

WIRE_ORDER_CMD(QT_BstFmy3_DailyStats_Request)
{
    return FIELDS(r.m_Text1, r.m_Text2);
}

WIRE_ORDER_CMD(QT_BstFmy3_DailyStats_Reply)
{
    return FIELDS(r.m_Msg) && COUNT_OF(r.m_Column1) &&
           TABLE(wire::CountedRows, r.m_Column1, r.m_Column2, r.m_Column3, r.m_Column4, r.m_Column5);
}

WIRE_ORDER_CMD(QT_BstFmy3_EventTrigger_Request)
{
    return FIELDS(r.m_Text1, r.m_Text2);
}

WIRE_ORDER_CMD(QT_BstFmy3_EventTrigger_Reply)
{
    return FIELDS(r.m_Msg) && COUNT_OF(r.m_Column1) &&
           TABLE(wire::CountedRows, r.m_Column1, r.m_Column2, r.m_Column3, r.m_Column4);
}

WIRE_ORDER_CMD(QT_BstFmy3_PropsOutput_Request)
{
    return FIELDS(r.m_Text1, r.m_Text2);
}

WIRE_ORDER_CMD(QT_BstFmy3_PropsOutput_Reply)
{
    return FIELDS(r.m_Msg) && COUNT_OF(r.m_Column1) &&
           TABLE(wire::CountedRows, r.m_Column1, r.m_Column2, r.m_Column3, r.m_Column4, r.m_Column5);
}

WIRE_ORDER_CMD(QT_BstFmy3_WeekMatchStats_Request)
{
    return FIELDS(r.m_Text1, r.m_Text2);
}

WIRE_ORDER_CMD(QT_BstFmy3_WeekMatchStats_Reply)
{
    return FIELDS(r.m_Msg) && COUNT_OF(r.m_Column1) &&
           TABLE(wire::CountedRows, r.m_Column1, r.m_Column2, r.m_Column3, r.m_Column4, r.m_Column5, r.m_Column6);
}

WIRE_ORDER_CMD(QT_BstFmy3_ZillionaireProps_Request)
{
    return FIELDS(r.m_Text1, r.m_Text2);
}

WIRE_ORDER_CMD(QT_BstFmy3_ZillionaireProps_Reply)
{
    return FIELDS(r.m_Msg) && COUNT_OF(r.m_Column1) &&
           TABLE(wire::CountedRows, r.m_Column1, r.m_Column2, r.m_Column3, r.m_Column4, r.m_Column5);
}

WIRE_ORDER_CMD(QT_BstFmy3_ZillionaireStats_Request)
{
    return FIELDS(r.m_Text1, r.m_Text2);
}

WIRE_ORDER_CMD(QT_BstFmy3_ZillionaireStats_Reply)
{
    return FIELDS(r.m_Msg) && COUNT_OF(r.m_Column1) &&
           TABLE(wire::CountedRows, r.m_Column1, r.m_Column2, r.m_Column3, r.m_Column4);
}

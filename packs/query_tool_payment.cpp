#include "packs/query_tool_payment.h"

#include "packaging/wire/order.h"

WIRE_ORDER_CMD(QT_OverviewPay_Request)
{
    return FIELDS(r.m_Text1, r.m_Text2, r.m_Value1);
}

WIRE_ORDER_CMD(QT_OverviewPay_Reply)
{
    return FIELDS(r.m_Msg, r.m_Float1, r.m_Float2, r.m_Float3, r.m_Float4, r.m_Float5, r.m_Float6, r.m_Float7,
                  r.m_Float8);
}

WIRE_ORDER_CMD(QT_Payment_Pay_Request)
{
    return FIELDS(r.m_Value1, r.m_Text1, r.m_Text2, r.m_Text3, r.m_Text4, r.m_Text5);
}

WIRE_ORDER_CMD(QT_Payment_Pay_Reply)
{
    return FIELDS(r.m_Msg) && COUNT_OF(r.m_Column1) &&
           FIELDS(r.m_Value1, r.m_Value2, r.m_Value3, r.m_Value4, r.m_Value5) &&
           TABLE(wire::CountedRows, r.m_Column1, r.m_Column2, r.m_Column3, r.m_Column4, r.m_Column5, r.m_Column6);
}

WIRE_ORDER_CMD(QT_Payment_Consumption_Request)
{
    return FIELDS(r.m_Value1, r.m_Text1, r.m_Text2, r.m_Text3);
}

WIRE_ORDER_CMD(QT_Payment_Consumption_Reply)
{
    return FIELDS(r.m_Msg) && COUNT_OF(r.m_Column1) && FIELDS(r.m_Value1, r.m_Value2, r.m_Value3) &&
           TABLE(wire::CountedRows, r.m_Column1, r.m_Column2, r.m_Column3, r.m_Column4, r.m_Column5);
}

WIRE_ORDER_CMD(QT_Nib2Nib3_Pay_Request)
{
    return FIELDS(r.m_Value1, r.m_Text1, r.m_Text2, r.m_Text3, r.m_Text4, r.m_Text5);
}

WIRE_ORDER_CMD(QT_Nib2Nib3_Pay_Reply)
{
    return FIELDS(r.m_Msg) && COUNT_OF(r.m_Column1) && FIELDS(r.m_Value1, r.m_Value2, r.m_Float1, r.m_Value3) &&
           TABLE(wire::CountedRows, r.m_Column1, r.m_Column2, r.m_Column3, r.m_Column4);
}

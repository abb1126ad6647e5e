#include "playerdata/items.h"

#include "framework/time.h"
#include "packaging/wire/order.h"

#include <cstdint>

zet::String_T<wchar_t> FGameItem::_DiscardStartTime = L"2000-1-1 0:0:0";

WIRE_ORDER_BOTH(FGameItem)
{
    return FIELDS(r.m_ItemType, r.m_Num, r.m_Text0, r.m_Name, r.m_Text1, r.m_Text2, r.m_Text3, r.m_Text4, r.m_Deadline,
                  r.m_Text5, r.m_Text6, r.m_Text7, r.m_Text8, r.m_Text9);
}

WIRE_ORDER_BOTH(FBigTableItem)
{
    return FIELDS(r.m_Value0, r.m_Value1, r.m_Value2, r.m_Value3, r.m_Sku, r.m_SkuBackup, r.m_Value4, r.m_ItemText0,
                  r.m_ItemText1);
}

WIRE_ORDER_CMD(Prop)
{
    return FIELDS(r.m_PropId, r.m_Value0, r.m_Value1, r.m_Value2, r.m_Value3);
}

bool FGameItem::IsValid() const
{
    if (m_Name.isEmpty() || m_Num <= 0)
        return false;
    if (m_Deadline.isEmpty())
        return true;
    zet::Time deadline;
    deadline.convertFromString(m_Deadline);
    return deadline - zet::Time::getCurrent() > 0;
}

bool FBigTableItem::IsHaveSku() const
{
    return m_Sku < 0 || m_SkuBackup < 0 || int64_t(m_Sku) + m_SkuBackup > 0;
}

void FBigTableItem::SubtractSku()
{
    if (m_Sku < 0 || m_SkuBackup < 0)
        return;
    if (m_Sku > 0)
        --m_Sku;
    else if (m_SkuBackup > 0)
        --m_SkuBackup;
}

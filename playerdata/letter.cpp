#include "playerdata/letter.h"

#include "packaging/wire/order.h"

WIRE_ORDER_CMD(CLetter)
{
    return FIELDS(r.m_LetterId, r.m_LetterType, r.m_Text1, r.m_Text2, r.m_Text3, r.m_Text4, r.m_Text5, r.m_Text6,
                  r.m_Read);
}

CLetter::~CLetter() = default;

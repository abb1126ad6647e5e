#include "playerdata/account_global.h"

#include "packaging/wire/order.h"

WIRE_ORDER_BOTH(AccountGlobalData)
{
    return UNTESTED(r.m_GlobalText1, r.m_GlobalText0, r.m_GlobalText2, r.m_GlobalText3, r.m_GlobalText4,
                    r.m_GlobalText5, r.m_GlobalText6, r.m_GlobalText7, r.m_GlobalFlag, r.m_GlobalValue0,
                    r.m_GlobalValue1, r.m_GlobalText8, r.m_GlobalValue2, r.m_GlobalValue3, r.m_VIPLevel,
                    r.m_VIPDaysLeft, r.m_GlobalValue4, r.m_VIPExpireTime, r.m_DiamondVIPExpireTime, r.m_VIPNewFlag) &&
           LIST(r.m_LastServerList, wire::ElementsUntested);
}

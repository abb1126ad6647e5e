#include "playerdata/account_other.h"

#include "packaging/wire/order.h"

WIRE_ORDER_BOTH(AccountAchievementData)
{
    return FIELDS(r.m_AchieveValue0, r.m_AchieveFlag0, r.m_AchieveValue1, r.m_AchieveValue2, r.m_AchieveFlag1,
                  r.m_AchieveFlag2, r.m_AchieveText0, r.m_AchieveValue3, r.m_AchieveValue4, r.m_AchieveValue5,
                  r.m_AchieveValue6, r.m_AchieveValue7, r.m_AchieveText1, r.m_AchieveText2, r.m_AchieveFlag3,
                  r.m_AchieveFlag4, r.m_AchieveValue8, r.m_AchieveValue9, r.m_AchieveValue10, r.m_AchieveFlag5);
}

void AccountAchievementData::Reset()
{
    *this = AccountAchievementData();
}

WIRE_ORDER_BOTH(AccountBehaviourData)
{
    return FIELDS(r.m_BehaviourValue0, r.m_BehaviourValue1, r.m_BehaviourValue2, r.m_BehaviourValue3,
                  r.m_BehaviourValue4, r.m_BehaviourValue5, r.m_BehaviourFlag);
}

void AccountBehaviourData::Reset()
{
    *this = AccountBehaviourData();
}

WIRE_ORDER_BOTH(AccountCombatData)
{
    return FIELDS(r.m_CombatRating, r.m_CombatValue0, r.m_CombatValue1, r.m_CombatValue2, r.m_CombatValue3,
                  r.m_CombatValue4, r.m_CombatValue5, r.m_CombatValue6, r.m_CombatText0, r.m_CombatText1,
                  r.m_CombatValue7, r.m_CombatValue8, r.m_CombatValue9, r.m_CombatValue10, r.m_CombatValue11,
                  r.m_CombatValue12);
}

WIRE_ORDER_BOTH(AccountBS4Data)
{
    return FIELDS(r.m_Value1, r.m_Value2, r.m_Text1, r.m_Value3, r.m_Value4, r.m_Value5, r.m_Text2, r.m_Value6,
                  r.m_Value7, r.m_Value8, r.m_Value9);
}

WIRE_ORDER_BOTH(AccountLingYuanGouData)
{
    return FIELDS(r.m_BuyText0, r.m_BuyText1, r.m_BuyText2, r.m_BuyValue0, r.m_BuyValue1, r.m_BuyText3, r.m_BuyText4,
                  r.m_BuyText5);
}

void AccountLingYuanGouData::Reset()
{
    *this = AccountLingYuanGouData();
}

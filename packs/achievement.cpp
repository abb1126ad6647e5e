#include "packs/achievement.h"

#include "packaging/wire/order.h"

namespace
{

constexpr auto kByNumber = wire::KeyedBy(&AccountAchievementData::m_AchieveValue1);

} // namespace

WIRE_ORDER_CMD(AchievementPack_StartGame_Request)
{
    return FIELDS(r.m_Value1) && LIST(r.m_Achievements, kByNumber, wire::ElementsUntested);
}

WIRE_ORDER_CMD(AchievementPack_StartGame_Reply)
{
    return FIELDS(r.m_Msg) && COUNT_OF(r.m_Achievements) && AGAIN(r.m_Msg) && COUNT_OF(r.m_Behaviours) &&
           ELEMENTS_OF(r.m_Achievements, kByNumber, wire::ElementsUntested) &&
           ELEMENTS_OF(r.m_Behaviours, wire::ElementsUntested);
}

WIRE_ORDER_CMD(AchievementPack_SendAchievement_Request)
{
    return FIELDS(r.m_Value1, r.m_Value2, r.m_Text1);
}

WIRE_ORDER_CMD(AchievementPack_SendAchievement_Reply)
{
    return FIELDS(r.m_Msg) && LIST(r.m_Achievements, kByNumber, wire::ElementsUntested);
}

WIRE_ORDER_CMD(AchievementPack_EndGame_Request)
{
    return FIELDS(r.m_Value1) && LIST(r.m_Achievements, kByNumber, wire::ElementsUntested);
}

WIRE_ORDER_CMD(AchievementPack_EndGame_Reply)
{
    return FIELDS(r.m_Msg);
}

WIRE_ORDER_CMD(AchievementPack_Notice_Reply)
{
    return FIELDS(r.m_Msg) && LIST(r.m_Achievements, kByNumber, wire::ElementsUntested);
}

WIRE_ORDER_CMD(AchievementPack_GetAllAchievement_Request)
{
    return COUNT_OF(r.m_Numbers) && COUNT_OF(r.m_Achievements) &&
           ELEMENTS_OF(r.m_Achievements, kByNumber, wire::ElementsUntested) &&
           ELEMENTS_OF(r.m_Numbers, wire::SizedFirst, wire::ElementsUntested);
}

WIRE_ORDER_CMD(AchievementPack_GetAllAchievement_Reply)
{
    return FIELDS(r.m_Msg) && LIST(r.m_Achievements, kByNumber, wire::ElementsUntested);
}

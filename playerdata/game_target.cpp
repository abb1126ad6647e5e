#include "playerdata/game_target.h"

#include "packaging/wire/order.h"

WIRE_ORDER_CMD(GameDifficulty)
{
    return FIELDS(r.m_Difficulty, r.m_Param0, r.m_Param1, r.m_Factor, r.m_Param2, r.m_Param3, r.m_Param4);
}

WIRE_ORDER_CMD(GameTarget)
{
    return FIELDS(r.m_TargetType, r.m_TargetName, r.m_TargetValue0, r.m_TargetValue1, r.m_TargetValue2, r.m_TargetText,
                  r.m_TargetScore, r.m_TargetFlag, r.m_TargetNote);
}

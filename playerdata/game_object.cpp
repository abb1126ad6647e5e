#include "playerdata/game_object.h"

#include "packaging/wire/order.h"

WIRE_ORDER_BOTH(FGameObject)
{
    return FIELDS(r.m_GameType, r.m_GameId, r.m_Level, r.m_Text0, r.m_Text1, r.m_Text2, r.m_Text3, r.m_Text4, r.m_Text5,
                  r.m_BestScore, r.m_SecondScore);
}

WIRE_ORDER_BOTH(FGameNewbie)
{
    return HEAD(FGameObject);
}

void FGameObject::SetBetterScore(float) {}

bool FGameObject::IsValid()
{
    return m_GameId > 0 && m_GameId < 100 && m_GameId != 5;
}

int FGameObject::CaculateGameScore(float)
{
    return 0;
}

// A limit belongs to the higher grade.
int FGameObject::EvaluateGameScore(float score)
{
    if (score >= 80.0f)
        return 3;
    if (score >= 60.0f)
        return 2;
    return score > 0.0f ? 1 : 0;
}

FGameNewbie& FGameNewbie::operator=(const FGameObject& object)
{
    FGameObject::operator=(object);
    return *this;
}

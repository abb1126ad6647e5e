#include "commands/race_pawn.h"

#include "packaging/wire/order.h"

WIRE_COMMAND(CCmdGS_PawnReady)
{
    return HEAD(CCmdPlatform) && FIELDS(r.m_Text1);
}

WIRE_COMMAND(CCmdGS_AllPlayerReady)
{
    return HEAD(CCmdPlatform);
}

WIRE_COMMAND(CCmdGS_RunDown)
{
    return HEAD(CCmdPlatform) && FIELDS(r.m_Float1, r.m_Float2, r.m_Float3);
}

WIRE_COMMAND(CCmdGS_AllRunDown)
{
    return HEAD(CCmdPlatform);
}

WIRE_COMMAND(CCmdGS_PawnCanRun)
{
    return HEAD(CCmdPlatform);
}

WIRE_COMMAND(CCmdGS_PawnStartRun)
{
    return HEAD(CCmdPlatform) && FIELDS(r.m_Text1);
}

// The body precedes the head, in both directions.
WIRE_COMMAND(CCmdGS_PawnRunning)
{
    return LIST(r.m_Values, wire::Untested) && HEAD(CCmdPlatform) && FIELDS(r.m_Float1);
}

WIRE_COMMAND(CCmdGS_PawnInput)
{
    return HEAD(CCmdPlatform) && FIELDS(r.m_Byte1);
}

WIRE_COMMAND(CCmdGS_PawnScore)
{
    return HEAD(CCmdPlatform) && FIELDS(r.m_Text1, r.m_Value1, r.m_Float1);
}

WIRE_COMMAND(CCmdGS_PowerTime)
{
    return HEAD(CCmdPlatform) && FIELDS(r.m_Text1, r.m_Float1);
}

WIRE_COMMAND(CCmdGS_PawnFouled)
{
    return HEAD(CCmdPlatform) && FIELDS(r.m_Text1, r.m_Float1, r.m_Byte1);
}

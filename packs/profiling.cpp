#include "packs/profiling.h"

#include "packaging/wire/order.h"

WIRE_ORDER_BOTH(cProfilingMaxValue)
{
    return FIELDS(r.m_Name, r.m_Value1, r.m_Value2, r.m_Value3);
}

WIRE_ORDER_DATA(CmdProfilingPack_GetMaxValues)
{
    return LIST(r.m_ProfilingMaxValues, wire::KeyedBy(&cProfilingMaxValue::m_Name), wire::Untested);
}

WIRE_ORDER_DATA(CmdProfilingPack_SubmitMaxValues)
{
    return LIST(r.m_ProfilingMaxValues, wire::KeyedBy(&cProfilingMaxValue::m_Name), wire::Untested);
}

WIRE_COMMAND(CCmdProfilerEnable)
{
    return HEAD(CCmdPlatform) && FIELDS(r.m_Enable);
}

WIRE_COMMAND(CCmdProfilerUsage)
{
    return HEAD(CCmdPlatform) && LIST(r.m_Floats, wire::UntestedOnWrite) && LIST(r.m_Values, wire::UntestedOnWrite);
}

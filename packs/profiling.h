// The maximum values of named quantities, exchanged in both directions, and the two commands that control the profiler.
#pragma once

#include "dispatch/command_process.h"
#include "dispatch/ids/profiling.h"
#include "packaging/command_head.h"
#include "packaging/wire_interface.h"

#include <map>
#include <vector>

// The maximum values of one named quantity. The hosts define the names and the units.
class COMMONGROUND_API cProfilingMaxValue
{
public:
    WIRE_INTERFACE_BOTH

    // Whether any of the three values is above 0.
    bool IsValid() const { return m_Value1 > 0 || m_Value2 > 0 || m_Value3 > 0; }

    zet::String_T<wchar_t> m_Name;
    int m_Value1 = 0;
    int m_Value2 = 0;
    int m_Value3 = 0;
};

// In CCmdProfilingPackRequest and CCmdProfilingPackReply, either way: maximum values by name. Read clears the map and
// never fails. For a truncated message the map has the entries that were present, the truncated one as far as it was
// read; missing ones are one entry with an empty name. A message that does not fit its packager is sent truncated.
class COMMONGROUND_API CmdProfilingPack_GetMaxValues
{
public:
    WIRE_INTERFACE_DATA

    std::map<zet::String_T<wchar_t>, cProfilingMaxValue> m_ProfilingMaxValues;
};

// In CCmdProfilingPackRequest and CCmdProfilingPackReply, either way: maximum values by name. The same form as
// CmdProfilingPack_GetMaxValues, and read and written in the same way.
class COMMONGROUND_API CmdProfilingPack_SubmitMaxValues
{
public:
    WIRE_INTERFACE_DATA

    std::map<zet::String_T<wchar_t>, cProfilingMaxValue> m_ProfilingMaxValues;
};

// Controls the profiler.
class COMMONGROUND_API CCmdProfilerEnable : public CCmdPlatform
{
public:
    CCmdProfilerEnable() : CCmdPlatform(command_id::CCmdProfilerEnable) {}
    COMMAND_INTERFACE(CCmdProfilerEnable)

    unsigned char m_Enable = 0;
};

// Controls the profiler. Its two lists do not affect the result.
class COMMONGROUND_API CCmdProfilerUsage : public CCmdPlatform
{
public:
    CCmdProfilerUsage() : CCmdPlatform(command_id::CCmdProfilerUsage) {}
    COMMAND_INTERFACE(CCmdProfilerUsage)

    std::vector<float> m_Floats;
    std::vector<unsigned long> m_Values;
};

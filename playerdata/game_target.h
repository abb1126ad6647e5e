// Two parts of a match's description: its difficulty and its targets. All fields are carried: copied without being
// interpreted.
#pragma once

#include "framework/export.h"
#include "framework/string.h"
#include "packaging/wire_interface.h"

// One of the three difficulties of a MatchData.
struct COMMONGROUND_API GameDifficulty
{
    WIRE_INTERFACE_CMD

    int m_Difficulty = -1;
    int m_Param0 = 0;
    int m_Param1 = 0;
    float m_Factor = 0.0f;
    int m_Param2 = 0;
    int m_Param3 = 0;
    int m_Param4 = 0;
};

// One of the three targets of a MatchData.
struct COMMONGROUND_API GameTarget
{
    WIRE_INTERFACE_CMD

    int m_TargetType = -1;
    zet::String_T<wchar_t> m_TargetName;
    int m_TargetValue0 = -1;
    int m_TargetValue1 = -1;
    int m_TargetValue2 = -1;
    zet::String_T<wchar_t> m_TargetText;
    float m_TargetScore = -1.0f;
    int m_TargetFlag = 0;
    zet::String_T<wchar_t> m_TargetNote;
};

// The messages of the achievement feature: around a game, for a single achievement, as a notice, and as a full list.
// Achievements are in a map keyed by the third field of the record; keys are not sent separately, and no record affects
// the result.
#pragma once

#include "framework/export.h"
#include "framework/string.h"
#include "packaging/wire_interface.h"
#include "playerdata/account_other.h"

#include <map>
#include <vector>

struct COMMONGROUND_API AchievementPack_StartGame_Request final
{
    WIRE_INTERFACE_CMD_VIRTUAL

    int m_Value1 = 0;
    std::map<int, AccountAchievementData> m_Achievements;
};

// The text precedes each size; the second one is kept.
struct COMMONGROUND_API AchievementPack_StartGame_Reply final
{
    WIRE_INTERFACE_CMD_VIRTUAL

    zet::String_T<wchar_t> m_Msg;
    std::map<int, AccountAchievementData> m_Achievements;
    std::vector<AccountBehaviourData> m_Behaviours;
};

struct COMMONGROUND_API AchievementPack_SendAchievement_Request final
{
    WIRE_INTERFACE_CMD_VIRTUAL

    int m_Value1 = 0;
    int m_Value2 = 0;
    zet::String_T<wchar_t> m_Text1;
};

struct COMMONGROUND_API AchievementPack_SendAchievement_Reply final
{
    WIRE_INTERFACE_CMD_VIRTUAL

    zet::String_T<wchar_t> m_Msg;
    std::map<int, AccountAchievementData> m_Achievements;
};

struct COMMONGROUND_API AchievementPack_EndGame_Request final
{
    WIRE_INTERFACE_CMD_VIRTUAL

    int m_Value1 = 0;
    std::map<int, AccountAchievementData> m_Achievements;
};

struct COMMONGROUND_API AchievementPack_EndGame_Reply final
{
    WIRE_INTERFACE_CMD_VIRTUAL

    zet::String_T<wchar_t> m_Msg;
};

struct COMMONGROUND_API AchievementPack_Notice_Reply final
{
    WIRE_INTERFACE_CMD_VIRTUAL

    zet::String_T<wchar_t> m_Msg;
    std::map<int, AccountAchievementData> m_Achievements;
};

// Both sizes are first, then the achievements, then the numbers. Read resizes the numbers to their count and does not
// clear them: one that cannot be read keeps its old value.
struct COMMONGROUND_API AchievementPack_GetAllAchievement_Request
{
    WIRE_INTERFACE_CMD

    std::vector<int> m_Numbers;
    std::map<int, AccountAchievementData> m_Achievements;
};

struct COMMONGROUND_API AchievementPack_GetAllAchievement_Reply
{
    WIRE_INTERFACE_CMD

    zet::String_T<wchar_t> m_Msg;
    std::map<int, AccountAchievementData> m_Achievements;
};

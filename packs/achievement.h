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

// Request in CCmdAchievementPackRequest: a player's achievements at the start of a game. Answered by
// AchievementPack_StartGame_Reply.
struct COMMONGROUND_API AchievementPack_StartGame_Request final
{
    WIRE_INTERFACE_CMD_VIRTUAL

    int m_Value1 = 0;
    std::map<int, AccountAchievementData> m_Achievements;
};

// Reply in CCmdAchievementPackReply to AchievementPack_StartGame_Request: achievements and behaviours at the start of a
// game. The text precedes each size; the second one is kept.
struct COMMONGROUND_API AchievementPack_StartGame_Reply final
{
    WIRE_INTERFACE_CMD_VIRTUAL

    zet::String_T<wchar_t> m_Msg;
    std::map<int, AccountAchievementData> m_Achievements;
    std::vector<AccountBehaviourData> m_Behaviours;
};

// Request in CCmdAchievementPackRequest: sends one achievement. Answered by AchievementPack_SendAchievement_Reply.
struct COMMONGROUND_API AchievementPack_SendAchievement_Request final
{
    WIRE_INTERFACE_CMD_VIRTUAL

    int m_Value1 = 0;
    int m_Value2 = 0;
    zet::String_T<wchar_t> m_Text1;
};

// Reply in CCmdAchievementPackReply to AchievementPack_SendAchievement_Request: the achievements.
struct COMMONGROUND_API AchievementPack_SendAchievement_Reply final
{
    WIRE_INTERFACE_CMD_VIRTUAL

    zet::String_T<wchar_t> m_Msg;
    std::map<int, AccountAchievementData> m_Achievements;
};

// Request in CCmdAchievementPackRequest: a player's achievements at the end of a game. Answered by
// AchievementPack_EndGame_Reply.
struct COMMONGROUND_API AchievementPack_EndGame_Request final
{
    WIRE_INTERFACE_CMD_VIRTUAL

    int m_Value1 = 0;
    std::map<int, AccountAchievementData> m_Achievements;
};

// Reply in CCmdAchievementPackReply to AchievementPack_EndGame_Request.
struct COMMONGROUND_API AchievementPack_EndGame_Reply final
{
    WIRE_INTERFACE_CMD_VIRTUAL

    zet::String_T<wchar_t> m_Msg;
};

// Reply in CCmdAchievementPackReply: a notice with achievements. It has no request message of its own.
struct COMMONGROUND_API AchievementPack_Notice_Reply final
{
    WIRE_INTERFACE_CMD_VIRTUAL

    zet::String_T<wchar_t> m_Msg;
    std::map<int, AccountAchievementData> m_Achievements;
};

// Request in CCmdAchievementPackRequest: asks for the full list. Answered by AchievementPack_GetAllAchievement_Reply.
// Both sizes are first, then the achievements, then the numbers. Read resizes the numbers to their count and does not
// clear them: one that cannot be read keeps its old value.
struct COMMONGROUND_API AchievementPack_GetAllAchievement_Request
{
    WIRE_INTERFACE_CMD

    std::vector<int> m_Numbers;
    std::map<int, AccountAchievementData> m_Achievements;
};

// Reply in CCmdAchievementPackReply to AchievementPack_GetAllAchievement_Request: the full list.
struct COMMONGROUND_API AchievementPack_GetAllAchievement_Reply
{
    WIRE_INTERFACE_CMD

    zet::String_T<wchar_t> m_Msg;
    std::map<int, AccountAchievementData> m_Achievements;
};

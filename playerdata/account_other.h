// The smaller records beside a player's account. They hold values for their packs and have no rules.
#pragma once

#include "framework/export.h"
#include "framework/string.h"
#include "packaging/wire_interface.h"

// One of a player's achievements. Sent in the achievement messages.
class COMMONGROUND_API AccountAchievementData
{
public:
    WIRE_INTERFACE_BOTH

    // Resets all members to their defaults.
    void Reset();

    int m_AchieveValue0 = -1;
    bool m_AchieveFlag0 = false;
    // The key of an achievement in the maps of the achievement messages.
    int m_AchieveValue1 = 0;
    int m_AchieveValue2 = 1;
    bool m_AchieveFlag1 = false;
    bool m_AchieveFlag2 = false;
    zet::String_T<wchar_t> m_AchieveText0;
    int m_AchieveValue3 = 0;
    int m_AchieveValue4 = 0;
    int m_AchieveValue5 = -1;
    int m_AchieveValue6 = -1;
    int m_AchieveValue7 = 0;
    zet::String_T<wchar_t> m_AchieveText1;
    zet::String_T<wchar_t> m_AchieveText2;
    bool m_AchieveFlag3 = false;
    bool m_AchieveFlag4 = false;
    int m_AchieveValue8 = 0;
    int m_AchieveValue9 = 0;
    int m_AchieveValue10 = -1;
    bool m_AchieveFlag5 = false;
};

// Counters of a player's behaviour. Sent in AchievementPack_StartGame_Reply.
class COMMONGROUND_API AccountBehaviourData
{
public:
    WIRE_INTERFACE_BOTH

    // Resets all members to their defaults.
    void Reset();

    int m_BehaviourValue0 = -1;
    int m_BehaviourValue1 = -1;
    int m_BehaviourValue2 = -1;
    int m_BehaviourValue3 = -1;
    int m_BehaviourValue4 = 0;
    int m_BehaviourValue5 = 0;
    bool m_BehaviourFlag = false;
};

// A player's state in the combat season.
class COMMONGROUND_API AccountCombatData
{
public:
    WIRE_INTERFACE_BOTH

    int m_CombatRating = 1200;
    int m_CombatValue0 = 0;
    int m_CombatValue1 = 0;
    int m_CombatValue2 = 0;
    int m_CombatValue3 = 0;
    int m_CombatValue4 = 0;
    int m_CombatValue5 = 0;
    int m_CombatValue6 = 0;
    zet::String_T<wchar_t> m_CombatText0;
    zet::String_T<wchar_t> m_CombatText1;
    int m_CombatValue7 = 0;
    int m_CombatValue8 = 1;
    int m_CombatValue9 = 0;
    int m_CombatValue10 = 0;
    int m_CombatValue11 = 1;
    int m_CombatValue12 = 10000;
};

// A player's state in the BS4 season.
class COMMONGROUND_API AccountBS4Data
{
public:
    WIRE_INTERFACE_BOTH

    int m_Value1 = 0;
    int m_Value2 = 0;
    zet::String_T<wchar_t> m_Text1;
    int m_Value3 = 0;
    int m_Value4 = 0;
    int m_Value5 = 0;
    zet::String_T<wchar_t> m_Text2;
    int m_Value6 = 0;
    int m_Value7 = 0;
    int m_Value8 = 0;
    int m_Value9 = 0;
};

// A player's part in the zero-price purchase campaign. Delivered by a login.
class COMMONGROUND_API AccountLingYuanGouData
{
public:
    WIRE_INTERFACE_BOTH

    // Resets all members to their defaults.
    void Reset();

    zet::String_T<wchar_t> m_BuyText0;
    zet::String_T<wchar_t> m_BuyText1;
    zet::String_T<wchar_t> m_BuyText2;
    int m_BuyValue0 = 0;
    int m_BuyValue1 = 0;
    zet::String_T<wchar_t> m_BuyText3;
    zet::String_T<wchar_t> m_BuyText4;
    zet::String_T<wchar_t> m_BuyText5;
};

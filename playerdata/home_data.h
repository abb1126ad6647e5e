// The home feature: the player's record with its rush lives and daily prices, and homes with their members.
// Fields without a comment are carried: moved without being read.
#pragma once

#include "framework/export.h"
#include "framework/string.h"
#include "packaging/wire_interface.h"
#include "playerdata/items.h"

#include <vector>

// A player's state in the home feature. Prices rise with what was bought on the same day.
class COMMONGROUND_API AccountHomeData
{
public:
    static constexpr int kPlainRushLife = 3;
    static constexpr int kVIPRushLife = 5;

    WIRE_INTERFACE_BOTH

    // The price of the next unlock, by m_RushUnlockTimes: 10 below 2, 20 below 6, then 40.
    int GetHomeRushUnlockPrice() const;
    // The next jump-off in diamonds, by m_JumpOffTimes: 50 below 2, 100 below 6, then 200.
    int GetHomeJumpOffCostDiamond() const;
    // The lives that are left.
    int GetTotalRushLife() const { return m_RushLife; }
    // What m_IsJumpOff holds.
    bool GetIsJumpOff() const { return m_IsJumpOff; }
    // Subtracts lives, down to 0. A negative number adds lives, even beyond the limit.
    void CostRushLife(int lives);
    // Sets the limit to 5 and adds 5 lives; lives above the limit are lost.
    void OnGetVIP();
    // Sets the limit to 3; lives above it are lost.
    void OnLostVIP();
    // The daily reset: counters 0, lives at the limit of a VIP (isVIP not 0) or of another player, no date. m_IsJumpOff
    // and the carried values do not change.
    void ResetHomData(int isVIP);

    bool m_IsHomeValid = false;
    int m_HomeValue0 = 0;
    int m_DailyValue0 = 0;
    int m_HomeValue1 = 0;
    int m_DailyValue1 = 0;
    int m_RushLife = 0;
    // Bought today.
    int m_RushUnlockTimes = 0;
    int m_JumpOffTimes = 0;
    bool m_IsJumpOff = false;
    zet::String_T<wchar_t> m_HomeDate;
    // The limit of m_RushLife.
    int m_MaxRushLife = kPlainRushLife;
};

// The look of a member of a home: six values and seven props. Sent in MemberData.
class COMMONGROUND_API MemberVisual
{
public:
    static constexpr int kProps = 7;

    WIRE_INTERFACE_CMD

    int m_VisualValue0 = 0;
    unsigned long m_VisualValue1 = 0;
    int m_VisualValue2 = 0;
    unsigned long m_VisualValue3 = 0;
    int m_VisualValue4 = 0;
    unsigned long m_VisualValue5 = 0;
    Prop m_Props[kProps];
};

// A member of a home. Sent in HomeData.
class COMMONGROUND_API MemberData
{
public:
    WIRE_INTERFACE_CMD

    int m_MemberId = 0;
    zet::String_T<wchar_t> m_MemberText0;
    zet::String_T<wchar_t> m_MemberText1;
    zet::String_T<wchar_t> m_MemberText2;
    bool m_MemberFlag = false;
    MemberVisual m_Visual;
    zet::String_T<wchar_t> m_MemberText3;
    zet::String_T<wchar_t> m_MemberText4;
    zet::String_T<wchar_t> m_MemberText5;
};

// A home and its members.
class COMMONGROUND_API HomeData
{
public:
    WIRE_INTERFACE_CMD

    int m_HomeId = -1;
    int m_HomeLevel = -1;
    zet::String_T<wchar_t> m_HomeText0;
    int m_HomeValue0 = -1;
    zet::String_T<wchar_t> m_HomeText1;
    int m_HomeValue1 = -1;
    zet::String_T<wchar_t> m_HomeText2;
    std::vector<MemberData> m_MemberDatas;
};

// Seasonal activities: small state machines between two dates, with a value that a player must feed every day.
// Fields without a comment are carried: moved without being read.
#pragma once

#include "framework/export.h"
#include "framework/string.h"
#include "packaging/wire_interface.h"

// Complete in packaging/command_head.h.
class CCmdHead;

// The base of all activities. m_StartTime and m_EndTime are calendar texts in local standard time.
class COMMONGROUND_API FGameActivityBase
{
public:
    WIRE_INTERFACE_BOTH_VIRTUAL
    // A hook for a command of the player. The library does not call it.
    virtual bool DealActivity(CCmdHead* command) = 0;
    // The player's state as a text for the account database, and back.
    virtual zet::String_T<wchar_t> ToString() = 0;
    virtual void FromString(zet::String_T<wchar_t>& text) = 0;
    // Whether the activity runs at the current time; sets m_IsEnable.
    virtual bool CheckEnable() = 0;
    // What a change of the day does to the player's state; to be called once a day.
    virtual void DailyClear() = 0;

    // The activity exists if this is above 0.
    int m_ActivityType = 0;
    int m_ActivityValue = 1;
    zet::String_T<wchar_t> m_ActivityText0;
    // The first and the last second of the activity, inclusive.
    zet::String_T<wchar_t> m_StartTime;
    zet::String_T<wchar_t> m_EndTime;
    zet::String_T<wchar_t> m_ActivityText1;
    bool m_ActivityFlag0 = false;
    // The last result of CheckEnable.
    bool m_IsEnable = false;
    bool m_ActivityFlag1 = false;

protected:
    // No virtual destructor: an activity is a value and is never destroyed through its base.
    ~FGameActivityBase() = default;
};

// The Christmas activity: points that decay on missed days.
class COMMONGROUND_API FGameActivityChristmas final : public FGameActivityBase
{
public:
    enum State
    {
        kWaiting = 1,
        kRunning = 2,
        kOver = 3
    };

    FGameActivityChristmas() { m_ActivityType = 1; }
    WIRE_INTERFACE_BOTH_OVERRIDE

    // An empty hook; false.
    bool DealActivity(CCmdHead* command) override;
    // "points|played|missed", played as 0 or 1.
    zet::String_T<wchar_t> ToString() override;
    // Parses that form. An empty text changes nothing; a missing number leaves its member unchanged, but a missing
    // played is false.
    void FromString(zet::String_T<wchar_t>& text) override;
    // Sets m_IsEnable and m_ActivityState by the current time and returns m_IsEnable. An activity that does not exist
    // is not enabled, and its state does not change.
    bool CheckEnable() override;
    // Call once a day. If enabled: counts a day without play, then subtracts points by the number of missed days: 2 at
    // one, 3 at two, all beyond, down to 0. Only the count decides, so a day with play costs the same until the host
    // clears the count. Sets m_PlayedToday to false, enabled or not.
    void DailyClear() override;

    int m_Points = 0;
    int m_MissedDays = 0;
    bool m_PlayedToday = false;
    int m_ActivityState = kWaiting;
};

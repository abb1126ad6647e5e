// The part of a player's record that is common to all game zones: texts, the VIP state, the servers last played on.
// It is sent together with AccountData. Hosts serialise access; nothing here is locked. Dates are texts for
// zet::Time::convertFromString; an invalid one counts as long past.
#pragma once

#include "framework/export.h"
#include "framework/string.h"
#include "packaging/wire_interface.h"

#include <vector>

// Complete in playerdata/account_core.h.
class AccountData;

// The part of a player's record that holds across all game zones.
class COMMONGROUND_API AccountGlobalData
{
public:
    // Every field is processed, whatever the result of those before it; only the count of m_LastServerList decides the
    // result.
    WIRE_INTERFACE_BOTH

    // Resets everything to its default except m_GlobalValue1, which does not change.
    void Reset();

    // Updates the VIP state to the current second. If m_VIPLevel is above 0 and m_VIPExpireTime is in the future: sets
    // m_VIPDaysLeft, passes m_VIPNewFlag to account.OnGetVIP and clears it. Otherwise: sets m_VIPLevel and
    // m_VIPDaysLeft to 0 and calls account.OnLostVIP.
    void CheckVIP(AccountData& account);
    // Whether m_DiamondVIPExpireTime is after the current second, whatever m_VIPLevel is.
    bool IsDiamondVIP() const;

    // The server last played on, or 0.
    int GetLastServerID() const;
    // Moves or inserts a server at the front, and drops the last one if there are then 4 or more. Numbers below 1 are
    // ignored.
    void AddLastServerID(int id);
    // The list as a text for the account database: a '|' after each number, as in "7|3|12|".
    zet::String_T<wchar_t> ConvertLastServerListToString() const;
    // Appends the numbers of such a text. Anything but a number above 0 is dropped, and so is the text after the last
    // '|'.
    void ConvertLastServerListFromString(const zet::String_T<wchar_t>& text);

    // The texts, m_GlobalFlag and the values are carried. The second text is first on the wire.
    zet::String_T<wchar_t> m_GlobalText0;
    zet::String_T<wchar_t> m_GlobalText1;
    zet::String_T<wchar_t> m_GlobalText2;
    zet::String_T<wchar_t> m_GlobalText3;
    zet::String_T<wchar_t> m_GlobalText4;
    zet::String_T<wchar_t> m_GlobalText5;
    zet::String_T<wchar_t> m_GlobalText6;
    zet::String_T<wchar_t> m_GlobalText7;
    bool m_GlobalFlag = false;
    int m_GlobalValue0 = 0;
    int m_GlobalValue1 = 0;
    zet::String_T<wchar_t> m_GlobalText8;
    int m_GlobalValue2 = 0;
    int m_GlobalValue3 = 0;
    // 0 or less means no VIP.
    int m_VIPLevel = 0;
    // Whole days until m_VIPExpireTime; 0 on the last day.
    int m_VIPDaysLeft = 0;
    int m_GlobalValue4 = 0;
    // Ends of the VIP state and of the diamond VIP state, exclusive.
    zet::String_T<wchar_t> m_VIPExpireTime;
    zet::String_T<wchar_t> m_DiamondVIPExpireTime;
    // Set by the host so that the next CheckVIP clears the player's training games.
    int m_VIPNewFlag = 0;
    // Server numbers, the most recent first; at most 3 in normal use.
    std::vector<int> m_LastServerList;
};

// The part of a player's record that holds across all game zones: texts, the VIP state, the servers last played on.
// It travels beside AccountData. Hosts serialise access; nothing here is locked. Dates are texts that
// zet::Time::convertFromString takes; one that cannot be parsed counts as long past.
#pragma once

#include "framework/platform/export.h"
#include "framework/string.h"
#include "packaging/wire_interface.h"

#include <vector>

class AccountData;

class COMMONGROUND_API AccountGlobalData
{
public:
    // Every field is tried, whatever became of those before it; the count of m_LastServerList alone decides the
    // result.
    WIRE_INTERFACE_BOTH

    // Puts everything back to its default but m_GlobalValue1, which stays.
    void Reset();

    // Brings the VIP state up to date with the present second. While m_VIPLevel is above 0 and m_VIPExpireTime lies
    // ahead: sets m_VIPDaysLeft, hands m_VIPNewFlag to account.OnGetVIP and clears it. Otherwise: m_VIPLevel and
    // m_VIPDaysLeft become 0 and account.OnLostVIP is called.
    void CheckVIP(AccountData& account);
    // Whether m_DiamondVIPExpireTime lies ahead of the present second, whatever m_VIPLevel is.
    bool IsDiamondVIP() const;

    // The server last played on, or 0.
    int GetLastServerID() const;
    // Moves or adds a server to the front of the list, and drops the last where there are then 4 or more.
    // Numbers below 1 are not taken.
    void AddLastServerID(int id);
    // The list as a text for the account database: each number followed by '|', as in "7|3|12|".
    zet::String_T<wchar_t> ConvertLastServerListToString() const;
    // Appends the numbers of such a text. What is not a number above 0 is dropped, and so is the rest after the last
    // '|'.
    void ConvertLastServerListFromString(const zet::String_T<wchar_t>& text);

    // The texts, m_GlobalFlag and the values are carried. The second text comes first on the wire.
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
    // 0 or less: not a VIP.
    int m_VIPLevel = 0;
    // Whole days until m_VIPExpireTime; a VIP in the last day has 0.
    int m_VIPDaysLeft = 0;
    int m_GlobalValue4 = 0;
    // Dates on which the VIP state and the diamond VIP state end; that second is no part of them.
    zet::String_T<wchar_t> m_VIPExpireTime;
    zet::String_T<wchar_t> m_DiamondVIPExpireTime;
    // Set by the host to have the next CheckVIP clear the player's training games.
    int m_VIPNewFlag = 0;
    // Server numbers, the most recent first; at most 3 in normal use.
    std::vector<int> m_LastServerList;
};

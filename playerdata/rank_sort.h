// Rows of the ranking boards. m_Rank is the position of a row on its board; hosts do the sorting.
// Exchange swaps everything but m_Rank: the objects keep their positions on the board.
//
// Comparisons parse m_SortTime as a calendar text (framework/time.h); an invalid one counts as the start of 1970.
#pragma once

#include "framework/export.h"
#include "framework/string.h"
#include "packaging/wire_interface.h"

// A row of a board. Sent in CCmdRequestSortAccount and its reply.
class COMMONGROUND_API AccountSortInfo
{
public:
    WIRE_INTERFACE_BOTH

    // Compares m_SortKey0, then m_SortKey1, then m_SortKey2. If all are equal, the row with the earlier m_SortTime is
    // greater.
    bool operator>(const AccountSortInfo& other) const;
    // Swaps everything but m_Rank.
    static void Exchange(AccountSortInfo& a, AccountSortInfo& b);

    zet::String_T<wchar_t> m_AccountName;
    int m_SortId = 0;
    // The position of the row on the board.
    int m_Rank = 0;
    int m_SortKey0 = 0;
    int m_SortKey1 = 0;
    int m_SortKey2 = 0;
    zet::String_T<wchar_t> m_NickName;
    int m_SortValue = 0;
    // Decides between rows of equal keys.
    zet::String_T<wchar_t> m_SortTime;
};

// A row of a board. Sent in CCmdRequestSortKinect and its reply.
class COMMONGROUND_API GameKinectSortInfo
{
public:
    WIRE_INTERFACE_BOTH

    // Compares m_SortKey. If it is equal, the row with the earlier m_SortTime is greater.
    bool operator>(const GameKinectSortInfo& other) const;
    // Swaps everything but m_Rank.
    static void Exchange(GameKinectSortInfo& a, GameKinectSortInfo& b);

    // The position of the row on the board.
    int m_Rank = 0;
    int m_SortKey = 0;
    int m_SortValue0 = 0;
    zet::String_T<wchar_t> m_AccountName;
    zet::String_T<wchar_t> m_NickName;
    int m_SortValue1 = 0;
    int m_SortId = 0;
    // Decides between rows of equal keys.
    zet::String_T<wchar_t> m_SortTime;
    zet::String_T<wchar_t> m_SortText;
};

// A row of a board. Sent in MatchPack_PlayerList_Reply.
class COMMONGROUND_API GameMatchSortInfo
{
public:
    WIRE_INTERFACE_BOTH

    // This board is inverted: the row with the greater m_SortKey is the smaller one. If the keys are equal, the row
    // with the later m_SortTime is smaller. Both operators are false for rows with equal key and time.
    bool operator<(const GameMatchSortInfo& other) const;
    bool operator>(const GameMatchSortInfo& other) const;
    // Swaps everything but m_Rank.
    static void Exchange(GameMatchSortInfo& a, GameMatchSortInfo& b);

    // The position of the row on the board.
    int m_Rank = 0;
    int m_SortKey = 0;
    int m_SortValue0 = 0;
    zet::String_T<wchar_t> m_AccountName;
    zet::String_T<wchar_t> m_NickName;
    zet::String_T<wchar_t> m_SortText;
    // Decides between rows of equal keys.
    zet::String_T<wchar_t> m_SortTime;
    int m_SortValue1 = 0;
    int m_SortId = 0;
    int m_SortValue2 = 0;
    int m_SortValue3 = 0;
    int m_SortValue4 = 0;
};

// A row of a board. Sent in CCmdRequestSortBrain and its reply.
class COMMONGROUND_API GameBrainSortInfo
{
public:
    WIRE_INTERFACE_BOTH

    // Swaps everything but m_Rank.
    static void Exchange(GameBrainSortInfo& a, GameBrainSortInfo& b);

    // The position of the row on the board.
    int m_Rank = 0;
    int m_SortId = 0;
    int m_SortKey = 0;
    zet::String_T<wchar_t> m_AccountName;
    zet::String_T<wchar_t> m_NickName;
    zet::String_T<wchar_t> m_SortText;
};

// A row of a board. Sent in CCmdRequestSortCalorie, CCmdRequestSortTupoCalorie and their replies.
class COMMONGROUND_API GameCalorieSortInfo
{
public:
    WIRE_INTERFACE_BOTH

    // Swaps everything but m_Rank.
    static void Exchange(GameCalorieSortInfo& a, GameCalorieSortInfo& b);

    // The position of the row on the board.
    int m_Rank = 0;
    int m_SortId = 0;
    int m_SortKey = 0;
    zet::String_T<wchar_t> m_AccountName;
    zet::String_T<wchar_t> m_NickName;
};

// A row of a board. Sent in CCmdRequestSortMusic and its reply.
class COMMONGROUND_API GameMusicSortInfo
{
public:
    WIRE_INTERFACE_BOTH

    // Swaps everything but m_Rank.
    static void Exchange(GameMusicSortInfo& a, GameMusicSortInfo& b);

    // The position of the row on the board.
    int m_Rank = 0;
    int m_SortId = 0;
    int m_SortKey = 0;
    zet::String_T<wchar_t> m_AccountName;
    zet::String_T<wchar_t> m_NickName;
};

// A row of a board. Sent in CCmdRequestSortRush and its reply.
class COMMONGROUND_API GameRushSortInfo
{
public:
    WIRE_INTERFACE_BOTH

    // Swaps everything but m_Rank.
    static void Exchange(GameRushSortInfo& a, GameRushSortInfo& b);

    // The position of the row on the board.
    int m_Rank = 0;
    int m_SortId = 0;
    int m_SortKey = 0;
    int m_SortValue = 0;
    zet::String_T<wchar_t> m_AccountName;
    zet::String_T<wchar_t> m_NickName;
    zet::String_T<wchar_t> m_SortText;
};

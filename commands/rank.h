// The ranking boards: a request carries one row; its reply carries one row and the rows of the board.
// Read() does not fail if rows cannot be read: a missing row keeps its defaults.
#pragma once

#include "dispatch/command_process.h"
#include "dispatch/ids/rank.h"
#include "packaging/command_head.h"
#include "playerdata/rank_sort.h"

#include <vector>

// Client to platform server: asks for a board; carries one AccountSortInfo row. Answered by CCmdReplySortAccount.
class COMMONGROUND_API CCmdRequestSortAccount : public CCmdPlatform
{
public:
    CCmdRequestSortAccount() : CCmdPlatform(command_id::CCmdRequestSortAccount) {}
    COMMAND_INTERFACE(CCmdRequestSortAccount)

    int m_Value1 = 0;
    int m_Value2 = 0;
    int m_Value3 = 0;
    AccountSortInfo m_SortInfo;
};

// Answers CCmdRequestSortAccount: one row, and the rows of the board.
class COMMONGROUND_API CCmdReplySortAccount : public CCmdPlatform
{
public:
    CCmdReplySortAccount() : CCmdPlatform(command_id::CCmdReplySortAccount) {}
    COMMAND_INTERFACE(CCmdReplySortAccount)

    int m_Value1 = 0;
    int m_Value2 = 0;
    int m_Value3 = 0;
    int m_Value4 = 0;
    int m_Value5 = 0;
    float m_Float1 = 0.0f;
    zet::String_T<wchar_t> m_Text1;
    AccountSortInfo m_SortInfo;
    std::vector<AccountSortInfo> m_SortInfos;
};

// Client to platform server: asks for a board; carries one GameBrainSortInfo row. Answered by CCmdReplySortBrain.
class COMMONGROUND_API CCmdRequestSortBrain : public CCmdPlatform
{
public:
    CCmdRequestSortBrain() : CCmdPlatform(command_id::CCmdRequestSortBrain) {}
    COMMAND_INTERFACE(CCmdRequestSortBrain)

    int m_Value1 = 0;
    int m_Value2 = 0;
    int m_Value3 = 0;
    int m_Value4 = 0;
    zet::String_T<wchar_t> m_Text1;
    GameBrainSortInfo m_GameBrainSortInfo;
};

// Answers CCmdRequestSortBrain: one row, and the rows of the board.
class COMMONGROUND_API CCmdReplySortBrain : public CCmdPlatform
{
public:
    CCmdReplySortBrain() : CCmdPlatform(command_id::CCmdReplySortBrain) {}
    COMMAND_INTERFACE(CCmdReplySortBrain)

    int m_Value1 = 0;
    int m_Value2 = 0;
    int m_Value3 = 0;
    int m_Value4 = 0;
    int m_Value5 = 0;
    int m_Value6 = 0;
    GameBrainSortInfo m_GameBrainSortInfo;
    zet::String_T<wchar_t> m_Text1;
    std::vector<GameBrainSortInfo> m_GameBrainSortInfos;
};

// Client to platform server: asks for a board; carries one GameCalorieSortInfo row. Answered by
// CCmdReplySortCalorie.
class COMMONGROUND_API CCmdRequestSortCalorie : public CCmdPlatform
{
public:
    CCmdRequestSortCalorie() : CCmdPlatform(command_id::CCmdRequestSortCalorie) {}
    COMMAND_INTERFACE(CCmdRequestSortCalorie)

    int m_Value1 = 0;
    int m_Value2 = 0;
    int m_Value3 = 0;
    int m_Value4 = 0;
    zet::String_T<wchar_t> m_Text1;
    GameCalorieSortInfo m_GameCalorieSortInfo;
};

// Answers CCmdRequestSortCalorie: one row, and the rows of the board.
class COMMONGROUND_API CCmdReplySortCalorie : public CCmdPlatform
{
public:
    CCmdReplySortCalorie() : CCmdPlatform(command_id::CCmdReplySortCalorie) {}
    COMMAND_INTERFACE(CCmdReplySortCalorie)

    int m_Value1 = 0;
    int m_Value2 = 0;
    int m_Value3 = 0;
    int m_Value4 = 0;
    int m_Value5 = 0;
    int m_Value6 = 0;
    GameCalorieSortInfo m_GameCalorieSortInfo;
    zet::String_T<wchar_t> m_Text1;
    std::vector<GameCalorieSortInfo> m_GameCalorieSortInfos;
};

// Client to platform server: asks for a board; carries one GameMusicSortInfo row. Answered by CCmdReplySortMusic.
class COMMONGROUND_API CCmdRequestSortMusic : public CCmdPlatform
{
public:
    CCmdRequestSortMusic() : CCmdPlatform(command_id::CCmdRequestSortMusic) {}
    COMMAND_INTERFACE(CCmdRequestSortMusic)

    int m_Value1 = 0;
    int m_Value2 = 0;
    int m_Value3 = 0;
    int m_Value4 = 0;
    zet::String_T<wchar_t> m_Text1;
    GameMusicSortInfo m_GameMusicSortInfo;
};

// Answers CCmdRequestSortMusic: one row, and the rows of the board.
class COMMONGROUND_API CCmdReplySortMusic : public CCmdPlatform
{
public:
    CCmdReplySortMusic() : CCmdPlatform(command_id::CCmdReplySortMusic) {}
    COMMAND_INTERFACE(CCmdReplySortMusic)

    int m_Value1 = 0;
    int m_Value2 = 0;
    int m_Value3 = 0;
    int m_Value4 = 0;
    int m_Value5 = 0;
    int m_Value6 = 0;
    GameMusicSortInfo m_GameMusicSortInfo;
    zet::String_T<wchar_t> m_Text1;
    std::vector<GameMusicSortInfo> m_GameMusicSortInfos;
};

// Client to platform server: asks for a board; carries one GameKinectSortInfo row. Answered by
// CCmdReplySortKinect.
class COMMONGROUND_API CCmdRequestSortKinect : public CCmdPlatform
{
public:
    CCmdRequestSortKinect() : CCmdPlatform(command_id::CCmdRequestSortKinect) {}
    COMMAND_INTERFACE(CCmdRequestSortKinect)

    int m_Value1 = 0;
    int m_Value2 = 0;
    int m_Value3 = 0;
    zet::String_T<wchar_t> m_Text1;
    GameKinectSortInfo m_GameKinectSortInfo;
};

// Answers CCmdRequestSortKinect: one row, and the rows of the board.
class COMMONGROUND_API CCmdReplySortKinect : public CCmdPlatform
{
public:
    CCmdReplySortKinect() : CCmdPlatform(command_id::CCmdReplySortKinect) {}
    COMMAND_INTERFACE(CCmdReplySortKinect)

    int m_Value1 = 0;
    int m_Value2 = 0;
    int m_Value3 = 0;
    int m_Value4 = 0;
    int m_Value5 = 0;
    GameKinectSortInfo m_GameKinectSortInfo;
    zet::String_T<wchar_t> m_Text1;
    std::vector<GameKinectSortInfo> m_GameKinectSortInfos;
};

// Client to platform server: asks for a board; carries one GameCalorieSortInfo row. Answered by
// CCmdReplySortTupoCalorie.
class COMMONGROUND_API CCmdRequestSortTupoCalorie : public CCmdPlatform
{
public:
    CCmdRequestSortTupoCalorie() : CCmdPlatform(command_id::CCmdRequestSortTupoCalorie) {}
    COMMAND_INTERFACE(CCmdRequestSortTupoCalorie)

    int m_Value1 = 0;
    int m_Value2 = 0;
    int m_Value3 = 0;
    GameCalorieSortInfo m_GameCalorieSortInfo;
};

// Answers CCmdRequestSortTupoCalorie: one row, and the rows of the board.
class COMMONGROUND_API CCmdReplySortTupoCalorie : public CCmdPlatform
{
public:
    CCmdReplySortTupoCalorie() : CCmdPlatform(command_id::CCmdReplySortTupoCalorie) {}
    COMMAND_INTERFACE(CCmdReplySortTupoCalorie)

    int m_Value1 = 0;
    int m_Value2 = 0;
    int m_Value3 = 0;
    int m_Value4 = 0;
    int m_Value5 = 0;
    GameCalorieSortInfo m_GameCalorieSortInfo;
    zet::String_T<wchar_t> m_Text1;
    std::vector<GameCalorieSortInfo> m_GameCalorieSortInfos;
};

// Client to platform server: asks for a board; carries one GameRushSortInfo row. Answered by CCmdReplySortRush.
class COMMONGROUND_API CCmdRequestSortRush : public CCmdPlatform
{
public:
    CCmdRequestSortRush() : CCmdPlatform(command_id::CCmdRequestSortRush) {}
    COMMAND_INTERFACE(CCmdRequestSortRush)

    int m_Value1 = 0;
    int m_Value2 = 0;
    int m_Value3 = 0;
    GameRushSortInfo m_GameRushSortInfo;
};

// Answers CCmdRequestSortRush: one row, and the rows of the board. On the wire the count of m_GameRushSortInfos
// precedes m_Values, and the rows follow.
class COMMONGROUND_API CCmdReplySortRush : public CCmdPlatform
{
public:
    static constexpr int kValues = 101;

    CCmdReplySortRush() : CCmdPlatform(command_id::CCmdReplySortRush) {}
    COMMAND_INTERFACE(CCmdReplySortRush)

    int m_Value1 = 0;
    int m_Value2 = 0;
    int m_Value3 = 0;
    int m_Value4 = 0;
    int m_Value5 = 0;
    float m_Float1 = 0.0f;
    GameRushSortInfo m_GameRushSortInfo;
    zet::String_T<wchar_t> m_Text1;
    int m_Values[kValues] = {};
    std::vector<GameRushSortInfo> m_GameRushSortInfos;
};

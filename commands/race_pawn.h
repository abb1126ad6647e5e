// The figure of a player in a race, its pawn. The commands are in the order of its states: ready, run down, released,
// started, running. Game server and client agree on the content of the floats.
#pragma once

#include "dispatch/command_process.h"
#include "dispatch/ids/race_pawn.h"
#include "packaging/command_head.h"

#include <vector>

// Between client and game server: a pawn is ready. CCmdGS_AllPlayerReady follows when all are.
class COMMONGROUND_API CCmdGS_PawnReady : public CCmdPlatform
{
public:
    CCmdGS_PawnReady() : CCmdPlatform(command_id::CCmdGS_PawnReady) {}
    COMMAND_INTERFACE(CCmdGS_PawnReady)

    zet::String_T<wchar_t> m_Text1;
};

// Between client and game server: all pawns are ready.
class COMMONGROUND_API CCmdGS_AllPlayerReady : public CCmdPlatform
{
public:
    CCmdGS_AllPlayerReady() : CCmdPlatform(command_id::CCmdGS_AllPlayerReady) {}
    COMMAND_INTERFACE(CCmdGS_AllPlayerReady)
};

// Between client and game server: three values for a pawn. CCmdGS_AllRunDown follows when all pawns have reported.
class COMMONGROUND_API CCmdGS_RunDown : public CCmdPlatform
{
public:
    CCmdGS_RunDown() : CCmdPlatform(command_id::CCmdGS_RunDown) {}
    COMMAND_INTERFACE(CCmdGS_RunDown)

    float m_Float1 = 0.0f;
    float m_Float2 = 0.0f;
    float m_Float3 = 0.0f;
};

// Between client and game server: all pawns have reported with CCmdGS_RunDown.
class COMMONGROUND_API CCmdGS_AllRunDown : public CCmdPlatform
{
public:
    CCmdGS_AllRunDown() : CCmdPlatform(command_id::CCmdGS_AllRunDown) {}
    COMMAND_INTERFACE(CCmdGS_AllRunDown)
};

// Between client and game server: releases the pawns.
class COMMONGROUND_API CCmdGS_PawnCanRun : public CCmdPlatform
{
public:
    CCmdGS_PawnCanRun() : CCmdPlatform(command_id::CCmdGS_PawnCanRun) {}
    COMMAND_INTERFACE(CCmdGS_PawnCanRun)
};

// Between client and game server: a pawn has started.
class COMMONGROUND_API CCmdGS_PawnStartRun : public CCmdPlatform
{
public:
    CCmdGS_PawnStartRun() : CCmdPlatform(command_id::CCmdGS_PawnStartRun) {}
    COMMAND_INTERFACE(CCmdGS_PawnStartRun)

    zet::String_T<wchar_t> m_Text1;
};

// Between client and game server: sent while the race runs. Its list precedes the head, in both directions, and does
// not affect the result.
class COMMONGROUND_API CCmdGS_PawnRunning : public CCmdPlatform
{
public:
    CCmdGS_PawnRunning() : CCmdPlatform(command_id::CCmdGS_PawnRunning) {}
    COMMAND_INTERFACE(CCmdGS_PawnRunning)

    std::vector<short> m_Values;
    float m_Float1 = 0.0f;
};

// Between client and game server: sent while the race runs.
class COMMONGROUND_API CCmdGS_PawnInput : public CCmdPlatform
{
public:
    CCmdGS_PawnInput() : CCmdPlatform(command_id::CCmdGS_PawnInput) {}
    COMMAND_INTERFACE(CCmdGS_PawnInput)

    unsigned char m_Byte1 = 0;
};

// Between client and game server: sent while the race runs.
class COMMONGROUND_API CCmdGS_PawnScore : public CCmdPlatform
{
public:
    CCmdGS_PawnScore() : CCmdPlatform(command_id::CCmdGS_PawnScore) {}
    COMMAND_INTERFACE(CCmdGS_PawnScore)

    zet::String_T<wchar_t> m_Text1;
    int m_Value1 = 0;
    float m_Float1 = 0.0f;
};

// Between client and game server: sent while the race runs.
class COMMONGROUND_API CCmdGS_PowerTime : public CCmdPlatform
{
public:
    CCmdGS_PowerTime() : CCmdPlatform(command_id::CCmdGS_PowerTime) {}
    COMMAND_INTERFACE(CCmdGS_PowerTime)

    zet::String_T<wchar_t> m_Text1;
    float m_Float1 = 0.0f;
};

// Between client and game server: sent while the race runs.
class COMMONGROUND_API CCmdGS_PawnFouled : public CCmdPlatform
{
public:
    CCmdGS_PawnFouled() : CCmdPlatform(command_id::CCmdGS_PawnFouled) {}
    COMMAND_INTERFACE(CCmdGS_PawnFouled)

    zet::String_T<wchar_t> m_Text1;
    float m_Float1 = 0.0f;
    unsigned char m_Byte1 = 0;
};

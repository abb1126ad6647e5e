// Payloads of CCmdVoidDataRequest and CCmdVoidDataReply about games: locks, cool-downs, scores, opponents.
// Hosts define the numbers that distinguish the payloads.
#pragma once

#include "framework/platform/export.h"
#include "framework/string.h"
#include "playerdata/account_core.h"
#include "playerdata/game_training.h"

#include <map>
#include <vector>

class CDataPackager;
namespace wire
{
struct Schema;
}

struct COMMONGROUND_API CmdUnlockGameRequest final
{
    virtual bool Write(CDataPackager* pk) const;
    virtual bool Read(CDataPackager* pk);
    static const wire::Schema& Wire();

    int m_Value1 = 0;
    int m_Value2 = 0;
    int m_Value3 = 0;
    int m_Value4 = 0;
    AccountData m_Account;
};

struct COMMONGROUND_API CmdUnlockGameReply final
{
    virtual bool Write(CDataPackager* pk) const;
    virtual bool Read(CDataPackager* pk);
    static const wire::Schema& Wire();

    zet::String_T<wchar_t> m_Text1;
    int m_Value1 = 0;
    int m_Value2 = 0;
    int m_Value3 = 0;
    int m_Value4 = 0;
    AccountData m_Account;
};

struct COMMONGROUND_API CmdCancelCDRequest final
{
    virtual bool Write(CDataPackager* pk) const;
    virtual bool Read(CDataPackager* pk);
    static const wire::Schema& Wire();

    int m_Value1 = 0;
    int m_Value2 = 0;
    int m_Value3 = 0;
    int m_Value4 = 0;
    int m_Value5 = 0;
    AccountData m_Account;
};

struct COMMONGROUND_API CmdCancelCDReply final
{
    virtual bool Write(CDataPackager* pk) const;
    virtual bool Read(CDataPackager* pk);
    static const wire::Schema& Wire();

    zet::String_T<wchar_t> m_Text1;
    int m_Value1 = 0;
    int m_Value2 = 0;
    int m_Value3 = 0;
    int m_Value4 = 0;
    AccountData m_Account;
};

// The games are keyed by their ids. Their reads do not affect the result, as in AccountData.
struct COMMONGROUND_API CmdDropScoreNotVIPRequest final
{
    virtual bool Write(CDataPackager* pk) const;
    virtual bool Read(CDataPackager* pk);
    static const wire::Schema& Wire();

    bool m_Flag1 = false;
    std::map<int, FGameTraining> m_TrainingMap;
};

struct COMMONGROUND_API CmdDropScoreNotVIPReply final
{
    virtual bool Write(CDataPackager* pk) const;
    virtual bool Read(CDataPackager* pk);
    static const wire::Schema& Wire();

    bool m_Flag1 = false;
    std::map<int, FGameTraining> m_TrainingMap;
};

struct COMMONGROUND_API CmdUpdateTrainGameMapReply
{
    bool Write(CDataPackager* pk) const;
    bool Read(CDataPackager* pk);
    static const wire::Schema& Wire();

    std::map<int, FGameTraining> m_TrainingMap;
};

struct COMMONGROUND_API CmdUpdateKinectGameReply
{
    bool Write(CDataPackager* pk) const;
    bool Read(CDataPackager* pk);
    static const wire::Schema& Wire();

    FGameKinect m_GameKinect;
};

struct COMMONGROUND_API CmdTrainGameScoreRankReply
{
    bool Write(CDataPackager* pk) const;
    bool Read(CDataPackager* pk);
    static const wire::Schema& Wire();

    float m_Float1 = 0.0f;
};

// A player of a match. Reading one never fails.
struct COMMONGROUND_API MatchPlayerInfo
{
    bool Write(CDataPackager* pk) const;
    bool Read(CDataPackager* pk);
    static const wire::Schema& Wire();

    zet::String_T<wchar_t> m_Text1;
    zet::String_T<wchar_t> m_Text2;
    float m_Float1 = 0.0f;
    float m_Float2 = 0.0f;
    float m_Float3 = 0.0f;
    std::map<int, int> m_ValueMap;
    // Not sent.
    int m_Value1 = 0;
};

struct COMMONGROUND_API CmdMatchPlayerRequest
{
    bool Write(CDataPackager* pk) const;
    bool Read(CDataPackager* pk);
    static const wire::Schema& Wire();

    MatchPlayerInfo m_MatchPlayerInfo;
};

struct COMMONGROUND_API CmdMatchPlayerReply
{
    bool Write(CDataPackager* pk) const;
    bool Read(CDataPackager* pk);
    static const wire::Schema& Wire();

    std::vector<MatchPlayerInfo> m_MatchPlayerInfos;
};

// The combat mode of a zone: its start, its players, its results and its rank board.
#pragma once

#include "dispatch/command_process.h"
#include "dispatch/ids/zone_combat.h"
#include "packaging/command_head.h"
#include "packaging/wire_interface.h"
#include "playerdata/account_core.h"
#include "playerdata/account_global.h"
#include "playerdata/account_other.h"
#include "playerdata/combat_rank.h"

#include <vector>

// Serves the combat mode.
class COMMONGROUND_API CCmdGZ_CombatStart : public CCmdPlatform
{
public:
    CCmdGZ_CombatStart() : CCmdPlatform(command_id::CCmdGZ_CombatStart) {}
    COMMAND_INTERFACE(CCmdGZ_CombatStart)

    bool m_Flag1 = false;
    zet::Uuid m_Id1;
};

// One player of CCmdGZ_SetGameUse.
struct COMMONGROUND_API CombatPlayerEntry
{
    WIRE_INTERFACE_CMD

    AccountGlobalData m_GlobalData;
    AccountData m_Account;
    AccountCombatData m_CombatData;
};

// Serves the combat mode, with the records of its players. Read and Write never fail: a host that needs certainty must
// check the list.
class COMMONGROUND_API CCmdGZ_SetGameUse : public CCmdPlatform
{
public:
    CCmdGZ_SetGameUse() : CCmdPlatform(command_id::CCmdGZ_SetGameUse) {}
    COMMAND_INTERFACE(CCmdGZ_SetGameUse)

    zet::Uuid m_Id1;
    std::vector<CombatPlayerEntry> m_Entries;
};

// Hands over the results at the end of a game. Answered by CCmdGZ_SaveResultReply.
class COMMONGROUND_API CCmdGZ_SaveResultData : public CCmdPlatform
{
public:
    CCmdGZ_SaveResultData() : CCmdPlatform(command_id::CCmdGZ_SaveResultData) {}
    COMMAND_INTERFACE(CCmdGZ_SaveResultData)

    AccountBS4Data m_BS4Data;
    int m_Value1 = 0;
};

// Answers CCmdGZ_SaveResultData.
class COMMONGROUND_API CCmdGZ_SaveResultReply : public CCmdPlatform
{
public:
    CCmdGZ_SaveResultReply() : CCmdPlatform(command_id::CCmdGZ_SaveResultReply) {}
    COMMAND_INTERFACE(CCmdGZ_SaveResultReply)

    AccountBS4Data m_BS4Data;
};

// From the zone: fetches the rank board of the BS4 season. Answered by CCmdGZ_CBRankDataPackReply.
class COMMONGROUND_API CCmdGZ_CBRankDataPackRequest : public CCmdPlatform
{
public:
    CCmdGZ_CBRankDataPackRequest() : CCmdPlatform(command_id::CCmdGZ_CBRankDataPackRequest) {}
    COMMAND_INTERFACE(CCmdGZ_CBRankDataPackRequest)
};

// Answers CCmdGZ_CBRankDataPackRequest: the whole board.
class COMMONGROUND_API CCmdGZ_CBRankDataPackReply : public CCmdPlatform
{
public:
    CCmdGZ_CBRankDataPackReply() : CCmdPlatform(command_id::CCmdGZ_CBRankDataPackReply) {}
    COMMAND_INTERFACE(CCmdGZ_CBRankDataPackReply)

    BS4RankData_Pack_Reply m_BS4RankData_Pack_Reply;
    AccountBS4Data m_BS4Data;
};

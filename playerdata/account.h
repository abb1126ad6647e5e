// All data of a player on a server, as one object.
#pragma once

#include "framework/export.h"
#include "framework/unknown.h"
#include "playerdata/account_core.h"
#include "playerdata/account_global.h"
#include "playerdata/account_other.h"
#include "playerdata/home_data.h"
#include "playerdata/match_data.h"
#include "playerdata/travel_data.h"

// Reference-counted, data only. Users must ensure that only one thread at a time uses it.
class COMMONGROUND_API CAccount : public zet::Object
{
public:
    CAccount(const CAccount&) = delete;
    CAccount& operator=(const CAccount&) = delete;
    // The only ways to create an account: with a new identifier, or with the given one.
    static zet::Unknown::Handle_T<CAccount> createInstance();
    static zet::Unknown::Handle_T<CAccount> createInstance(const zet::Uuid& id);

    const wchar_t* getClassName() const override { return L"CAccount"; }
    const wchar_t* getClassTimestamp() const override;

    AccountData m_Account;
    AccountMatchData3 m_MatchData3;
    AccountMatchData4 m_MatchData4;
    AccountGlobalData m_GlobalData;
    AccountHomeData m_HomeData;
    AccountTravelData m_TravelData;
    AccountCombatData m_CombatData;
    AccountMatchData m_MatchData;
    AccountAchievementData m_AchievementData;
    AccountLingYuanGouData m_LingYuanGouData;

protected:
    CAccount() = default;
    // For derived classes: with this identifier.
    explicit CAccount(const zet::Uuid& id) : zet::Object(id) {}
};

// What the platform's game data would hold: the shop, the training games of a new account, prices.
#pragma once

#include "playerdata/account.h"
#include "playerdata/shop.h"

namespace arena::platform
{

// The shop as it is delivered to every player.
const FGameShop& getShop();

// The records of a new account: the training games of the game table, and what a beginner has.
zet::Unknown::Handle_T<CAccount> makeRecords();

// Which carried fields of the records hold the currencies and the energy is agreed on here, once.
inline int& goldOf(CAccount& records)
{
    return records.m_Account.m_Value0;
}
inline int& energyOf(CAccount& records)
{
    return records.m_Account.m_Value1;
}
inline int& diamondsOf(CAccount& records)
{
    return records.m_GlobalData.m_GlobalValue0;
}
// The diamonds of all bills, which the audit compares with the bills.
inline int& boughtOf(CAccount& records)
{
    return records.m_GlobalData.m_GlobalValue2;
}
// When the energy was refilled, in minutes since 1970.
inline int& refilledOf(CAccount& records)
{
    return records.m_GlobalData.m_GlobalValue3;
}
// The missions that are done, one bit each.
inline int& missionsOf(CAccount& records)
{
    return records.m_Account.m_Value5;
}
// The kilocalories of all games.
inline int& caloriesOf(CAccount& records)
{
    return records.m_Account.m_Value6;
}

} // namespace arena::platform

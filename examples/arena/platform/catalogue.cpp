#include "examples/arena/platform/catalogue.h"
#include "playerdata/rule_constants.h"

namespace arena::platform
{

namespace
{

constexpr int kTrainingGames = 12;
// The first ones are open to everybody.
constexpr int kOpenGames = 4;
constexpr int kBeginnersGold = 100;

FGameTrade makeTrade(const wchar_t* name, const wchar_t* type, const wchar_t* item, int count, int price)
{
    FGameTrade trade;
    trade.m_TradeName = name;
    trade.m_MainType = type;
    trade.m_Cost0 = price;
    FGameItem piece;
    piece.m_Name = item;
    piece.m_Num = count;
    trade.m_Items.push_back(piece);
    return trade;
}

FInPurchaseGameTrade makePurchase(const wchar_t* name, int diamonds, int price)
{
    FInPurchaseGameTrade purchase;
    static_cast<FGameTrade&>(purchase) = makeTrade(name, g_PayType_Diamond, L"diamond", diamonds, price);
    return purchase;
}

FGameShop makeShop()
{
    FGameShop shop;
    shop.m_InPurchaseTrades = {makePurchase(L"diamonds-10", 10, 100), makePurchase(L"diamonds-60", 60, 500),
                               makePurchase(L"diamonds-130", 130, 1000)};
    for (const FGameTrade& trade :
         {makeTrade(L"apples", L"food", L"apple", 5, 20), makeTrade(L"water", L"food", L"water", 3, 10),
          makeTrade(L"treasure-card", L"card", L"treasure-card", 1, 50)})
        shop.m_ShopTrades[trade.m_TradeName] = trade;
    return shop;
}

} // namespace

const FGameShop& getShop()
{
    static const FGameShop shop = makeShop();
    return shop;
}

zet::Unknown::Handle_T<CAccount> makeRecords()
{
    const zet::Unknown::Handle_T<CAccount> records = CAccount::createInstance();
    for (int id = 1; id <= kTrainingGames; ++id)
    {
        FGameTraining game;
        game.m_GameId = id;
        game.m_Locked = id > kOpenGames;
        if (game.IsValid())
            records->m_Account.m_TrainingMap[id] = game;
    }
    FGameItem gift;
    gift.m_Name = L"treasure-card";
    gift.m_Num = 1;
    records->m_Account.m_GiftBox.push_back(gift);
    goldOf(*records) = kBeginnersGold;
    energyOf(*records) = g_EnergyMax_VIP_0;
    return records;
}

} // namespace arena::platform

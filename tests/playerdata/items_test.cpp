#include "playerdata/items.h"
#include "playerdata/shop.h"

#include "framework/time.h"
#include "packaging/cmd_packager.h"
#include "packaging/data_packager.h"
#include "tests/support/record_helpers.h"

#include <gtest/gtest.h>

#include <limits>
#include <memory>

namespace
{

using test::itemOf;
using test::secondsOf;

FInPurchaseGameTrade tradeOf(const wchar_t* name, int cost)
{
    FInPurchaseGameTrade trade;
    trade.m_TradeName = name;
    trade.m_Cost0 = cost;
    return trade;
}

} // namespace

TEST(GameItem, WithoutADeadlineIsValidForEver)
{
    const zet::TestClock clock(secondsOf(L"2999-1-1 00:00:00"));
    EXPECT_TRUE(itemOf(L"apple", 5).IsValid());
    EXPECT_TRUE(itemOf(L"apple", 1).IsValid());
}

TEST(GameItem, WithoutNameOrPiecesIsNotValid)
{
    const zet::TestClock clock(secondsOf(L"2020-1-1 00:00:00"));
    EXPECT_FALSE(itemOf(L"apple", 0).IsValid());
    EXPECT_FALSE(itemOf(L"apple", 0, L"2030-1-1 00:00:00").IsValid());
    EXPECT_FALSE(itemOf(L"apple", -1).IsValid());
    EXPECT_FALSE(itemOf(L"", 5).IsValid());
    EXPECT_FALSE(itemOf(L"", 5, L"2030-1-1 00:00:00").IsValid());
}

TEST(GameItem, ExpiresOnTheSecondOfItsDeadline)
{
    const FGameItem item = itemOf(L"apple", 1, L"2020-1-1 00:00:00");
    zet::TestClock clock(secondsOf(L"2019-12-31 23:59:59"));
    EXPECT_TRUE(item.IsValid());
    clock.advance(999);
    EXPECT_TRUE(item.IsValid());
    clock.advance(1);
    EXPECT_FALSE(item.IsValid());
    clock.advance(1000);
    EXPECT_FALSE(item.IsValid());
}

TEST(GameItem, InvalidDeadlineHasExpired)
{
    EXPECT_FALSE(itemOf(L"apple", 1, L"soon").IsValid());
    EXPECT_FALSE(itemOf(L"apple", 1, L"2999-13-1 00:00:00").IsValid());
}

TEST(GameItem, DeadlinesCountFromTheYear2000)
{
    EXPECT_TRUE(FGameItem::_DiscardStartTime == L"2000-1-1 0:0:0");
    zet::Time start;
    EXPECT_TRUE(start.convertFromString(FGameItem::_DiscardStartTime));
}

TEST(BigTableItem, ReserveIsTouchedWhenTheStockIsUsedUp)
{
    FBigTableItem item;
    item.m_Sku = 1;
    item.m_SkuBackup = 2;
    const int expected[][2] = {{0, 2}, {0, 1}, {0, 0}, {0, 0}};
    for (const auto& [sku, backup] : expected)
    {
        EXPECT_EQ(item.IsHaveSku(), item.m_Sku > 0 || item.m_SkuBackup > 0);
        item.SubtractSku();
        EXPECT_EQ(item.m_Sku, sku);
        EXPECT_EQ(item.m_SkuBackup, backup);
    }
    EXPECT_FALSE(item.IsHaveSku());
}

TEST(BigTableItem, BelowZeroMeansNoLimit)
{
    FBigTableItem item;
    for (const auto& [sku, backup] : {std::pair(-1, 0), std::pair(0, -1), std::pair(-1, -1), std::pair(-7, 3)})
    {
        item.m_Sku = sku;
        item.m_SkuBackup = backup;
        EXPECT_TRUE(item.IsHaveSku());
        item.SubtractSku();
        EXPECT_EQ(item.m_Sku, sku);
        EXPECT_EQ(item.m_SkuBackup, backup);
    }
}

TEST(BigTableItem, StockAndReserveAtTheirMostAreHad)
{
    FBigTableItem item;
    item.m_Sku = std::numeric_limits<int>::max();
    item.m_SkuBackup = std::numeric_limits<int>::max();
    EXPECT_TRUE(item.IsHaveSku());
}

TEST(GameTrade, WithoutAMainTypeIsUndefined)
{
    FGameTrade trade;
    EXPECT_TRUE(trade.GetMainType() == L"Undefine");
    trade.m_MainType = L"Food";
    EXPECT_TRUE(trade.GetMainType() == L"Food");
    EXPECT_TRUE(FInPurchaseGameTrade().GetMainType() == L"Undefine");
}

TEST(GameTrade, ReadingReplacesTheItems)
{
    FGameTrade trade;
    trade.m_Items = {itemOf(L"apple", 1), itemOf(L"pear", 2)};
    CCmdPackager packager;
    ASSERT_TRUE(trade.Write(&packager));
    FGameTrade other;
    other.m_Items = {itemOf(L"old", 1)};
    ASSERT_TRUE(other.Read(&packager));
    ASSERT_EQ(other.m_Items.size(), 2u);
    EXPECT_TRUE(other.m_Items[0].m_Name == L"apple");
    EXPECT_TRUE(other.m_Items[1].m_Name == L"pear");
}

TEST(GameTrade, CutCountLeavesTheItems)
{
    FGameTrade trade;
    trade.m_Items = {itemOf(L"old", 1)};
    CCmdPackager packager;
    EXPECT_FALSE(trade.Read(&packager));
    EXPECT_EQ(trade.m_Items.size(), 1u);
}

TEST(GameShop, OffersAreFoundByName)
{
    FGameShop shop;
    shop.m_ShopTrades[L"apple"].m_Cost0 = 1;
    shop.m_ShopTrades[L"pear"].m_Cost0 = 2;
    ASSERT_NE(shop.GetShopTradeByName(L"pear"), nullptr);
    EXPECT_EQ(shop.GetShopTradeByName(L"pear"), &shop.m_ShopTrades[L"pear"]);
    EXPECT_EQ(shop.GetShopTradeByName(L"plum"), nullptr);
    EXPECT_EQ(shop.GetShopTradeByName(L""), nullptr);
}

TEST(GameShop, OfTwoOffersForMoneyTheFirstIsFound)
{
    FGameShop shop;
    EXPECT_EQ(shop.GetInPurchaseGameTradeByName(L"gold"), nullptr);
    shop.m_InPurchaseTrades = {tradeOf(L"silver", 1), tradeOf(L"gold", 2), tradeOf(L"gold", 3)};
    ASSERT_NE(shop.GetInPurchaseGameTradeByName(L"gold"), nullptr);
    EXPECT_EQ(shop.GetInPurchaseGameTradeByName(L"gold")->m_Cost0, 2);
    EXPECT_EQ(shop.GetInPurchaseGameTradeByName(L"copper"), nullptr);
}

TEST(GameShop, SecondReadingAddsToTheOffersForMoneyAlone)
{
    FGameShop shop;
    shop.m_InPurchaseTrades = {tradeOf(L"silver", 1), tradeOf(L"gold", 2)};
    shop.m_ShopTrades[L"apple"].m_TradeName = L"apple";
    CDataPackager packager;
    ASSERT_TRUE(shop.Write(&packager));
    ASSERT_TRUE(shop.Write(&packager));

    FGameShop other;
    other.m_ShopTrades[L"old"].m_TradeName = L"old";
    ASSERT_TRUE(other.Read(&packager));
    ASSERT_TRUE(other.Read(&packager));
    ASSERT_EQ(other.m_InPurchaseTrades.size(), 4u);
    EXPECT_TRUE(other.m_InPurchaseTrades[0].m_TradeName == L"silver");
    EXPECT_TRUE(other.m_InPurchaseTrades[3].m_TradeName == L"gold");
    ASSERT_EQ(other.m_ShopTrades.size(), 1u);
    EXPECT_EQ(other.m_ShopTrades.count(L"apple"), 1u);
}

TEST(GameShop, FailedElementLeavesThoseBeforeIt)
{
    FGameShop shop;
    shop.m_InPurchaseTrades = {tradeOf(L"silver", 1), tradeOf(L"gold", 2)};
    CCmdPackager whole;
    ASSERT_TRUE(shop.Write(&whole));
    CCmdPackager cut;
    // Without the last bytes of the second offer and everything after it.
    ASSERT_TRUE(cut.Write(whole.GetBuffer(), whole.GetDataSize() - 6));
    FGameShop other;
    other.m_InPurchaseTrades = {tradeOf(L"old", 9)};
    EXPECT_FALSE(other.Read(&cut));
    ASSERT_EQ(other.m_InPurchaseTrades.size(), 2u);
    EXPECT_TRUE(other.m_InPurchaseTrades[0].m_TradeName == L"old");
    EXPECT_TRUE(other.m_InPurchaseTrades[1].m_TradeName == L"silver");
}

TEST(GameShop, CutCountOfTheShopOffersLeavesNone)
{
    FGameShop shop;
    shop.m_ShopTrades[L"old"].m_TradeName = L"old";
    CCmdPackager packager;
    ASSERT_TRUE(packager.Write(0));
    EXPECT_FALSE(shop.Read(&packager));
    EXPECT_TRUE(shop.m_ShopTrades.empty());
}

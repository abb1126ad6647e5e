#include "playerdata/shop.h"

#include "packaging/wire/order.h"

WIRE_ORDER_BOTH(FGameTrade)
{
    return LIST(r.m_Items) && FIELDS(r.m_TradeName, r.m_TradeText, r.m_MainType, r.m_Cost0, r.m_Cost1);
}

WIRE_ORDER_BOTH(FInPurchaseGameTrade)
{
    return HEAD(FGameTrade) && FIELDS(r.m_PurchaseValue0, r.m_PurchaseText, r.m_PurchaseValue1);
}

WIRE_ORDER_BOTH(FGameShop)
{
    return LIST(r.m_InPurchaseTrades, wire::Appends) &&
           LIST(r.m_ShopTrades, wire::ClearedFirst, wire::KeyedBy(&FGameTrade::m_TradeName));
}

zet::String_T<wchar_t> FGameTrade::GetMainType() const
{
    return m_MainType.isEmpty() ? zet::String_T<wchar_t>(L"Undefine") : m_MainType;
}

FGameTrade* FGameShop::GetShopTradeByName(const zet::String_T<wchar_t>& name)
{
    const auto found = m_ShopTrades.find(name);
    return found == m_ShopTrades.end() ? nullptr : &found->second;
}

FInPurchaseGameTrade* FGameShop::GetInPurchaseGameTradeByName(const zet::String_T<wchar_t>& name)
{
    for (FInPurchaseGameTrade& trade : m_InPurchaseTrades)
        if (trade.m_TradeName == name)
            return &trade;
    return nullptr;
}

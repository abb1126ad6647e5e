// The shop: offers for the game's own money, offers for real money, and the catalogue of both.
// Plain values. The catalogue comes from the servers' game data.
#pragma once

#include "packaging/wire_interface.h"
#include "playerdata/items.h"

#include <map>
#include <vector>

// An offer of items.
class COMMONGROUND_API FGameTrade
{
public:
    // Items are first on the wire. Read stops at the first item that fails and keeps those before it.
    WIRE_INTERFACE_BOTH

    // m_MainType, or "Undefine" if it is empty.
    zet::String_T<wchar_t> GetMainType() const;

    std::vector<FGameItem> m_Items;
    // The key in the shop.
    zet::String_T<wchar_t> m_TradeName;
    zet::String_T<wchar_t> m_TradeText; // carried
    zet::String_T<wchar_t> m_MainType;
    int m_Cost0 = 0; // carried
    int m_Cost1 = 0; // carried
};

// An offer paid with real money: the whole FGameTrade and then three values, carried.
class COMMONGROUND_API FInPurchaseGameTrade : public FGameTrade
{
public:
    WIRE_INTERFACE_BOTH

    int m_PurchaseValue0 = 0;
    zet::String_T<wchar_t> m_PurchaseText;
    int m_PurchaseValue1 = 0;
};

// The catalogue.
class COMMONGROUND_API FGameShop
{
public:
    // Read clears m_ShopTrades but appends to m_InPurchaseTrades: to read a catalogue again, use a new object. Of two
    // shop offers with one name the later is kept.
    WIRE_INTERFACE_BOTH

    // The offer of a name, or null; of two offers for real money with one name, the first. Owned by the shop and valid
    // until the shop changes.
    FGameTrade* GetShopTradeByName(const zet::String_T<wchar_t>& name);
    FInPurchaseGameTrade* GetInPurchaseGameTradeByName(const zet::String_T<wchar_t>& name);

    // In the order of the catalogue.
    std::vector<FInPurchaseGameTrade> m_InPurchaseTrades;
    // By m_TradeName.
    std::map<zet::String_T<wchar_t>, FGameTrade> m_ShopTrades;
};

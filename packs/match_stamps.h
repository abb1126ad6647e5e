// The stamps of the match feature: their exchange, and the goods of the match shop.
#pragma once

#include "framework/export.h"
#include "framework/string.h"
#include "packaging/wire_interface.h"
#include "playerdata/match_data.h"
#include "playerdata/match_records.h"

// Request in CCmdMatchPackRequest: exchanges stamps. Answered by MatchPack_ExchangeStampReply. Has a form for both
// packagers, with the same order.
struct COMMONGROUND_API MatchPack_ExchangeStampRequest
{
    WIRE_INTERFACE_BOTH

    int m_Value1 = 0;
    int m_Value2 = 0;
    int m_Value3 = -1;
    int m_Value4 = 0;
    AccountMatchData m_MatchData;
};

// Reply in CCmdMatchPackReply to MatchPack_ExchangeStampRequest: the changed record. Has a form for both packagers,
// with the same order.
struct COMMONGROUND_API MatchPack_ExchangeStampReply final
{
    // Not WIRE_INTERFACE_BOTH_VIRTUAL: the data packager's come first here, and the order is part of the interface.
    virtual bool Write(CDataPackager* pk) const;
    virtual bool Write(CCmdPackager* pk) const;
    virtual bool Read(CDataPackager* pk);
    virtual bool Read(CCmdPackager* pk);
    static const wire::Schema& Wire();

    zet::String_T<wchar_t> m_Msg;
    int m_Value1 = -1;
    int m_Value2 = 0;
    int m_Value3 = 0;
    int m_Value4 = 0;
    AccountMatchData m_MatchData;
};

// Reply in CCmdMatchPackReply: a separate answer to the stamp messages, with three numbers.
struct COMMONGROUND_API MatchPack_NotEnoughStockReply final
{
    WIRE_INTERFACE_CMD_VIRTUAL

    int m_Value1 = 0;
    int m_Value2 = 0;
    int m_Value3 = 0;
};

// Request in CCmdMatchPackRequest: changes stamps for goods of the match shop. Answered by
// MatchPack_StampChangeGoodsReply.
struct COMMONGROUND_API MatchPack_StampChangeGoodsRequest
{
    WIRE_INTERFACE_CMD

    int m_Value1 = 0;
};

// Reply in CCmdMatchPackReply to MatchPack_StampChangeGoodsRequest: the goods, and the code if the prize is a code.
struct COMMONGROUND_API MatchPack_StampChangeGoodsReply
{
    WIRE_INTERFACE_CMD

    MatchShopAwardsInfo m_ShopAwards;
    MatchAwardsCodeInfo m_AwardsCode;
    int m_Value1 = 0;
    int m_Value2 = 0;
    int m_Value3 = 0;
    zet::String_T<wchar_t> m_Msg;
};

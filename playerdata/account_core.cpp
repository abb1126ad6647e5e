#include "playerdata/account_core.h"

#include "packaging/wire/order.h"

#include <algorithm>
#include <iterator>

WIRE_ORDER_BOTH(AccountData)
{
    return FIELDS(r.m_AccountId, r.m_AccountName, r.m_AccountNote, r.m_Value0, r.m_Value1, r.m_Value2, r.m_Allowance,
                  r.m_Value3, r.m_Value4, r.m_NewbieFlag, r.m_Value5, r.m_Value6, r.m_Value7, r.m_Flag,
                  r.m_KinectGame) &&
           LIST(r.m_TrainingMap, wire::KeyedBy(&FGameTraining::m_GameId), wire::ElementsUntestedOnRead) &&
           LIST(r.m_DateMap, wire::KeyedByPosition, wire::ElementsUntestedOnRead) &&
           LIST(r.m_KinectMap, wire::KeyedBy(&FGameKinect::m_GameId), wire::ElementsUntestedOnRead) &&
           LIST(r.m_ItemList, wire::ElementsUntestedOnRead) && LIST(r.m_GiftBox, wire::ElementsUntestedOnRead);
}

AccountData::AccountData() = default;
AccountData::AccountData(const AccountData& other) = default;
AccountData::AccountData(AccountData&& other) noexcept = default;
AccountData::~AccountData() = default;

AccountData& AccountData::operator=(const AccountData& other)
{
    if (this == &other)
        return *this;
    m_AccountId = other.m_AccountId;
    m_AccountName = other.m_AccountName;
    m_AccountNote = other.m_AccountNote;
    m_Value0 = other.m_Value0;
    m_Value1 = other.m_Value1;
    m_Value2 = other.m_Value2;
    m_Value4 = other.m_Value4;
    m_NewbieFlag = other.m_NewbieFlag;
    m_Value5 = other.m_Value5;
    m_Value6 = other.m_Value6;
    m_Value7 = other.m_Value7;
    m_Flag = other.m_Flag;
    m_KinectGame = other.m_KinectGame;
    m_TrainingMap = other.m_TrainingMap;
    m_DateMap = other.m_DateMap;
    m_KinectMap = other.m_KinectMap;
    m_ItemList = other.m_ItemList;
    m_GiftBox = other.m_GiftBox;
    return *this;
}

void AccountData::Reset()
{
    m_AccountId = 0;
    m_AccountName.clear();
    m_AccountNote.clear();
    m_Value0 = 0;
    m_Value1 = 0;
    m_Value2 = 0;
    std::fill(std::begin(m_Allowance), std::end(m_Allowance), 10);
    m_Value3 = 0;
    m_Value4 = 0;
    m_NewbieFlag = 0;
    m_Value5 = 0;
    m_Value6 = 0;
    m_Value7 = 0;
    m_Flag = false;
    m_KinectGame.Reset();
    m_TrainingMap.clear();
    m_DateMap.clear();
    m_KinectMap.clear();
    m_ItemList.clear();
    m_GiftBox.clear();
}

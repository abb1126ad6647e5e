#include "playerdata/account_core.h"

#include "packaging/wire/order.h"

#include <algorithm>
#include <iterator>
#include <memory>
#include <type_traits>
#include <utility>

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

// Assignment and Reset replace the whole object, so that the fields are listed in the class and in the order only. The
// steps that can fail come first and the move cannot, so a failure leaves the old object unchanged.
static_assert(std::is_nothrow_move_constructible_v<AccountData>);

static void Replace(AccountData& old, AccountData&& made)
{
    std::destroy_at(&old);
    std::construct_at(&old, std::move(made));
}

AccountData& AccountData::operator=(const AccountData& other)
{
    if (this == &other)
        return *this;
    AccountData made(other);
    made.m_Value3 = m_Value3;
    std::copy(std::begin(m_Allowance), std::end(m_Allowance), made.m_Allowance);
    Replace(*this, std::move(made));
    return *this;
}

void AccountData::Reset()
{
    AccountData made;
    made.m_KinectGame = m_KinectGame;
    made.m_KinectGame.Reset();
    Replace(*this, std::move(made));
}

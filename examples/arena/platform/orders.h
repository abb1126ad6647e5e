// Orders, payments and bills. The number of an order is the key of its payment and of its bill: whatever is repeated
// after a crash or a lost answer, an order is paid once and applied once.
//
//   open -> paid (in the ledger of the payment service) -> applied, with its bill, in one transaction
//       \-> expired, if it was not paid in time
#pragma once

#include "examples/arena/platform/accounts.h"

#include <vector>

namespace arena::platform
{

enum class OrderState : int
{
    kOpen = 0,
    kApplied = 1,
    kExpired = 2
};

struct Order
{
    std::string m_Number;
    int m_Account = 0;
    std::string m_Trade;
    int m_Price = 0;
    OrderState m_State = OrderState::kOpen;
};

enum class Applied
{
    // The bill is applied, by this call or an earlier one.
    kDone,
    kNotPaid,
    // The database failed, there is no such order, or the shop no longer has its offer: nothing has changed.
    kFailed
};

// Seconds that an order waits for its payment.
constexpr int kOrderTime = 900;

// Belongs to the thread of its Database.
class Orders
{
public:
    explicit Orders(Accounts& accounts) : m_Accounts(accounts) {}

    // Opens an order for an offer of the shop. reference is the client's own name for it: the same reference of the
    // same account gives the same order, so a client that got no answer asks again. False if the reference is known
    // for another offer, or the database failed.
    bool open(int account, const zet::String_T<wchar_t>& reference, const zet::String_T<wchar_t>& trade, int price,
              Order& order);
    bool find(const std::string& number, Order& order);

    // The made-up payment service: enters the payment in its ledger. False if the price is another one, the order is
    // not open, or the database failed. A payment that is there already is true.
    bool pay(const std::string& number, int price);

    // Adds what was bought to the account and enters the bill. The player may be logged in anywhere: a session there
    // finds the account changed when it saves next.
    Applied apply(const std::string& number);

    // The orders that are paid and not applied: a crash came between. Their bills are to be applied at start.
    std::vector<std::string> findPaid();
    // Closes the orders that were not paid in time.
    bool expire(long long now);

private:
    Accounts& m_Accounts;
};

} // namespace arena::platform

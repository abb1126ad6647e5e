#include "examples/arena/platform/orders.h"
#include "examples/arena/platform/catalogue.h"
#include "examples/arena/platform/database.h"
#include "framework/log.h"
#include "framework/time.h"
#include "framework/uuid.h"

namespace arena::platform
{

namespace
{

constexpr int kOpen = static_cast<int>(OrderState::kOpen);
constexpr int kApplied = static_cast<int>(OrderState::kApplied);
constexpr int kExpired = static_cast<int>(OrderState::kExpired);

std::string newNumber()
{
    zet::Uuid id;
    zet::uuid_create(id);
    const zet::String_T<char> number =
        zet::formatText("%08x%08x%04x", id.m_Data1, id.m_Data2, static_cast<unsigned int>(id.m_Data3));
    return number.getBuffer();
}

bool readOrder(soci::session& sql, const std::string& condition, const std::string& value, int account, Order& order)
{
    int state = 0;
    sql << "SELECT number, account, trade, price, state FROM orders WHERE " << condition, soci::use(value, "value"),
        soci::use(account, "account"), soci::into(order.m_Number), soci::into(order.m_Account),
        soci::into(order.m_Trade), soci::into(order.m_Price), soci::into(state);
    if (!sql.got_data())
        return false;
    order.m_State = static_cast<OrderState>(state);
    return true;
}

bool readOrder(soci::session& sql, const std::string& number, Order& order)
{
    return readOrder(sql, "number = :value AND account > :account", number, 0, order);
}

bool isPaid(soci::session& sql, const std::string& number)
{
    int price = 0;
    sql << "SELECT price FROM payments WHERE order_number = :number", soci::use(number), soci::into(price);
    return sql.got_data();
}

// Whether the order was open until now.
bool close(soci::session& sql, const std::string& number, int state)
{
    soci::statement statement(sql);
    statement.exchange(soci::use(state, "state"));
    statement.exchange(soci::use(number, "number"));
    statement.alloc();
    statement.prepare("UPDATE orders SET state = :state WHERE number = :number AND state = 0");
    statement.define_and_bind();
    statement.execute(true);
    return statement.get_affected_rows() == 1;
}

// False if the order is not open.
bool renew(soci::session& sql, const std::string& number)
{
    const long long now = zet::time(nullptr);
    soci::statement statement(sql);
    statement.exchange(soci::use(now, "now"));
    statement.exchange(soci::use(number, "number"));
    statement.alloc();
    statement.prepare("UPDATE orders SET created = :now WHERE number = :number AND state = 0");
    statement.define_and_bind();
    statement.execute(true);
    return statement.get_affected_rows() == 1;
}

// 0, and logged, for an offer that the shop no longer has.
int countDiamonds(const Order& order)
{
    FGameShop shop = getShop();
    const FInPurchaseGameTrade* const trade = shop.GetInPurchaseGameTradeByName(fromUtf8(order.m_Trade));
    const int diamonds = trade && !trade->m_Items.empty() ? trade->m_Items.front().m_Num : 0;
    if (diamonds == 0)
        zet::Log::error(L"Order %s stays open: the shop has no offer '%s'", fromUtf8(order.m_Number),
                        fromUtf8(order.m_Trade));
    return diamonds;
}

} // namespace

bool Orders::open(int account, const zet::String_T<wchar_t>& reference, const zet::String_T<wchar_t>& trade, int price,
                  Order& order)
{
    return m_Accounts.getDatabase().transact(
        [&](soci::session& sql)
        {
            const std::string own = toUtf8(reference);
            const std::string offer = toUtf8(trade);
            if (readOrder(sql, "reference = :value AND account = :account", own, account, order))
                return order.m_Trade == offer;
            order = {newNumber(), account, offer, price, OrderState::kOpen};
            const long long now = zet::time(nullptr);
            sql << "INSERT INTO orders (number, account, reference, trade, price, state, created) VALUES (:number, "
                   ":account, :reference, :trade, :price, :state, :created)",
                soci::use(order.m_Number), soci::use(account), soci::use(own), soci::use(offer), soci::use(price),
                soci::use(kOpen), soci::use(now);
            m_Accounts.getDatabase().step("after the order");
            return true;
        });
}

bool Orders::find(const std::string& number, Order& order)
{
    return m_Accounts.getDatabase().transact([&](soci::session& sql) { return readOrder(sql, number, order); });
}

bool Orders::pay(const std::string& number, int price)
{
    return m_Accounts.getDatabase().transact(
        [&](soci::session& sql)
        {
            Order order;
            if (!readOrder(sql, number, order) || order.m_Price != price)
                return false;
            if (isPaid(sql, number))
                return true;
            // Its time begins anew: an expiry that waits for this row finds it young afterwards.
            if (!renew(sql, number))
                return false;
            sql << "INSERT INTO payments (order_number, price) VALUES (:number, :price)", soci::use(number),
                soci::use(price);
            m_Accounts.getDatabase().step("after the payment");
            return true;
        });
}

Applied Orders::apply(const std::string& number)
{
    Applied result = Applied::kFailed;
    Database& database = m_Accounts.getDatabase();
    const bool isDone = database.transact(
        [&](soci::session& sql)
        {
            Order order;
            if (!readOrder(sql, number, order))
                return false;
            if (!isPaid(sql, number))
            {
                result = Applied::kNotPaid;
                return false;
            }
            if (!close(sql, number, kApplied))
            {
                // Applied already, by an earlier call or by another platform.
                result = Applied::kDone;
                return false;
            }
            database.step("after the state of the order");
            StoredAccount account;
            if (!readAccount(database, sql, order.m_Account, true, account))
                return false;
            const int diamonds = countDiamonds(order);
            if (diamonds == 0)
                return false;
            diamondsOf(*account.m_Records) += diamonds;
            boughtOf(*account.m_Records) += diamonds;
            if (!writeRecords(database, sql, account))
                return false;
            database.step("after the records");
            const long long version = account.m_Version + 1;
            sql << "INSERT INTO bills (order_number, account, diamonds, version) VALUES (:number, :account, "
                   ":diamonds, :version)",
                soci::use(number), soci::use(order.m_Account), soci::use(diamonds), soci::use(version);
            database.step("after the bill");
            return true;
        });
    return isDone ? Applied::kDone : result;
}

std::vector<std::string> Orders::findPaid()
{
    std::vector<std::string> numbers;
    m_Accounts.getDatabase().transact(
        [&](soci::session& sql)
        {
            const soci::rowset<std::string> rows =
                (sql.prepare << "SELECT number FROM orders JOIN payments ON order_number = number WHERE state = 0");
            numbers.assign(rows.begin(), rows.end());
            return true;
        });
    return numbers;
}

bool Orders::expire(long long now)
{
    return m_Accounts.getDatabase().transact(
        [&](soci::session& sql)
        {
            const long long oldest = now - kOrderTime;
            sql << "UPDATE orders SET state = :state WHERE state = 0 AND created < :oldest AND NOT EXISTS (SELECT 1 "
                   "FROM payments WHERE order_number = number)",
                soci::use(kExpired), soci::use(oldest);
            return true;
        });
}

} // namespace arena::platform

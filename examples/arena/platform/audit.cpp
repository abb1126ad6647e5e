#include "examples/arena/platform/audit.h"
#include "examples/arena/platform/catalogue.h"
#include "examples/arena/platform/database.h"
#include "examples/arena/platform/orders.h"

namespace arena::platform
{

namespace
{

// Each finds faults by one statement: a text of the row, and what is wrong with it.
struct Check
{
    const char* m_Statement;
    const char* m_Words;
};

constexpr Check kChecks[] = {
    {"SELECT number FROM orders WHERE state = 1 AND NOT EXISTS (SELECT 1 FROM bills WHERE order_number = number)",
     "is applied without a bill"},
    {"SELECT number FROM orders JOIN bills ON order_number = number WHERE state <> 1", "has a bill and is not applied"},
    {"SELECT number FROM orders JOIN bills ON order_number = number WHERE orders.account <> bills.account",
     "has a bill of another account"},
    {"SELECT number FROM orders JOIN payments ON order_number = number WHERE state = 0",
     "is paid and not applied: a platform that starts applies it"},
    {"SELECT number FROM orders JOIN payments ON order_number = number WHERE state = 2", "is paid and expired"},
    {"SELECT number FROM orders JOIN payments ON order_number = number WHERE orders.price <> payments.price",
     "is paid at another price"},
    {"SELECT order_number FROM bills WHERE NOT EXISTS (SELECT 1 FROM payments WHERE payments.order_number = "
     "bills.order_number)",
     "has a bill without a payment"},
    {"SELECT order_number FROM bills JOIN accounts ON accounts.id = bills.account WHERE bills.version > "
     "accounts.version",
     "has a bill of a version that its account has not reached"},
    {"SELECT MIN(order_number) FROM bills GROUP BY account, version HAVING COUNT(*) > 1",
     "shares the version of its account with another bill"},
};

void runCheck(soci::session& sql, const Check& check, const char* what, Audit& result)
{
    const soci::rowset<std::string> rows = (sql.prepare << std::string(check.m_Statement));
    for (const std::string& row : rows)
        result.m_Findings.push_back(what + row + " " + check.m_Words);
}

void auditAccount(Database& database, soci::session& sql, int id, Audit& result)
{
    const std::string name = "account " + std::to_string(id);
    const auto find = [&](const std::string& words) { result.m_Findings.push_back(name + " " + words); };
    StoredAccount account;
    if (!readAccount(database, sql, id, false, account))
        return find("has records that cannot be read");
    CAccount& records = *account.m_Records;
    if (records.m_Account.m_AccountId != id || records.m_Account.m_AccountName != account.m_Name)
        find("has the records of another account");
    if (account.m_Version < 1)
        find("was never saved");
    std::string training;
    std::string servers;
    std::string attractions;
    std::string owner;
    int bought = 0;
    sql << "SELECT training, last_servers, attractions, owner FROM accounts WHERE id = :id", soci::use(id),
        soci::into(training), soci::into(servers), soci::into(attractions), soci::into(owner);
    if (training != toUtf8(records.m_Account.SaveStringFromTraining()))
        find("has a training string other than its record's");
    if (servers != toUtf8(records.m_GlobalData.ConvertLastServerListToString()))
        find("has a list of servers other than its record's");
    if (attractions != toUtf8(records.m_TravelData.SaveStringFromAttractData()))
        find("has attractions other than its record's");
    if (owner.empty() != account.m_Ticket.empty())
        find("has a ticket without a platform, or the other way round");
    sql << "SELECT COALESCE(SUM(diamonds), 0) FROM bills WHERE account = :id", soci::use(id), soci::into(bought);
    if (bought != boughtOf(records))
        find("got " + std::to_string(boughtOf(records)) + " diamonds for bills of " + std::to_string(bought));
    if (diamondsOf(records) < 0 || goldOf(records) < 0)
        find("owes money");
}

} // namespace

Audit audit(Database& database, long long now)
{
    Audit result;
    const bool isDone = database.transact(
        [&](soci::session& sql)
        {
            for (const Check& check : kChecks)
                runCheck(sql, check, "order ", result);
            const std::string oldest = std::to_string(now - kOrderTime);
            const std::string late = "SELECT number FROM orders WHERE state = 0 AND created < " + oldest;
            runCheck(sql, {late.c_str(), "is open after its time"}, "order ", result);
            const soci::rowset<int> rows = (sql.prepare << "SELECT id FROM accounts ORDER BY id");
            const std::vector<int> accounts(rows.begin(), rows.end());
            for (const int id : accounts)
                auditAccount(database, sql, id, result);
            result.m_Accounts = static_cast<int>(accounts.size());
            sql << "SELECT COUNT(*) FROM orders", soci::into(result.m_Orders);
            sql << "SELECT COUNT(*) FROM bills", soci::into(result.m_Bills);
            return true;
        });
    if (!isDone)
        result.m_Findings.emplace_back("the database cannot be read");
    return result;
}

} // namespace arena::platform

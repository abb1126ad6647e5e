#include "examples/arena/platform/accounts.h"
#include "examples/arena/platform/database.h"
#include "framework/log.h"
#include "framework/time.h"
#include "packaging/data_packager.h"

#include <algorithm>
#include <cstdio>
#include <memory>

namespace arena::platform
{

namespace
{

// The columns of bytes, in the order of every statement here, and their records.
template <class Records, class Visit>
bool forEachRecord(Records& records, Visit visit)
{
    return visit("account", records.m_Account) && visit("match3", records.m_MatchData3) &&
           visit("match4", records.m_MatchData4) && visit("global", records.m_GlobalData) &&
           visit("home", records.m_HomeData) && visit("travel", records.m_TravelData) &&
           visit("combat", records.m_CombatData) && visit("match1", records.m_MatchData) &&
           visit("achievement", records.m_AchievementData) && visit("campaign", records.m_LingYuanGouData);
}

// What the columns of an account hold.
struct Row
{
    std::vector<std::pair<const char*, std::string>> m_Bytes;
    std::vector<std::pair<const char*, std::string>> m_Texts;
};

bool toRow(CAccount& records, Row& row)
{
    // A packager is 64 KiB, which is too much for the stack of every thread.
    const auto packager = std::make_unique<CDataPackager>();
    const bool fits = forEachRecord(records,
                                    [&](const char* column, const auto& record)
                                    {
                                        packager->Reset();
                                        if (!record.Write(packager.get()))
                                            return false;
                                        row.m_Bytes.emplace_back(
                                            column, std::string(reinterpret_cast<const char*>(packager->GetBuffer()),
                                                                static_cast<size_t>(packager->GetDataSize())));
                                        return true;
                                    });
    if (!fits)
    {
        zet::Log::error(L"The records of %s do not fit into a packager", records.m_Account.m_AccountName);
        return false;
    }
    row.m_Texts = {{"training", toUtf8(records.m_Account.SaveStringFromTraining())},
                   {"items", toUtf8(records.m_Account.SaveStringFromItem())},
                   {"last_servers", toUtf8(records.m_GlobalData.ConvertLastServerListToString())},
                   {"attractions", toUtf8(records.m_TravelData.SaveStringFromAttractData())}};
    return true;
}

// Binds the columns of a row to parameters of their names.
void useRow(soci::statement& statement, const Row& row, Bytes& bytes)
{
    for (const auto& [column, value] : row.m_Bytes)
        bytes.use(statement, column, value);
    for (const auto& [column, value] : row.m_Texts)
        statement.exchange(soci::use(value, column));
}

// Runs a statement whose parameters are all bound. Returns the number of rows that it changed.
void run(soci::statement& statement, const std::string& words)
{
    statement.alloc();
    statement.prepare(words);
    statement.define_and_bind();
    statement.execute(true);
}

int findIdentity(soci::session& sql, const char* kind, const std::string& value)
{
    const std::string kindText = kind;
    int account = 0;
    sql << "SELECT account FROM identities WHERE kind = :kind AND value = :value", soci::use(kindText),
        soci::use(value), soci::into(account);
    return sql.got_data() ? account : 0;
}

void addIdentity(soci::session& sql, const char* kind, const std::string& value, int id)
{
    const std::string kindText = kind;
    sql << "INSERT INTO identities (kind, value, account) VALUES (:kind, :value, :account)", soci::use(kindText),
        soci::use(value), soci::use(id);
}

} // namespace

zet::String_T<wchar_t> getOutsideIdentity(int service, const zet::String_T<wchar_t>& account)
{
    return zet::String_T<wchar_t>(service) + L":" + account;
}

void copyAccount(const AccountData& from, AccountData& to)
{
    to = from;
    to.m_Value3 = from.m_Value3;
    std::copy(std::begin(from.m_Allowance), std::end(from.m_Allowance), to.m_Allowance);
}

bool readAccount(Database& database, soci::session& sql, int id, bool isLocked, StoredAccount& account)
{
    if (account.m_Records.isNull())
        account.m_Records = CAccount::createInstance();
    Bytes bytes(database, sql);
    std::string words = "SELECT name, password, version, epoch, ticket";
    std::string name;
    StoredAccount read;
    soci::statement statement(sql);
    statement.exchange(soci::into(name));
    statement.exchange(soci::into(read.m_Password));
    statement.exchange(soci::into(read.m_Version));
    statement.exchange(soci::into(read.m_Epoch));
    statement.exchange(soci::into(read.m_Ticket));
    forEachRecord(*account.m_Records,
                  [&](const char* column, auto&)
                  {
                      words += ", " + bytes.column(column);
                      bytes.into(statement);
                      return true;
                  });
    // SQLite has no lock of a row: a transaction that begins as a writer holds the whole database.
    words += " FROM accounts WHERE id = :id";
    words += isLocked && database.isPostgreSql() ? " FOR UPDATE" : "";
    statement.exchange(soci::use(id, "id"));
    run(statement, words);
    if (!statement.got_data())
        return false;
    size_t index = 0;
    const auto packager = std::make_unique<CDataPackager>();
    const bool isRead =
        forEachRecord(*account.m_Records,
                      [&](const char* column, auto& record)
                      {
                          const std::string value = bytes.get(index++);
                          packager->Reset();
                          const bool fits = packager->Write(value.data(), static_cast<int>(value.size())) &&
                                            record.Read(packager.get());
                          if (!fits)
                              zet::Log::error(L"Account %d: its column %s cannot be read", id, fromUtf8(column));
                          return fits;
                      });
    account.m_Id = id;
    account.m_Name = fromUtf8(name);
    account.m_Password = read.m_Password;
    account.m_Version = read.m_Version;
    account.m_Epoch = read.m_Epoch;
    account.m_Ticket = read.m_Ticket;
    return isRead;
}

bool writeRecords(Database& database, soci::session& sql, const StoredAccount& account)
{
    Row row;
    if (!toRow(*account.m_Records, row))
        return false;
    Bytes bytes(database, sql);
    soci::statement statement(sql);
    std::string words = "UPDATE accounts SET version = version + 1";
    for (const auto& [column, value] : row.m_Bytes)
        words += std::string(", ") + column + " = " + bytes.parameter(column);
    for (const auto& [column, value] : row.m_Texts)
        words += std::string(", ") + column + " = :" + column;
    words += " WHERE id = :id AND version = :version AND epoch = :epoch";
    useRow(statement, row, bytes);
    statement.exchange(soci::use(account.m_Id, "id"));
    statement.exchange(soci::use(account.m_Version, "version"));
    statement.exchange(soci::use(account.m_Epoch, "epoch"));
    run(statement, words);
    return statement.get_affected_rows() == 1;
}

bool Accounts::read(const std::string& condition, const std::string& text, int number, StoredAccount& account)
{
    return m_Database.transact(
        [&](soci::session& sql)
        {
            int id = number;
            if (!condition.empty())
            {
                sql << "SELECT id FROM accounts WHERE " << condition << " = :value", soci::use(text), soci::into(id);
                if (!sql.got_data())
                    return false;
            }
            return readAccount(m_Database, sql, id, false, account);
        });
}

bool Accounts::find(const zet::String_T<wchar_t>& name, StoredAccount& account)
{
    return read("name", toUtf8(name), 0, account);
}

bool Accounts::find(int id, StoredAccount& account)
{
    return read("", "", id, account);
}

bool Accounts::findByTicket(const std::string& ticket, StoredAccount& account)
{
    return !ticket.empty() && read("ticket", ticket, 0, account);
}

bool Accounts::findByIdentity(const char* kind, const zet::String_T<wchar_t>& value, StoredAccount& account)
{
    return m_Database.transact(
        [&](soci::session& sql)
        {
            const int id = findIdentity(sql, kind, toUtf8(value));
            return id != 0 && readAccount(m_Database, sql, id, false, account);
        });
}

bool Accounts::create(const zet::String_T<wchar_t>& name, const std::string& password, const char* kind,
                      const zet::String_T<wchar_t>& value, CAccount& records)
{
    return m_Database.transact(
        [&](soci::session& sql)
        {
            const std::string text = toUtf8(name);
            int id = 0;
            sql << "SELECT id FROM accounts WHERE name = :name", soci::use(text), soci::into(id);
            if (sql.got_data() || (kind && findIdentity(sql, kind, toUtf8(value)) != 0))
                return false;
            // The records hold the number, which the database gives: so the row is made empty first.
            const std::string created = toUtf8(zet::Time::getCurrent().convertToString(true));
            sql << "INSERT INTO accounts (name, password, created, version, epoch, owner, ticket, training, items, "
                   "last_servers, attractions, account, match3, match4, global, home, travel, combat, match1, "
                   "achievement, campaign) VALUES (:name, :password, :created, 0, 0, '', '', '', '', '', '', '', '', "
                   "'', '', '', '', '', '', '', '')",
                soci::use(text), soci::use(password), soci::use(created);
            sql << "SELECT id FROM accounts WHERE name = :name", soci::use(text), soci::into(id);
            StoredAccount account;
            account.m_Id = id;
            account.m_Records = zet::Unknown::Handle_T<CAccount>(&records);
            records.m_Account.m_AccountId = id;
            records.m_Account.m_AccountName = name;
            if (kind)
                addIdentity(sql, kind, toUtf8(value), id);
            return writeRecords(m_Database, sql, account);
        });
}

bool Accounts::logIn(int id, const std::string& owner, const std::string& ticket, StoredAccount& account)
{
    return m_Database.transact(
        [&](soci::session& sql)
        {
            // First the change, which locks the row, so that nothing is saved between it and the reading.
            sql << "UPDATE accounts SET epoch = epoch + 1, owner = :owner, ticket = :ticket WHERE id = :id",
                soci::use(owner), soci::use(ticket), soci::use(id);
            if (!readAccount(m_Database, sql, id, false, account))
                return false;
            m_Database.notify(sql, std::to_string(id) + " " + std::to_string(account.m_Epoch));
            return true;
        });
}

bool Accounts::logOut(const StoredAccount& account)
{
    return m_Database.transact(
        [&](soci::session& sql)
        {
            sql << "UPDATE accounts SET owner = '', ticket = '' WHERE id = :id AND epoch = :epoch",
                soci::use(account.m_Id), soci::use(account.m_Epoch);
            return true;
        });
}

Saved Accounts::save(StoredAccount& account, const Also& also)
{
    const bool isDone = m_Database.transact(
        [&](soci::session& sql)
        {
            if (!writeRecords(m_Database, sql, account))
                return false;
            m_Database.step("after the records");
            return !also || also(sql);
        });
    if (isDone)
    {
        ++account.m_Version;
        return Saved::kDone;
    }
    const long long version = account.m_Version;
    const long long epoch = account.m_Epoch;
    // What cannot be read again still has the change that was refused.
    if (!reload(account))
        return Saved::kUnreadable;
    if (account.m_Epoch != epoch)
        return Saved::kLost;
    return account.m_Version != version ? Saved::kChanged : Saved::kFailed;
}

bool Accounts::reload(StoredAccount& account)
{
    return find(account.m_Id, account);
}

std::vector<std::pair<int, long long>> Accounts::findLogins(const std::string& owner)
{
    std::vector<std::pair<int, long long>> logins;
    if (m_Database.isPostgreSql() && !m_Database.hasMissedNotices())
    {
        // A notice is "ACCOUNT EPOCH".
        for (const std::string& notice : m_Database.takeNotices())
        {
            int id = 0;
            long long epoch = 0;
            if (std::sscanf(notice.c_str(), "%d %lld", &id, &epoch) == 2)
                logins.emplace_back(id, epoch);
        }
        return logins;
    }
    const bool isDone = m_Database.transact(
        [&](soci::session& sql)
        {
            const soci::rowset<soci::row> rows =
                (sql.prepare << "SELECT id, epoch FROM accounts WHERE owner <> '' AND owner <> :owner",
                 soci::use(owner));
            for (const soci::row& row : rows)
                logins.emplace_back(row.get<int>(0), row.get<long long>(1));
            return true;
        });
    if (isDone)
        m_Database.resumeNotices();
    return logins;
}

bool Accounts::setPassword(int id, const std::string& password)
{
    return m_Database.transact(
        [&](soci::session& sql)
        {
            sql << "UPDATE accounts SET password = :password WHERE id = :id", soci::use(password), soci::use(id);
            return true;
        });
}

bool Accounts::bind(const char* kind, const zet::String_T<wchar_t>& value, int id)
{
    return m_Database.transact(
        [&](soci::session& sql)
        {
            const std::string kindText = kind;
            int count = 0;
            sql << "SELECT COUNT(*) FROM identities WHERE kind = :kind AND account = :account", soci::use(kindText),
                soci::use(id), soci::into(count);
            if (count != 0 || findIdentity(sql, kind, toUtf8(value)) != 0)
                return false;
            addIdentity(sql, kind, toUtf8(value), id);
            return true;
        });
}

bool Accounts::unbind(const char* kind, int id)
{
    return m_Database.transact(
        [&](soci::session& sql)
        {
            const std::string kindText = kind;
            soci::statement statement(sql);
            statement.exchange(soci::use(kindText, "kind"));
            statement.exchange(soci::use(id, "account"));
            run(statement, "DELETE FROM identities WHERE kind = :kind AND account = :account");
            return statement.get_affected_rows() > 0;
        });
}

zet::String_T<wchar_t> Accounts::getIdentity(const char* kind, int id)
{
    std::string value;
    m_Database.transact(
        [&](soci::session& sql)
        {
            const std::string kindText = kind;
            sql << "SELECT value FROM identities WHERE kind = :kind AND account = :account", soci::use(kindText),
                soci::use(id), soci::into(value);
            return true;
        });
    return fromUtf8(value);
}

} // namespace arena::platform

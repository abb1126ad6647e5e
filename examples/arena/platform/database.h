// The connection to the account database: SQLite in a file, or PostgreSQL when several platforms share the accounts.
// Only the files that hold SQL include this one.
#pragma once

#include "framework/string.h"

#include <soci/soci.h>

#include <deque>
#include <functional>
#include <string>
#include <vector>

namespace arena::platform
{

// One connection, for one thread. A call blocks until the database has answered: a change costs the platform's System
// one fsync (about 1 ms), so a process carries some hundred changes per second. More platform processes carry more. It
// waits for other writers of SQLite for at most 2 s, for an answer of PostgreSQL for at most 5 s a statement.
class Database
{
public:
    // "sqlite://FILE" or a connection URI of PostgreSQL, "postgresql://...". Brings the tables to the newest version.
    // Throws std::exception if the database cannot be used; its text says why. mayMake: whether a database without
    // tables gets them.
    explicit Database(const std::string& url, bool mayMake = true);
    ~Database();

    bool isPostgreSql() const { return m_IsPostgreSql; }

    // Runs work in one transaction, and commits it if work returns true. False, and nothing is changed: work returned
    // false, or the database failed, which is logged. A connection that is lost during the commit leaves open whether
    // it took place; what is repeated then has to find out, as Accounts::save() and the orders do. A lost connection is
    // made again for the next call.
    bool transact(const std::function<bool(soci::session& sql)>& work);
    // Transactions that were committed, and those that failed, since the start.
    unsigned long long getCommits() const { return m_Commits; }
    unsigned long long getFailures() const { return m_Failures; }
    // Whether the last transact() was false because the database failed, not because work returned false.
    bool hasFailed() const { return m_HasFailed; }

    // Tells all platforms that share the database; with SQLite nothing. Inside of a transaction it leaves with its
    // commit.
    void notify(soci::session& sql, const std::string& payload);
    // What other platforms and this one have sent since the last call. Never blocks.
    std::vector<std::string> takeNotices();
    // Whether the connection is lost, or was since the last call of resumeNotices(): notices may be missing.
    bool hasMissedNotices() const { return m_IsBroken || m_HasMissedNotices; }
    // The caller has read what they would have told, on the connection that there is now.
    void resumeNotices() { m_HasMissedNotices = false; }

    // Called between the steps of a change, with the name of the step before. A test ends the process there.
    std::function<void(const char* step)> m_OnStep;
    void step(const char* name) const
    {
        if (m_OnStep)
            m_OnStep(name);
    }

private:
    void prepareConnection();
    void begin();
    bool isAlive();
    void migrate(bool mayMake);

    soci::session m_Sql;
    bool m_IsPostgreSql = false;
    bool m_IsBroken = false;
    bool m_HasFailed = false;
    bool m_HasMissedNotices = false;
    unsigned long long m_Commits = 0;
    unsigned long long m_Failures = 0;
};

// Values of a statement whose columns hold bytes. Both databases have such columns, but SOCI has no common form for
// them: SQLite takes a blob, PostgreSQL the hexadecimal text of a bytea.
class Bytes
{
public:
    Bytes(const Database& database, soci::session& sql) : m_IsHex(database.isPostgreSql()), m_Sql(sql) {}

    // The words for a column of a SELECT and for a parameter of an UPDATE or INSERT.
    std::string column(const char* name) const;
    std::string parameter(const char* name) const;

    // Binds bytes to a parameter of this name; the statement runs while this object lives.
    void use(soci::statement& statement, const char* name, const std::string& bytes);
    // Binds the next column; its value is at this index once the statement has run.
    void into(soci::statement& statement);
    std::string get(size_t index);

private:
    bool m_IsHex;
    soci::session& m_Sql;
    // Deques, since the statement holds references.
    std::deque<soci::blob> m_Blobs;
    std::deque<std::string> m_Texts;
};

// Texts are UTF-8 in the database.
std::string toUtf8(const zet::String_T<wchar_t>& text);
zet::String_T<wchar_t> fromUtf8(const std::string& text);

} // namespace arena::platform

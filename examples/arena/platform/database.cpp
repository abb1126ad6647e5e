#include "examples/arena/platform/database.h"
#include "examples/arena/platform/schema.h"
#include "framework/log.h"
#include "framework/string_helper.h"

#include <libpq-fe.h>
#include <soci/postgresql/soci-postgresql.h>
#include <soci/sqlite3/soci-sqlite3.h>

#include <filesystem>
#include <stdexcept>

namespace arena::platform
{

namespace
{

constexpr char kSqlite[] = "sqlite://";
constexpr char kPostgreSql[] = "postgresql://";
constexpr char kChannel[] = "arena";
// The key of the lock under which one of several platforms that start together makes the tables.
constexpr int kMigrationLock = 7411;

bool startsWith(const std::string& text, const char* start)
{
    return text.rfind(start, 0) == 0;
}

void replaceAll(std::string& text, const std::string& from, const std::string& to)
{
    for (size_t at = text.find(from); at != std::string::npos; at = text.find(from, at + to.size()))
        text.replace(at, from.size(), to);
}

PGconn* connectionOf(soci::session& sql)
{
    return static_cast<soci::postgresql_session_backend*>(sql.get_backend())->conn_;
}

} // namespace

Database::Database(const std::string& url, bool mayMake)
{
    if (startsWith(url, kSqlite))
    {
        // SQLite would make an empty file.
        if (!mayMake && !std::filesystem::exists(url.substr(sizeof kSqlite - 1)))
            throw std::runtime_error("there is no such file");
        // Waits for the writer of another process for at most 2 s.
        m_Sql.open(soci::sqlite3, "db=" + url.substr(sizeof kSqlite - 1) + " timeout=2");
    }
    else if (startsWith(url, kPostgreSql))
    {
        m_IsPostgreSql = true;
        // Seconds for a connect, and milliseconds for data that is not acknowledged.
        m_Sql.open(soci::postgresql,
                   url + (url.find('?') == std::string::npos ? '?' : '&') + "connect_timeout=2&tcp_user_timeout=5000");
    }
    else
    {
        throw std::runtime_error("a database is sqlite://FILE or postgresql://...");
    }
    prepareConnection();
    migrate(mayMake);
}

Database::~Database() = default;

void Database::prepareConnection()
{
    if (m_IsPostgreSql)
    {
        m_Sql << "SET client_min_messages = warning";
        // A statement that waits longer fails, so that the platform's other players go on.
        m_Sql << "SET statement_timeout = '5s'";
        m_Sql << std::string("LISTEN ") + kChannel;
        return;
    }
    // In this mode a commit is one fsync. FULL: what is committed survives a loss of power.
    std::string mode;
    m_Sql << "PRAGMA journal_mode = WAL", soci::into(mode);
    m_Sql << "PRAGMA synchronous = FULL";
    m_Sql << "PRAGMA foreign_keys = ON";
}

void Database::migrate(bool mayMake)
{
    const auto& migrations = getMigrations();
    int newest = static_cast<int>(migrations.size());
    int version = 0;
    const bool isDone = transact(
        [&](soci::session& sql)
        {
            if (m_IsPostgreSql)
                sql << "SELECT pg_advisory_xact_lock(" << kMigrationLock << ")";
            sql << "CREATE TABLE IF NOT EXISTS schema_version (version INTEGER NOT NULL)";
            soci::indicator isNull = soci::i_null;
            sql << "SELECT MAX(version) FROM schema_version", soci::into(version, isNull);
            if (isNull != soci::i_ok)
                version = 0;
            if (version == 0 && !mayMake)
                return false;
            for (int i = version; i < newest; ++i)
                for (std::string statement : migrations[static_cast<size_t>(i)])
                {
                    replaceAll(statement, "BYTES", m_IsPostgreSql ? "BYTEA" : "BLOB");
                    replaceAll(statement, "NUMBERED",
                               m_IsPostgreSql ? "SERIAL PRIMARY KEY" : "INTEGER PRIMARY KEY AUTOINCREMENT");
                    sql << statement;
                }
            if (version < newest)
                sql << "INSERT INTO schema_version (version) VALUES (:version)", soci::use(newest);
            return true;
        });
    if (!isDone)
        throw std::runtime_error("the tables cannot be made; the log says why");
    if (version > newest)
        throw std::runtime_error("the database has tables of a newer version of this program");
}

bool Database::transact(const std::function<bool(soci::session& sql)>& work)
{
    bool isOpen = false;
    m_HasFailed = false;
    try
    {
        begin();
        isOpen = true;
        if (work(m_Sql))
        {
            step("before the commit");
            m_Sql << "COMMIT";
            ++m_Commits;
            step("after the commit");
            return true;
        }
        m_Sql << "ROLLBACK";
        return false;
    }
    catch (const std::exception& error)
    {
        ++m_Failures;
        m_HasFailed = true;
        zet::Log::error(L"The database failed: %s", zet::StringHelper::utf8ToWide(error.what()));
    }
    m_IsBroken = m_IsBroken || !isAlive();
    if (isOpen && !m_IsBroken)
    {
        try
        {
            m_Sql << "ROLLBACK";
        }
        catch (const std::exception&)
        {
            m_IsBroken = true;
        }
    }
    return false;
}

void Database::begin()
{
    // Takes the lock of a writer at once: a transaction of SQLite that has read first could not wait for it.
    const char* const words = m_IsPostgreSql ? "BEGIN" : "BEGIN IMMEDIATE";
    if (!m_IsBroken)
    {
        try
        {
            m_Sql << words;
            return;
        }
        catch (const std::exception&)
        {
            // The server was started anew: nothing has been sent yet, so a new connection may be tried at once.
            m_IsBroken = !isAlive();
            if (!m_IsBroken)
                throw;
        }
    }
    m_Sql.reconnect();
    prepareConnection();
    m_IsBroken = false;
    m_HasMissedNotices = m_IsPostgreSql;
    m_Sql << words;
}

bool Database::isAlive()
{
    if (!m_IsPostgreSql)
        return true;
    // There is no back end after a reconnect that failed.
    return m_Sql.get_backend() && PQstatus(connectionOf(m_Sql)) == CONNECTION_OK;
}

void Database::notify(soci::session& sql, const std::string& payload)
{
    if (m_IsPostgreSql)
        sql << "SELECT pg_notify('" << kChannel << "', :payload)", soci::use(payload);
}

std::vector<std::string> Database::takeNotices()
{
    std::vector<std::string> notices;
    if (!m_IsPostgreSql || m_IsBroken)
        return notices;
    PGconn* const connection = connectionOf(m_Sql);
    if (PQconsumeInput(connection) == 0)
    {
        m_IsBroken = true;
        return notices;
    }
    while (PGnotify* const notice = PQnotifies(connection))
    {
        notices.emplace_back(notice->extra);
        PQfreemem(notice);
    }
    return notices;
}

std::string Bytes::column(const char* name) const
{
    return m_IsHex ? std::string("encode(") + name + ", 'hex')" : name;
}

std::string Bytes::parameter(const char* name) const
{
    return m_IsHex ? std::string("decode(:") + name + ", 'hex')" : std::string(":") + name;
}

void Bytes::use(soci::statement& statement, const char* name, const std::string& bytes)
{
    if (!m_IsHex)
    {
        soci::blob& blob = m_Blobs.emplace_back(m_Sql);
        blob.append(bytes.data(), bytes.size());
        statement.exchange(soci::use(blob, name));
        return;
    }
    static constexpr char kDigits[] = "0123456789abcdef";
    std::string& text = m_Texts.emplace_back();
    text.reserve(2 * bytes.size());
    for (const char byte : bytes)
    {
        const auto value = static_cast<unsigned char>(byte);
        text += kDigits[value >> 4];
        text += kDigits[value & 15];
    }
    statement.exchange(soci::use(text, name));
}

void Bytes::into(soci::statement& statement)
{
    if (m_IsHex)
        statement.exchange(soci::into(m_Texts.emplace_back()));
    else
        statement.exchange(soci::into(m_Blobs.emplace_back(m_Sql)));
}

std::string Bytes::get(size_t index)
{
    std::string bytes;
    if (!m_IsHex)
    {
        soci::blob& blob = m_Blobs[index];
        bytes.resize(blob.get_len());
        if (!bytes.empty())
            blob.read(0, bytes.data(), bytes.size());
        return bytes;
    }
    const std::string& text = m_Texts[index];
    const auto digit = [](char c) { return c <= '9' ? c - '0' : c - 'a' + 10; };
    for (size_t i = 0; i + 1 < text.size(); i += 2)
        bytes += static_cast<char>(digit(text[i]) << 4 | digit(text[i + 1]));
    return bytes;
}

std::string toUtf8(const zet::String_T<wchar_t>& text)
{
    return zet::StringHelper::wideToUtf8(text).getBuffer();
}

zet::String_T<wchar_t> fromUtf8(const std::string& text)
{
    return zet::StringHelper::utf8ToWide(text.c_str());
}

} // namespace arena::platform

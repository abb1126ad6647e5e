// The accounts of all players: found by name, by an identity such as a phone, or by the ticket of a login; saved whole,
// one transaction per change.
#pragma once

#include "playerdata/account.h"

#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace soci
{
class session;
}

namespace arena::platform
{

class Database;

// An account as the database had it when it was read.
struct StoredAccount
{
    int m_Id = 0;
    zet::String_T<wchar_t> m_Name;
    // Empty for an account without a password, such as a guest's.
    std::string m_Password;
    // Counts the changes of the records. A save with an older number is refused: another platform was first.
    long long m_Version = 0;
    // Counts the logins. A save with an older number is refused: the player is logged in elsewhere.
    long long m_Epoch = 0;
    std::string m_Ticket;
    zet::Unknown::Handle_T<CAccount> m_Records;
};

// What logs in to an account beside its name.
namespace identity
{
constexpr char kPhone[] = "phone";
constexpr char kDevice[] = "device";
constexpr char kMac[] = "mac";
constexpr char kOutside[] = "outside";
constexpr char kWechat[] = "wechat";
} // namespace identity

// The identity of an account of an outside service: "SERVICE:ACCOUNT".
zet::String_T<wchar_t> getOutsideIdentity(int service, const zet::String_T<wchar_t>& account);

enum class Saved
{
    kDone,
    // Another writer was first: the records are those of the database again.
    kChanged,
    // The player has logged in elsewhere since: the records are not to be used.
    kLost,
    // The change is refused, and the records can no longer be read: they are not to be used.
    kUnreadable,
    // The database failed, or the records do not fit: the records are those of the database again.
    kFailed
};

// Belongs to the thread of its Database. What a call changes, it changes in one transaction: it is there once the call
// has returned true, and it is not there if it returned false.
class Accounts
{
public:
    // Further statements of the same transaction. False undoes all of it.
    using Also = std::function<bool(soci::session& sql)>;

    explicit Accounts(Database& database) : m_Database(database) {}

    // Each is false if there is none or, see Database::hasFailed(), the database failed; the account is then not to be
    // used.
    bool find(const zet::String_T<wchar_t>& name, StoredAccount& account);
    bool find(int id, StoredAccount& account);
    bool findByIdentity(const char* kind, const zet::String_T<wchar_t>& value, StoredAccount& account);
    bool findByTicket(const std::string& ticket, StoredAccount& account);

    // A new account with the given records, which get its number and name. False if the name or the identity is taken.
    // kind may be null for an account without an identity.
    bool create(const zet::String_T<wchar_t>& name, const std::string& password, const char* kind,
                const zet::String_T<wchar_t>& value, CAccount& records);
    // Counts a login, so that no other one can save any more, and reads the account.
    bool logIn(int id, const std::string& owner, const std::string& ticket, StoredAccount& account);
    // Makes the ticket invalid, unless the player has logged in elsewhere since.
    bool logOut(const StoredAccount& account);

    // Writes the records if the account has neither changed nor been logged in elsewhere since. Only after kDone may
    // the change be acknowledged.
    Saved save(StoredAccount& account, const Also& also = {});
    // Reads the records, the version and the epoch again.
    bool reload(StoredAccount& account);

    // The logins of other platforms that this one may not know of yet: account and epoch. With PostgreSQL those that it
    // has told since the last call, with SQLite and after a lost connection all that are there.
    std::vector<std::pair<int, long long>> findLogins(const std::string& owner);

    bool setPassword(int id, const std::string& password);
    // False if the identity belongs to another account, or the account has another one of this kind.
    bool bind(const char* kind, const zet::String_T<wchar_t>& value, int id);
    // False if the account has no identity of this kind.
    bool unbind(const char* kind, int id);
    zet::String_T<wchar_t> getIdentity(const char* kind, int id);

    Database& getDatabase() const { return m_Database; }

private:
    bool read(const std::string& condition, const std::string& text, int number, StoredAccount& account);

    Database& m_Database;
};

// The statements of save(), for a transaction that has begun. False if another writer was first.
bool writeRecords(Database& database, soci::session& sql, const StoredAccount& account);
// Reads an account by number in a transaction that has begun; isLocked: until its end no other one writes it.
bool readAccount(Database& database, soci::session& sql, int id, bool isLocked, StoredAccount& account);

// The assignment of AccountData keeps two fields of its target, which is not meant here: the whole record is copied.
void copyAccount(const AccountData& from, AccountData& to);

} // namespace arena::platform

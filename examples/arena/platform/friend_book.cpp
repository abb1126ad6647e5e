#include "examples/arena/platform/friend_book.h"
#include "examples/arena/platform/database.h"

namespace arena::platform
{

namespace
{

using Text = zet::String_T<wchar_t>;

// work says what came of it, and nothing is changed unless that is kDone.
template <class Work>
FriendResult transact(Database& database, Work work)
{
    FriendResult result = FriendResult::kFailed;
    const bool isDone = database.transact(
        [&](soci::session& sql)
        {
            result = work(sql);
            return result == FriendResult::kDone;
        });
    return !isDone && database.hasFailed() ? FriendResult::kFailed : result;
}

void list(soci::session& sql, int player, FriendNames& names)
{
    names.clear();
    const soci::rowset<std::string> rows =
        (sql.prepare
             << "SELECT name FROM friends JOIN accounts ON accounts.id = friend WHERE friends.account = :player",
         soci::use(player));
    for (const std::string& name : rows)
        names.insert(fromUtf8(name));
}

// 0 if there is no account of this name.
int accountOf(soci::session& sql, const Text& name)
{
    const std::string words = toUtf8(name);
    int account = 0;
    sql << "SELECT id FROM accounts WHERE name = :name", soci::use(words), soci::into(account);
    return account;
}

bool areFriends(soci::session& sql, int player, int other)
{
    int count = 0;
    sql << "SELECT COUNT(*) FROM friends WHERE account = :player AND friend = :other", soci::use(player),
        soci::use(other), soci::into(count);
    return count > 0;
}

void store(soci::session& sql, int player, const FriendTexts& own)
{
    for (const auto& [kind, text] : own)
    {
        const std::string words = toUtf8(text);
        sql << "INSERT INTO friend_texts (account, kind, words) VALUES (:player, :kind, :words) ON CONFLICT (account, "
               "kind) DO UPDATE SET words = excluded.words",
            soci::use(player), soci::use(kind), soci::use(words);
    }
}

} // namespace

FriendResult readFriends(Database& database, int player, FriendNames& names)
{
    return transact(database,
                    [&](soci::session& sql)
                    {
                        list(sql, player, names);
                        return FriendResult::kDone;
                    });
}

FriendResult addFriend(Database& database, int player, const Text& name, const FriendTexts& own, FriendNames& names)
{
    return transact(database,
                    [&](soci::session& sql)
                    {
                        const int other = accountOf(sql, name);
                        if (other == 0)
                            return FriendResult::kUnknown;
                        if (areFriends(sql, player, other))
                            return FriendResult::kBefore;
                        list(sql, player, names);
                        if (names.size() >= kMostFriends)
                            return FriendResult::kFull;
                        sql << "INSERT INTO friends (account, friend) VALUES (:player, :other)", soci::use(player),
                            soci::use(other);
                        names.insert(name);
                        store(sql, player, own);
                        return FriendResult::kDone;
                    });
}

FriendResult removeFriend(Database& database, int player, const Text& name, FriendNames& names)
{
    return transact(database,
                    [&](soci::session& sql)
                    {
                        const int other = accountOf(sql, name);
                        if (!areFriends(sql, player, other))
                            return FriendResult::kNoFriend;
                        sql << "DELETE FROM friends WHERE account = :player AND friend = :other", soci::use(player),
                            soci::use(other);
                        list(sql, player, names);
                        return FriendResult::kDone;
                    });
}

FriendResult readFriend(Database& database, int player, const Text& name, int& account, FriendTexts& texts)
{
    return transact(database,
                    [&](soci::session& sql)
                    {
                        account = accountOf(sql, name);
                        if (!areFriends(sql, player, account))
                            return FriendResult::kNoFriend;
                        const soci::rowset<soci::row> rows =
                            (sql.prepare << "SELECT kind, words FROM friend_texts WHERE account = :account",
                             soci::use(account));
                        for (const soci::row& row : rows)
                            texts[row.get<int>(0)] = fromUtf8(row.get<std::string>(1));
                        return FriendResult::kDone;
                    });
}

FriendResult storeFriendTexts(Database& database, int player, const FriendTexts& own)
{
    return transact(database,
                    [&](soci::session& sql)
                    {
                        store(sql, player, own);
                        return FriendResult::kDone;
                    });
}

FriendResult sendToFriend(Database& database, int player, const Text& name, const Text& message)
{
    return transact(database,
                    [&](soci::session& sql)
                    {
                        const int receiver = accountOf(sql, name);
                        if (!areFriends(sql, player, receiver))
                            return FriendResult::kNoFriend;
                        const std::string words = toUtf8(message);
                        sql << "INSERT INTO friend_messages (receiver, words) VALUES (:receiver, :words)",
                            soci::use(receiver), soci::use(words);
                        sql << "DELETE FROM friend_messages WHERE receiver = :receiver AND id NOT IN (SELECT id FROM "
                               "friend_messages WHERE receiver = :same ORDER BY id DESC LIMIT "
                            << kFriendMessages << ")",
                            soci::use(receiver), soci::use(receiver);
                        return FriendResult::kDone;
                    });
}

FriendResult takeMessages(Database& database, int player, std::deque<Text>& messages)
{
    return transact(
        database,
        [&](soci::session& sql)
        {
            int last = 0;
            const soci::rowset<soci::row> rows =
                (sql.prepare << "SELECT id, words FROM friend_messages WHERE receiver = :player ORDER BY id",
                 soci::use(player));
            for (const soci::row& row : rows)
            {
                last = row.get<int>(0);
                messages.push_back(fromUtf8(row.get<std::string>(1)));
            }
            if (!messages.empty())
                sql << "DELETE FROM friend_messages WHERE receiver = :player AND id <= :last", soci::use(player),
                    soci::use(last);
            return FriendResult::kDone;
        });
}

} // namespace arena::platform

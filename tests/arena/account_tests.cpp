// What the account database promises to several platforms, with SQLite in a file.
#include "examples/arena/platform/audit.h"
#include "examples/arena/platform/catalogue.h"
#include "examples/arena/platform/database.h"
#include "examples/arena/platform/friend_book.h"
#include "examples/arena/platform/orders.h"
#include "examples/arena/platform/renewal.h"
#include "examples/arena/platform/schema.h"
#include "framework/time.h"
#include "playerdata/rule_constants.h"

#include <gtest/gtest.h>

#include <soci/sqlite3/soci-sqlite3.h>

#include <filesystem>

namespace
{

using namespace arena::platform;

class AccountStore : public testing::Test
{
protected:
    void SetUp() override
    {
        m_Folder = std::filesystem::temp_directory_path() /
                   ("arena_" + std::string(testing::UnitTest::GetInstance()->current_test_info()->name()));
        std::filesystem::remove_all(m_Folder);
        std::filesystem::create_directory(m_Folder);
    }
    void TearDown() override { std::filesystem::remove_all(m_Folder); }

    std::string getPath() const { return (m_Folder / "accounts.db").string(); }
    std::string getUrl() const { return "sqlite://" + getPath(); }
    // A change behind the back of the program.
    void change(const std::string& statement) const
    {
        soci::session sql(soci::sqlite3, "db=" + getPath());
        sql << statement;
    }

private:
    std::filesystem::path m_Folder;
};

// Opens an order for Ann, pays it and applies its bill.
std::string buyDiamonds(Accounts& accounts)
{
    Orders orders(accounts);
    StoredAccount ann;
    Order order;
    if (!accounts.find(L"Ann", ann) || !orders.open(ann.m_Id, L"first", L"diamonds-10", 100, order) ||
        !orders.pay(order.m_Number, 100) || orders.apply(order.m_Number) != Applied::kDone)
        return "";
    return order.m_Number;
}

} // namespace

TEST_F(AccountStore, TwoPlatformsNeverOverwriteEachOther)
{
    Database firstDatabase(getUrl());
    Database secondDatabase(getUrl());
    Accounts first(firstDatabase);
    Accounts second(secondDatabase);
    ASSERT_TRUE(first.create(L"Ann", "", nullptr, L"", *makeRecords()));
    StoredAccount here;
    StoredAccount there;
    ASSERT_TRUE(first.find(L"Ann", here));
    ASSERT_TRUE(second.find(L"Ann", there));
    goldOf(*here.m_Records) = 500;
    EXPECT_EQ(first.save(here), Saved::kDone);
    goldOf(*there.m_Records) = 7;
    EXPECT_EQ(second.save(there), Saved::kChanged);
    EXPECT_EQ(goldOf(*there.m_Records), 500) << "the records are those of the database again";
    goldOf(*there.m_Records) = 7;
    EXPECT_EQ(second.save(there), Saved::kDone);
}

TEST_F(AccountStore, AfterALoginElsewhereAnOlderOneCannotSave)
{
    Database database(getUrl());
    Accounts accounts(database);
    ASSERT_TRUE(accounts.create(L"Ann", "", nullptr, L"", *makeRecords()));
    StoredAccount older;
    StoredAccount newer;
    ASSERT_TRUE(accounts.find(L"Ann", older));
    ASSERT_TRUE(accounts.logIn(older.m_Id, "first", "1", older));
    ASSERT_TRUE(accounts.logIn(older.m_Id, "second", "2", newer));
    EXPECT_EQ(accounts.save(older), Saved::kLost);
    EXPECT_EQ(accounts.save(newer), Saved::kDone);
    const std::vector<std::pair<int, long long>> logins = accounts.findLogins("first");
    ASSERT_EQ(logins.size(), 1u);
    EXPECT_EQ(logins[0], std::make_pair(newer.m_Id, newer.m_Epoch));
    EXPECT_TRUE(accounts.findLogins("second").empty());
}

TEST_F(AccountStore, WholeRecordsComeBack)
{
    Database database(getUrl());
    Accounts accounts(database);
    const auto records = makeRecords();
    records->m_Account.m_Value3 = 33;
    records->m_Account.m_Allowance[6] = 66;
    records->m_Account.m_TrainingMap[3].m_BestScore = 85.5f;
    records->m_CombatData.m_CombatRating = 1500;
    ASSERT_TRUE(accounts.create(L"Ann", "a hash", identity::kPhone, L"4711", *records));
    StoredAccount ann;
    ASSERT_TRUE(accounts.findByIdentity(identity::kPhone, L"4711", ann));
    EXPECT_EQ(ann.m_Password, "a hash");
    EXPECT_EQ(ann.m_Records->m_Account.m_Value3, 33);
    EXPECT_EQ(ann.m_Records->m_Account.m_Allowance[6], 66);
    EXPECT_EQ(ann.m_Records->m_Account.m_TrainingMap[3].m_BestScore, 85.5f);
    EXPECT_EQ(ann.m_Records->m_CombatData.m_CombatRating, 1500);
    EXPECT_FALSE(accounts.create(L"Ann", "", nullptr, L"", *makeRecords())) << "the name is taken";
    EXPECT_FALSE(accounts.create(L"Ben", "", identity::kPhone, L"4711", *makeRecords())) << "the phone is taken";
}

TEST(Renewal, EnergyRefillsAfterItsPeriod)
{
    constexpr long long kNow = 1'700'000'000;
    zet::TestClock clock(kNow);
    const auto records = makeRecords();
    refillEnergy(*records);
    energyOf(*records) = 7;
    clock.setTime(kNow + g_EnergyFreeTime_VIP_0 - 60);
    refillEnergy(*records);
    EXPECT_EQ(energyOf(*records), 7);
    clock.setTime(kNow + g_EnergyFreeTime_VIP_0);
    refillEnergy(*records);
    EXPECT_EQ(energyOf(*records), g_EnergyMax_VIP_0);
    // More than refills stays.
    energyOf(*records) = g_EnergyMax_VIP_0 + 5;
    clock.setTime(kNow + 2LL * g_EnergyFreeTime_VIP_0);
    refillEnergy(*records);
    EXPECT_EQ(energyOf(*records), g_EnergyMax_VIP_0 + 5);
    records->m_GlobalData.m_VIPLevel = 51;
    clock.setTime(kNow + 3LL * g_EnergyFreeTime_VIP_0);
    refillEnergy(*records);
    EXPECT_EQ(energyOf(*records), g_EnergyMax_VIP_1);
}

TEST(Renewal, PlaysCountForADay)
{
    constexpr long long kDay = 86400;
    zet::TestClock clock(1'700'000'000);
    FGameTraining game;
    game.m_PlayTimes = 3;
    game.m_CDTime = 50.0f;
    game.m_LastPlayTime = zet::Time::getCurrent().convertToString(false);
    renewPlays(game);
    EXPECT_EQ(game.m_PlayTimes, 3);
    EXPECT_EQ(game.m_CDTime, 50.0f);
    clock.setTime(1'700'000'000 + kDay);
    renewPlays(game);
    EXPECT_EQ(game.m_PlayTimes, 0);
    EXPECT_EQ(game.m_CDTime, 0.0f);
    // A text without a day counts as another day.
    FGameKinect camera;
    camera.m_PlayTimes = 1;
    camera.m_LastPlayTime = L"";
    renewPlays(camera);
    EXPECT_EQ(camera.m_PlayTimes, 0);
}

TEST_F(AccountStore, AFailedDatabaseIsNotAMissingAccount)
{
    Database database(getUrl());
    Accounts accounts(database);
    ASSERT_TRUE(accounts.create(L"Ann", "", nullptr, L"", *makeRecords()));
    StoredAccount ann;
    ASSERT_TRUE(accounts.find(L"Ann", ann));
    StoredAccount ben;
    EXPECT_FALSE(accounts.find(L"Ben", ben));
    EXPECT_FALSE(database.hasFailed());
    change("ALTER TABLE accounts RENAME TO away");
    EXPECT_FALSE(accounts.find(L"Ann", ben));
    EXPECT_TRUE(database.hasFailed());
    EXPECT_FALSE(accounts.create(L"Ben", "", nullptr, L"", *makeRecords()));
    EXPECT_TRUE(database.hasFailed());
    EXPECT_EQ(accounts.save(ann), Saved::kUnreadable) << "no other login is the reason";
    change("ALTER TABLE away RENAME TO accounts");
    EXPECT_TRUE(accounts.find(L"Ann", ann));
    EXPECT_FALSE(database.hasFailed());
    EXPECT_EQ(accounts.save(ann), Saved::kDone);
}

TEST_F(AccountStore, ABillIsAppliedOnce)
{
    Database database(getUrl());
    Accounts accounts(database);
    Orders orders(accounts);
    ASSERT_TRUE(accounts.create(L"Ann", "", nullptr, L"", *makeRecords()));
    StoredAccount before;
    ASSERT_TRUE(accounts.find(L"Ann", before));
    const std::string number = buyDiamonds(accounts);
    ASSERT_FALSE(number.empty());
    EXPECT_TRUE(orders.pay(number, 100));
    EXPECT_EQ(orders.apply(number), Applied::kDone);
    StoredAccount after;
    ASSERT_TRUE(accounts.find(L"Ann", after));
    EXPECT_EQ(diamondsOf(*after.m_Records), 10);
    EXPECT_EQ(accounts.save(before), Saved::kChanged) << "a session elsewhere does not undo the bill";
    EXPECT_TRUE(audit(database, 0).m_Findings.empty());
}

TEST_F(AccountStore, AnOrderIsClosedAfterItsTimeUnlessItIsPaid)
{
    Database database(getUrl());
    Accounts accounts(database);
    Orders orders(accounts);
    ASSERT_TRUE(accounts.create(L"Ann", "", nullptr, L"", *makeRecords()));
    Order unpaid;
    Order paid;
    ASSERT_TRUE(orders.open(1, L"unpaid", L"diamonds-10", 100, unpaid));
    ASSERT_TRUE(orders.open(1, L"paid", L"diamonds-10", 100, paid));
    EXPECT_FALSE(orders.pay(paid.m_Number, 99)) << "another price";
    ASSERT_TRUE(orders.pay(paid.m_Number, 100));
    const long long later = 4102444800; // 2100
    EXPECT_FALSE(audit(database, later).m_Findings.empty());
    ASSERT_TRUE(orders.expire(later));
    ASSERT_TRUE(orders.find(unpaid.m_Number, unpaid));
    ASSERT_TRUE(orders.find(paid.m_Number, paid));
    EXPECT_EQ(unpaid.m_State, OrderState::kExpired);
    EXPECT_EQ(paid.m_State, OrderState::kOpen);
    EXPECT_FALSE(orders.pay(unpaid.m_Number, 100));
    ASSERT_EQ(orders.findPaid(), std::vector<std::string>{paid.m_Number});
    EXPECT_EQ(orders.apply(paid.m_Number), Applied::kDone);
    EXPECT_TRUE(audit(database, later).m_Findings.empty());
}

TEST_F(AccountStore, TheAuditFindsEachFault)
{
    for (const char* fault :
         {"DELETE FROM bills", "UPDATE orders SET state = 0", "UPDATE orders SET state = 2",
          "UPDATE orders SET price = 1", "DELETE FROM payments", "UPDATE bills SET version = 1000",
          "UPDATE bills SET diamonds = 11", "UPDATE accounts SET training = ''", "UPDATE accounts SET name = 'Eve'",
          "UPDATE accounts SET last_servers = '9|'", "UPDATE accounts SET ticket = 'x'",
          "UPDATE accounts SET version = 0", "UPDATE accounts SET account = x'00'"})
    {
        std::filesystem::remove(getPath());
        std::filesystem::remove(getPath() + "-wal");
        std::filesystem::remove(getPath() + "-shm");
        {
            Database database(getUrl());
            Accounts accounts(database);
            ASSERT_TRUE(accounts.create(L"Ann", "", nullptr, L"", *makeRecords()));
            ASSERT_FALSE(buyDiamonds(accounts).empty());
            ASSERT_TRUE(audit(database, 0).m_Findings.empty());
        }
        change(fault);
        Database database(getUrl());
        EXPECT_FALSE(audit(database, 0).m_Findings.empty()) << fault;
    }
}

TEST_F(AccountStore, FriendsOfTwoPlatformsFindEachOther)
{
    Database first(getUrl());
    Database second(getUrl());
    Accounts accounts(first);
    StoredAccount ann;
    StoredAccount ben;
    ASSERT_TRUE(accounts.create(L"Ann", "", nullptr, L"", *makeRecords()) && accounts.find(L"Ann", ann));
    ASSERT_TRUE(accounts.create(L"Ben", "", nullptr, L"", *makeRecords()) && accounts.find(L"Ben", ben));
    FriendNames names;
    EXPECT_EQ(addFriend(first, ann.m_Id, L"Cid", {}, names), FriendResult::kUnknown);
    EXPECT_EQ(sendToFriend(first, ann.m_Id, L"Ben", L"too early"), FriendResult::kNoFriend);
    EXPECT_EQ(addFriend(first, ann.m_Id, L"Ben", {{0, L"gold"}, {10, L"it\u00e9"}}, names), FriendResult::kDone);
    EXPECT_EQ(names, FriendNames{L"Ben"});
    EXPECT_EQ(addFriend(second, ann.m_Id, L"Ben", {}, names), FriendResult::kBefore);

    // One knows the other, and not yet the other way round.
    int account = 0;
    FriendTexts texts;
    EXPECT_EQ(readFriend(second, ben.m_Id, L"Ann", account, texts), FriendResult::kNoFriend);
    EXPECT_EQ(addFriend(second, ben.m_Id, L"Ann", {}, names), FriendResult::kDone);
    EXPECT_EQ(storeFriendTexts(first, ann.m_Id, {{0, L"silver"}}), FriendResult::kDone);
    EXPECT_EQ(readFriend(second, ben.m_Id, L"Ann", account, texts), FriendResult::kDone);
    EXPECT_EQ(account, ann.m_Id);
    EXPECT_EQ(texts, (FriendTexts{{0, L"silver"}, {10, L"it\u00e9"}}));

    // The latest messages wait, and are taken once.
    for (int i = 0; i <= kFriendMessages; ++i)
        EXPECT_EQ(sendToFriend(first, ann.m_Id, L"Ben", zet::formatText(L"%d", i)), FriendResult::kDone);
    std::deque<zet::String_T<wchar_t>> messages;
    EXPECT_EQ(takeMessages(second, ben.m_Id, messages), FriendResult::kDone);
    ASSERT_EQ(messages.size(), static_cast<size_t>(kFriendMessages));
    EXPECT_EQ(messages.front(), L"1");
    EXPECT_EQ(messages.back(), zet::formatText(L"%d", kFriendMessages));
    messages.clear();
    EXPECT_EQ(takeMessages(first, ben.m_Id, messages), FriendResult::kDone);
    EXPECT_TRUE(messages.empty());

    EXPECT_EQ(removeFriend(first, ann.m_Id, L"Ben", names), FriendResult::kDone);
    EXPECT_TRUE(names.empty());
    EXPECT_EQ(removeFriend(second, ann.m_Id, L"Ben", names), FriendResult::kNoFriend);
    EXPECT_EQ(readFriends(second, ben.m_Id, names), FriendResult::kDone);
    EXPECT_EQ(names, FriendNames{L"Ann"});

    for (int i = 0; i < static_cast<int>(kMostFriends); ++i)
    {
        const zet::String_T<wchar_t> name = zet::formatText(L"friend %d", i);
        ASSERT_TRUE(accounts.create(name, "", nullptr, L"", *makeRecords()));
        EXPECT_EQ(addFriend(first, ann.m_Id, name, {}, names), FriendResult::kDone);
    }
    EXPECT_EQ(addFriend(first, ann.m_Id, L"Ben", {}, names), FriendResult::kFull);
    change("DROP TABLE friends");
    EXPECT_EQ(readFriends(first, ann.m_Id, names), FriendResult::kFailed);
}

TEST_F(AccountStore, TablesOfAnyOlderVersionAreBroughtUpToDate)
{
    const auto& migrations = getMigrations();
    for (size_t version = 1; version <= migrations.size(); ++version)
    {
        std::filesystem::remove(getPath());
        {
            soci::session sql(soci::sqlite3, "db=" + getPath());
            sql << "CREATE TABLE schema_version (version INTEGER NOT NULL)";
            sql << "INSERT INTO schema_version (version) VALUES (" << static_cast<int>(version) << ")";
            for (size_t i = 0; i < version; ++i)
                for (std::string statement : migrations[i])
                {
                    for (const auto& [from, to] :
                         {std::pair("BYTES", "BLOB"), std::pair("NUMBERED", "INTEGER PRIMARY KEY")})
                        for (size_t at = statement.find(from); at != std::string::npos; at = statement.find(from))
                            statement.replace(at, std::string(from).size(), to);
                    sql << statement;
                }
        }
        Database database(getUrl());
        Accounts accounts(database);
        EXPECT_TRUE(accounts.create(L"Ann", "", nullptr, L"", *makeRecords())) << version;
        EXPECT_FALSE(buyDiamonds(accounts).empty()) << version;
    }
}

TEST_F(AccountStore, TablesOfANewerVersionAreNotTouched)
{
    {
        Database database(getUrl());
    }
    change("INSERT INTO schema_version (version) VALUES (1000)");
    EXPECT_THROW(Database database(getUrl()), std::exception);
    EXPECT_THROW(Database database("sqlite://" + getPath() + ".none", false), std::exception);
    EXPECT_THROW(Database database("mysql://there"), std::exception);
}

#include "examples/arena/player/pack_script.h"

#include "commands/billing.h"
#include "commands/login.h"
#include "commands/payment.h"
#include "examples/arena/player/billing_script.h"
#include "examples/arena/player/friend_script.h"
#include "examples/arena/player/home_script.h"
#include "examples/arena/player/match_script.h"
#include "examples/arena/player/pack_course.h"
#include "examples/arena/player/players.h"
#include "examples/arena/player/tools_script.h"
#include "examples/arena/player/wardrobe_script.h"
#include "examples/arena/protocol/platform_codes.h"
#include "packaging/data_packager.h"

#include <algorithm>
#include <list>

namespace arena::player
{

namespace
{

using Text = zet::String_T<wchar_t>;

constexpr wchar_t kPassword[] = L"a password";
constexpr std::chrono::milliseconds kPoll{10};
// Eight of them give the thousand diamonds that the features cost.
constexpr wchar_t kTrade[] = L"diamonds-130";
constexpr int kTrades = 8;

Text makeId()
{
    zet::Uuid id;
    zet::uuid_create(id);
    return idText(id);
}

// The platform makes an account that it does not know.
host::Task logIn(PackAccount& player, PackClient&)
{
    CCmdBaseLogin login;
    login.m_Texts[protocol::kLoginName] = player.getName();
    login.m_Texts[protocol::kLoginPassword] = kPassword;
    const auto reply = co_await host::ask<CCmdLoginSuccess, CCmdLoginFail>(player.getSocket(), login, kPatience);
    if (const auto* const success = std::get_if<CCmdLoginSuccess>(&reply))
    {
        player.getAccount().m_Account = success->m_Account;
        player.getAccount().m_GlobalData = success->m_GlobalData;
    }
    else
        player.fail("no login");
}

host::Task buyDiamonds(PackAccount& player, PackClient&)
{
    for (int i = 0; i < kTrades; ++i)
    {
        CCmdOrderRequest order;
        order.m_Text1 = kTrade;
        order.m_Text2 = makeId();
        const auto ordered = co_await host::ask<CCmdOrderReturn>(player.getSocket(), order, kPatience);
        const auto* const opened = std::get_if<CCmdOrderReturn>(&ordered);
        if (!opened || opened->m_Value1 != protocol::kDone)
        {
            player.fail("no order");
            co_return;
        }
        CCmdPayPrice price;
        price.m_Value1 = opened->m_Value2;
        const auto paid = co_await host::ask<CCmdBillSuccess, CCmdBillFail>(player.getSocket(), price, kPatience);
        const auto* const success = std::get_if<CCmdBillSuccess>(&paid);
        if (!success)
        {
            player.fail("no bill");
            co_return;
        }
        player.getAccount().m_GlobalData = success->m_GlobalData;
    }
}

template <class Record>
bool areEqual(const Record& one, const Record& other)
{
    // A packager is 64 KiB, which is too much for a stack.
    const auto bytes = std::make_unique<CDataPackager>();
    const auto otherBytes = std::make_unique<CDataPackager>();
    return one.Write(bytes.get()) && other.Write(otherBytes.get()) &&
           bytes->GetDataSize() == otherBytes->GetDataSize() &&
           std::equal(bytes->GetBuffer(), bytes->GetBuffer() + bytes->GetDataSize(), otherBytes->GetBuffer());
}

// The records after a new login are the last ones that the course got.
host::Task checkRecords(PackAccount& player, PackClient& packs, CAccount& last)
{
    expect(player, areEqual(player.getAccount().m_GlobalData, last.m_GlobalData), "the global record is kept");
    const HomePack_LoadData_Request loadHome;
    const auto home = co_await host::askPack<HomePack_LoadData_Reply>(packs.m_Home, player.getSocket(),
                                                                      packs.sent(player, loadHome), kPatience);
    if (const auto* const loaded = packs.received(player, home))
        expect(player, areEqual(loaded->m_HomeData, last.m_HomeData), "the home record is kept");
    const TravelWorldPack_LoadData_Request loadTravel;
    const auto travel = co_await host::askPack<TravelWorldPack_LoadData_Reply>(
        packs.m_Travel, player.getSocket(), packs.sent(player, loadTravel), kPatience);
    if (const auto* const loaded = packs.received(player, travel))
        expect(player, areEqual(loaded->m_TravelData, last.m_TravelData), "the travel record is kept");
}

std::vector<PackCourse::Script> makeCourse(const Text& friendName)
{
    return {playUnknown, logIn, buyDiamonds,
            [friendName](PackAccount& player, PackClient& packs) { return playFriends(player, packs, friendName); },
            playTravel, playAchievements, playChangingRoom, playAvatar, playInPurchase, playWizard, playWorldSquare,
            playBestFamily, playTeams, playStamps, playMeet, playSeasons, playProfiling, playMonitoring, playQueryTool,
            playSocial,
            // Last, since it spends all diamonds.
            playHome};
}

bool isAnyInterrupted(std::list<PackCourse>& courses)
{
    return std::any_of(courses.begin(), courses.end(),
                       [](PackCourse& course) { return course.getAccount().isInterrupted(); });
}

// False as soon as one of them is interrupted: the others wait for what it does.
bool goOn(std::list<PackCourse>& courses)
{
    bool isGoing = false;
    for (PackCourse& course : courses)
        isGoing = course.goOn() || isGoing;
    return isGoing && !isAnyInterrupted(courses);
}

} // namespace

bool installPacks(Players& players)
{
    return installOrders(players) && players.share<PackClient>().install(players);
}

host::Task playPacks(Player& player)
{
    PackClient& packs = player.getPlayers().share<PackClient>();
    const Text& operatorName = player.getPlayers().getOptions().m_Operator;
    const Text id = makeId().getSubString(0, 16);
    const Text name = L"pack-" + id;
    const Text friendName = L"friend-" + id;

    std::list<PackCourse> courses;
    PackCourse& main = courses.emplace_back(player, packs, name, makeCourse(friendName));
    courses.emplace_back(player, packs, friendName,
                         std::vector<PackCourse::Script>{logIn, [name](PackAccount& account, PackClient& all)
                                                         { return playFriends(account, all, name); }});
    if (player.getNumber() == 0 && !operatorName.isEmpty())
        courses.emplace_back(player, packs, operatorName,
                             std::vector<PackCourse::Script>{logIn, playMonitoring, playQueryTool});
    while (goOn(courses))
        co_await host::sleep(kPoll);
    if (!isAnyInterrupted(courses))
    {
        // Ends the login of the first course.
        CAccount& last = main.getAccount().getAccount();
        PackCourse& check = courses.emplace_back(
            player, packs, name, std::vector<PackCourse::Script>{logIn, [&last](PackAccount& account, PackClient& all) {
                                                                     return checkRecords(account, all, last);
                                                                 }});
        while (check.goOn())
            co_await host::sleep(kPoll);
        if (!check.getAccount().isInterrupted())
        {
            player.note("packs done");
            co_return;
        }
    }
    // Each connection may be to another server than the player's own.
    player.note("a connection for packs has ended");
    player.interrupt();
}

} // namespace arena::player

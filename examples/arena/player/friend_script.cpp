#include "examples/arena/player/friend_script.h"

namespace arena::player
{

using host::askPack;
using namespace std::chrono_literals;

namespace
{

// How the friend service refuses a request.
bool isRefusal(const zet::String_T<wchar_t>& text)
{
    return text[0] == L'!';
}

// How often a player looks whether its friend has come, every 50 ms.
constexpr int kLooks = 1200;

} // namespace

host::Task playFriends(PackAccount& player, PackClient& packs, zet::String_T<wchar_t> friendName)
{
    FriendPacks& friends = packs.m_Friends;
    CCommandSocket& socket = player.getSocket();

    const RequestFor<FriendSystemPack_SelfIdRespond> whoAmI;
    const auto identity =
        co_await askPack<FriendSystemPack_SelfIdRespond>(friends, socket, packs.sent(player, whoAmI), kPatience);
    if (const auto* const self = packs.received(player, identity))
        expect(player, !self->m_Text1.isEmpty(), "a player has a number");
    const FriendSystemPack_FriendLimitRequest askLimit;
    const auto limiting =
        co_await askPack<FriendSystemPack_FriendLimitRespond>(friends, socket, packs.sent(player, askLimit), kPatience);
    if (const auto* const limit = packs.received(player, limiting))
        expect(player, !limit->m_Text1.isEmpty(), "the list has a limit");

    FriendSystemPack_FriendAddRequest add;
    add.m_Text1 = player.getName();
    add.m_Text2 = player.getName();
    const auto oneself =
        co_await askPack<FriendSystemPack_FriendListReply>(friends, socket, packs.sent(player, add), kPatience);
    if (const auto* const list = packs.received(player, oneself))
        expect(player, isRefusal(list->m_Text1), "a player is no friend of itself");

    // A friend can be added as soon as it has an account.
    add.m_Text2 = friendName;
    bool isAdded = false;
    for (int i = 0; i < kLooks && !isAdded; ++i)
    {
        const auto reply =
            co_await askPack<FriendSystemPack_FriendListReply>(friends, socket, packs.sent(player, add), kPatience);
        const auto* const list = packs.received(player, reply);
        if (!list || player.isInterrupted())
            co_return;
        isAdded = !isRefusal(list->m_Text1);
        if (!isAdded)
            co_await host::sleep(50ms);
    }
    expect(player, isAdded, "the friend is added");

    // Again, with information: first refused, then, after it was deleted, added with it.
    FriendSystemPack_FriendAddWithInfoRequest addWithInfo;
    addWithInfo.m_Text2 = friendName;
    addWithInfo.m_Text4 = L"plays " + player.getName();
    FriendSystemPack_FriendDeleteRequest remove;
    remove.m_Text2 = friendName;
    for (int i = 0; i < 2; ++i)
    {
        const auto adding = co_await askPack<FriendSystemPack_FriendListReply>(
            friends, socket, packs.sent(player, addWithInfo), kPatience);
        if (const auto* const list = packs.received(player, adding))
        {
            if (i == 0)
                expectRefused(player, isRefusal(list->m_Text1) ? list->m_Text1 : L"", "a friend a second time");
            else
                expect(player, list->m_Text1 == friendName + L"|", "the list has the friend");
        }
        if (i == 1)
            break;
        const auto removing =
            co_await askPack<FriendSystemPack_FriendListReply>(friends, socket, packs.sent(player, remove), kPatience);
        if (const auto* const list = packs.received(player, removing))
            expect(player, list->m_Text1.isEmpty(), "the list is empty after the friend was deleted");
    }
    const RequestFor<FriendSystemPack_FriendListReply> askList;
    const auto listing =
        co_await askPack<FriendSystemPack_FriendListReply>(friends, socket, packs.sent(player, askList), kPatience);
    if (const auto* const list = packs.received(player, listing))
        expect(player, list->m_Text1 == friendName + L"|", "the list keeps the friend");

    // What a player shows, and what a friend sees.
    FriendSystemPack_SetSelfPrestige prestige;
    prestige.m_Text1 = L"7";
    FriendSystemPack_SetSelfVip vip;
    vip.m_Text1 = L"51";
    FriendSystemPack_SelfMomentMsgRequest moment;
    moment.m_Text1 = player.getName();
    moment.m_Text2 = L"on the track";
    FriendSystemPack_SendMsgRequest message;
    message.m_Text1 = friendName;
    message.m_Text2 = L"hello";
    expect(player,
           friends.send(socket, packs.sent(player, prestige)) && friends.send(socket, packs.sent(player, vip)) &&
               friends.send(socket, packs.sent(player, moment)) && friends.send(socket, packs.sent(player, message)),
           "messages without a reply are sent");
    FriendSystemPack_FriendInfoRequest askInfo;
    askInfo.m_Text1 = friendName;
    const auto informing =
        co_await askPack<FriendSystemPack_FriendInfoRespond>(friends, socket, packs.sent(player, askInfo), kPatience);
    if (const auto* const info = packs.received(player, informing))
        expect(player, info->m_Text1 == friendName, "the information is the friend's");
    FriendSystemPack_BasicFriendInfoRequest askBasic;
    askBasic.m_Text1 = friendName;
    for (int i = 0; i < 2; ++i)
    {
        const auto reply = co_await askPack<FriendSystemPack_BasicFriendInfoRespond>(
            friends, socket, packs.sent(player, askBasic), kPatience);
        if (const auto* const info = packs.received(player, reply))
        {
            if (i == 0)
                expect(player, info->m_Text1 == friendName, "the basic information is the friend's");
            else
                expectRefused(player, isRefusal(info->m_Text1) ? info->m_Text1 : L"", "information on a stranger");
        }
        askBasic.m_Text1 = L"a stranger";
    }

    // The friend does the same, so a message comes back.
    bool isFound = false;
    for (int i = 0; i < kLooks && !isFound; ++i)
    {
        const FriendSystemPack_FetchMsgRequest fetch;
        const auto reply =
            co_await askPack<FriendSystemPack_FetchMsgRespond>(friends, socket, packs.sent(player, fetch), kPatience);
        const auto* const fetched = packs.received(player, reply);
        if (!fetched || player.isInterrupted())
            co_return;
        isFound = fetched->m_Text2 == friendName + L"|hello";
        if (!isFound)
            co_await host::sleep(50ms);
    }
    expect(player, isFound, "the friend's message is there");
    const FriendSystemPack_FetchOfficalMsgRequest fetchOffical;
    const auto official = co_await askPack<FriendSystemPack_FetchOfficalMsgRespond>(
        friends, socket, packs.sent(player, fetchOffical), kPatience);
    if (const auto* const fetched = packs.received(player, official))
        expect(player, !fetched->m_Text2.isEmpty(), "the operator has written");
}

host::Task playWorldSquare(PackAccount& player, PackClient& packs)
{
    WorldSquarePacks& square = packs.m_WorldSquare;
    CCommandSocket& socket = player.getSocket();
    using Info = host::PackAnswer<WorldSquarePack_PlayerInfo>;
    using Data = host::PackAnswer<WorldSquarePack_TransmisData>;

    const WorldSquarePack_Logout_Request leave;
    const WorldSquarePack_Login_Request enter;
    const auto early =
        co_await askPack<WorldSquarePack_Logout_Reply>(square, socket, packs.sent(player, leave), kPatience);
    if (const auto* const left = packs.received(player, early))
        expectRefused(player, left->m_Msg, "leaving a square that was not entered");
    for (int i = 0; i < 2; ++i)
    {
        const auto reply =
            co_await askPack<WorldSquarePack_Login_Reply>(square, socket, packs.sent(player, enter), kPatience);
        if (const auto* const entered = packs.received(player, reply))
        {
            if (i == 0)
                expectDone(player, entered->m_Msg, "entering the square");
            else
                expectRefused(player, entered->m_Msg, "entering the square twice");
        }
    }
    // What a player says comes back to all in the square.
    WorldSquarePack_PlayerInfo info;
    info.m_Text1 = L"another name";
    info.m_Text2 = L"here I am";
    const auto informing = co_await host::ask<Info>(
        socket, host::packed<CCmdWorldSquarePackRequest>(square, packs.sent(player, info)), kPatience);
    if (const auto* const shown = packs.received(player, informing))
        expect(player, !(shown->m_Text1 == info.m_Text1) && shown->m_Text2 == info.m_Text2,
               "the name of a player is that of its account");
    WorldSquarePack_TransmisData data;
    data.m_Text1 = L"a dance";
    const auto transmitting = co_await host::ask<Data>(
        socket, host::packed<CCmdWorldSquarePackRequest>(square, packs.sent(player, data)), kPatience);
    if (const auto* const shown = packs.received(player, transmitting))
        expect(player, !shown->m_Text1.isEmpty(), "the data are transmitted");
    const auto late =
        co_await askPack<WorldSquarePack_Logout_Reply>(square, socket, packs.sent(player, leave), kPatience);
    if (const auto* const left = packs.received(player, late))
        expectDone(player, left->m_Msg, "leaving the square");
}

host::Task playWizard(PackAccount& player, PackClient& packs)
{
    WizardPacks& wizard = packs.m_Wizard;
    CCommandSocket& socket = player.getSocket();

    const WizardPack_Login_Request enter;
    for (int i = 0; i < 2; ++i)
    {
        const auto reply =
            co_await askPack<WizardPack_Login_Reply>(wizard, socket, packs.sent(player, enter), kPatience);
        if (const auto* const entered = packs.received(player, reply))
        {
            if (i == 0)
                expectDone(player, entered->m_Msg, "entering the wizard's game");
            else
                expectRefused(player, entered->m_Msg, "entering the wizard's game twice");
        }
    }
    WizardPack_GoWar_Request war;
    war.m_Value1 = 1;
    war.m_Numbers = {3, 1, 2};
    expect(player, wizard.send(socket, packs.sent(player, war)), "a war is sent");
    const WizardPack_Logout_Request leave;
    for (int i = 0; i < 2; ++i)
    {
        const auto reply =
            co_await askPack<WizardPack_Logout_Reply>(wizard, socket, packs.sent(player, leave), kPatience);
        if (const auto* const left = packs.received(player, reply))
        {
            if (i == 0)
                expectDone(player, left->m_Msg, "leaving after a war");
            else
                expectRefused(player, left->m_Msg, "leaving the wizard's game twice");
        }
    }
}

} // namespace arena::player

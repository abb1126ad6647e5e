#include "examples/arena/player/wardrobe_script.h"

#include <algorithm>
#include <random>

namespace arena::player
{

using host::askPack;

namespace
{

bool has(const std::vector<int>& numbers, int number)
{
    return std::find(numbers.begin(), numbers.end(), number) != numbers.end();
}

} // namespace

host::Task playAchievements(PackAccount& player, PackClient& packs)
{
    AchievementPacks& achievements = packs.m_Achievements;
    CCommandSocket& socket = player.getSocket();

    AchievementPack_GetAllAchievement_Request list;
    const auto listing = co_await askPack<AchievementPack_GetAllAchievement_Reply>(achievements, socket,
                                                                                   packs.sent(player, list), kPatience);
    const auto* const all = packs.received(player, listing);
    if (!all || all->m_Achievements.empty())
    {
        player.fail("no achievements");
        co_return;
    }
    const bool wasReached = all->m_Achievements.begin()->second.m_AchieveFlag0;
    AchievementPack_SendAchievement_Request reach;
    reach.m_Value1 = all->m_Achievements.begin()->first;
    reach.m_Value2 = all->m_Achievements.begin()->second.m_AchieveValue2;

    AchievementPack_StartGame_Request start;
    start.m_Value1 = 1;
    for (int i = 0; i < 2; ++i)
    {
        const auto reply = co_await askPack<AchievementPack_StartGame_Reply>(achievements, socket,
                                                                             packs.sent(player, start), kPatience);
        if (const auto* const started = packs.received(player, reply))
        {
            if (i == 0)
            {
                expectDone(player, started->m_Msg, "starting a game");
                expect(player, started->m_Behaviours.size() == 1 && !started->m_Achievements.empty(),
                       "a game begins with achievements and behaviours");
            }
            else
                expectRefused(player, started->m_Msg, "a second game at once");
        }
    }
    // It is reached once; the notice of it precedes the reply.
    for (int i = 0; i < 2; ++i)
    {
        const auto reply = co_await askPack<AchievementPack_SendAchievement_Reply>(
            achievements, socket, packs.sent(player, reach), kPatience);
        if (const auto* const reached = packs.received(player, reply))
        {
            if (i == 0 && !wasReached)
            {
                expectDone(player, reached->m_Msg, "reaching an achievement");
                expect(player,
                       reached->m_Achievements.size() == 1 && reached->m_Achievements.begin()->second.m_AchieveFlag0,
                       "the achievement is reached");
            }
            else
                expectRefused(player, reached->m_Msg, "reaching an achievement twice");
        }
    }
    AchievementPack_EndGame_Request end;
    end.m_Value1 = 1;
    for (int i = 0; i < 2; ++i)
    {
        const auto reply =
            co_await askPack<AchievementPack_EndGame_Reply>(achievements, socket, packs.sent(player, end), kPatience);
        if (const auto* const ended = packs.received(player, reply))
        {
            if (i == 0)
                expectDone(player, ended->m_Msg, "ending a game");
            else
                expectRefused(player, ended->m_Msg, "ending a game twice");
        }
    }
    list.m_Numbers = {reach.m_Value1};
    for (int i = 0; i < 2; ++i)
    {
        const auto reply = co_await askPack<AchievementPack_GetAllAchievement_Reply>(
            achievements, socket, packs.sent(player, list), kPatience);
        if (const auto* const one = packs.received(player, reply))
        {
            if (i == 0)
                expect(player, one->m_Achievements.size() == 1 && one->m_Achievements.begin()->second.m_AchieveFlag0,
                       "the reached achievement comes back");
            else
                expectRefused(player, one->m_Msg, "an achievement that does not exist");
        }
        list.m_Numbers = {-1};
    }
}

host::Task playChangingRoom(PackAccount& player, PackClient& packs)
{
    ChangingRoomPacks& room = packs.m_ChangingRoom;
    CCommandSocket& socket = player.getSocket();
    constexpr int kPiece = 3;

    ChangingRoomPack_BuyEquipRequest buy;
    buy.m_Value1 = kPiece;
    for (int i = 0; i < 2; ++i)
    {
        const auto reply =
            co_await askPack<ChangingRoomPack_BuyEquipReply>(room, socket, packs.sent(player, buy), kPatience);
        if (const auto* const bought = packs.received(player, reply); bought && i == 1)
            expectRefused(player, bought->m_Msg, "buying a piece twice");
    }
    ChangingRoomPack_LuckDrawEquipRequest draw;
    draw.m_Value1 = 1;
    int drawn = 0;
    for (int i = 0; i < 2; ++i)
    {
        const auto reply =
            co_await askPack<ChangingRoomPack_LuckDrawEquipReply>(room, socket, packs.sent(player, draw), kPatience);
        if (const auto* const result = packs.received(player, reply))
        {
            if (i == 0)
                drawn = result->m_Value1;
            else
                expectRefused(player, result->m_Msg, "drawing from a row that does not exist");
        }
        draw.m_Value1 = -1;
    }
    ChangingRoomPack_UpdateEquipRequest wear;
    wear.m_Value1 = 2;
    wear.m_Equip.m_Value1 = kPiece;
    wear.m_Equip.m_Part1.m_Value1 = 0.5f;
    for (int i = 0; i < 2; ++i)
    {
        const auto reply =
            co_await askPack<ChangingRoomPack_UpdateEquipReply>(room, socket, packs.sent(player, wear), kPatience);
        if (const auto* const worn = packs.received(player, reply))
        {
            expect(player, worn->m_Flag1 == (i == 0), "only what is owned can be worn");
            if (i == 1)
                expectRefused(player, worn->m_Msg, "wearing what is not owned");
        }
        wear.m_Equip.m_Value1 = 1000;
    }
    const ChangingRoomPack_LoadUserDataRequest load;
    const auto loading =
        co_await askPack<ChangingRoomPack_LoadUserDataReply>(room, socket, packs.sent(player, load), kPatience);
    if (const auto* const loaded = packs.received(player, loading))
    {
        expect(player, has(loaded->m_Owned, kPiece), "the bought piece is owned");
        expect(player, drawn > 0 && has(loaded->m_Owned, drawn), "the drawn piece is owned");
        expect(player,
               loaded->m_ChangingRoomEquips[2].m_Value1 == kPiece &&
                   loaded->m_ChangingRoomEquips[2].m_Part1.m_Value1 == 0.5f,
               "the look comes back");
    }
}

host::Task playAvatar(PackAccount& player, PackClient& packs)
{
    VoidDataPacks& avatar = packs.m_VoidData;
    CCommandSocket& socket = player.getSocket();

    CmdAvatarBuyDataRequest buy;
    buy.m_Items = {1, 2};
    for (int i = 0; i < 2; ++i)
    {
        const auto reply = co_await askPack<CmdAvatarBuyDataReply>(avatar, socket, packs.sent(player, buy), kPatience);
        if (const auto* const bought = packs.received(player, reply); bought && i == 1)
            expectRefused(player, bought->m_Msg, "buying wearables twice");
    }
    CmdAvatarSaveDataRequest save;
    save.m_Map1[0] = 2;
    for (int i = 0; i < 2; ++i)
    {
        const auto reply =
            co_await askPack<CmdAvatarSaveDataReply>(avatar, socket, packs.sent(player, save), kPatience);
        if (const auto* const saved = packs.received(player, reply))
        {
            if (i == 0)
                expectDone(player, saved->m_Msg, "putting on a wearable");
            else
                expectRefused(player, saved->m_Msg, "putting on a wearable that is not owned");
        }
        save.m_Map1[1] = 9;
    }
    const CmdAvatarLoadDataRequest load;
    const auto loading = co_await askPack<CmdAvatarLoadDataReply>(avatar, socket, packs.sent(player, load), kPatience);
    if (const auto* const loaded = packs.received(player, loading))
        expect(player,
               has(loaded->m_Owned, 1) && has(loaded->m_Owned, 2) && loaded->m_Map1 == std::map<int, int>{{0, 2}} &&
                   !loaded->m_CmdAvatarItems1.empty(),
               "the avatar comes back");
}

host::Task playInPurchase(PackAccount& player, PackClient& packs)
{
    InPurchasePacks& purchase = packs.m_InPurchase;
    CCommandSocket& socket = player.getSocket();

    const InPurchasePack_CheckIfOpenInPurchase_Request ask;
    const auto opening = co_await askPack<InPurchasePack_CheckIfOpenInPurchase_Reply>(
        purchase, socket, packs.sent(player, ask), kPatience);
    const auto* const open = packs.received(player, opening);
    if (!open)
        co_return;
    expectDone(player, open->m_Text1, "asking for the goods");
    const zet::String_T<wchar_t> good = open->m_Text2.getSubString(0, open->m_Text2.find(L'|', 0));

    // An order is saved once; it is open until the payment is reported.
    std::random_device random;
    InPurchasePack_SaveOrderId_Request order;
    order.m_Text1.format(L"order-%08x%08x", random(), random());
    order.m_Text2 = good;
    for (int i = 0; i < 2; ++i)
    {
        const auto reply =
            co_await askPack<InPurchasePack_SaveOrderId_Reply>(purchase, socket, packs.sent(player, order), kPatience);
        if (const auto* const saved = packs.received(player, reply))
        {
            if (i == 0)
                expectDone(player, saved->m_Msg, "saving an order");
            else
                expectRefused(player, saved->m_Msg, "saving an order twice");
        }
    }
    InPurchasePack_SendBuySuccessMessage_Request paid;
    paid.m_Text1 = order.m_Text1;
    // Reported twice, given once.
    for (int i = 0; i < 2; ++i)
        expect(player, purchase.send(socket, packs.sent(player, paid)), "a payment is reported");
    InPurchasePack_GetCheckResult_Request check;
    check.m_Text1 = order.m_Text1;
    for (int i = 0; i < 2; ++i)
    {
        const auto reply = co_await askPack<InPurchasePack_GetCheckResult_Reply>(purchase, socket,
                                                                                 packs.sent(player, check), kPatience);
        if (const auto* const result = packs.received(player, reply))
        {
            if (i == 0)
                expect(player, result->m_Text1.isEmpty() && result->m_Text3 == L"paid" && result->m_Text4 == good,
                       "the order is paid");
            else
                expectRefused(player, result->m_Text1, "the state of another player's order");
        }
        check.m_Text1 = L"another order";
    }

    // The good becomes a code, once, since there is one; the code becomes the good again, once.
    InPurchasePack_CreateAndSaveFCode_Request create;
    create.m_Text1 = good;
    zet::String_T<wchar_t> code;
    for (int i = 0; i < 2; ++i)
    {
        const auto reply = co_await askPack<InPurchasePack_CreateAndSaveFCode_Reply>(
            purchase, socket, packs.sent(player, create), kPatience);
        if (const auto* const created = packs.received(player, reply))
        {
            if (i == 0)
            {
                expectDone(player, created->m_Text1, "making a code");
                code = created->m_Text2;
            }
            else
                expectRefused(player, created->m_Text1, "making a code of a good that is not in the bag");
        }
    }
    InPurchasePack_CheckAuthorizationCode_Request checkCode;
    checkCode.m_Text1 = code;
    InPurchasePack_UseFCode_Request use;
    use.m_Text1 = code;
    for (int i = 0; i < 2; ++i)
    {
        const auto checking = co_await askPack<InPurchasePack_CheckAuthorizationCode_Reply>(
            purchase, socket, packs.sent(player, checkCode), kPatience);
        const auto* const valid = packs.received(player, checking);
        const auto using_ =
            co_await askPack<InPurchasePack_UseFCode_Reply>(purchase, socket, packs.sent(player, use), kPatience);
        const auto* const used = packs.received(player, using_);
        if (!valid || !used)
            co_return;
        if (i == 0)
        {
            expectDone(player, valid->m_Msg, "a new code is valid");
            expectDone(player, used->m_Msg, "using a code");
        }
        else
        {
            expectRefused(player, valid->m_Msg, "a used code");
            expectRefused(player, used->m_Msg, "using a code twice");
        }
    }
    const RequestFor<InPurchasePack_GetFCodeList_Reply> askList;
    const auto listing =
        co_await askPack<InPurchasePack_GetFCodeList_Reply>(purchase, socket, packs.sent(player, askList), kPatience);
    if (const auto* const list = packs.received(player, listing))
    {
        const auto& rows = list->m_InPurchaseFCodeRows;
        expect(player,
               std::any_of(rows.begin(), rows.end(),
                           [&](const InPurchaseFCodeRow& row) { return row.m_Text1 == code && row.m_Value1 == 1; }),
               "the list has the used code");
    }
}

} // namespace arena::player

#include "examples/arena/player/home_script.h"

namespace arena::player
{

using host::askPack;

host::Task playUnknown(PackAccount& player, PackClient& packs)
{
    const HomePack_LoadData_Request load;
    const auto reply = co_await askPack<HomePack_LoadData_Reply>(packs.m_Home, player.getSocket(),
                                                                 packs.sent(player, load), kPatience);
    if (const auto* const refused = packs.received(player, reply))
        expectRefused(player, refused->m_Msg, "loading the home before the login");
}

host::Task playHome(PackAccount& player, PackClient& packs)
{
    HomePacks& home = packs.m_Home;
    CCommandSocket& socket = player.getSocket();
    CAccount& account = player.getAccount();

    // The load says whether the daily reset is due; a second one on the same day is refused.
    HomePack_LoadData_Request load;
    const auto loaded = co_await askPack<HomePack_LoadData_Reply>(home, socket, packs.sent(player, load), kPatience);
    const auto* const state = packs.received(player, loaded);
    if (!state)
        co_return;
    expectDone(player, state->m_Msg, "loading the home");
    account.m_HomeData = state->m_HomeData;
    const bool isDue = state->m_Flag1;
    for (int i = 0; i < 2; ++i)
    {
        const HomePack_ClearDaily_Request clear;
        const auto reply =
            co_await askPack<HomePack_ClearDaily_Reply>(home, socket, packs.sent(player, clear), kPatience);
        if (const auto* const cleared = packs.received(player, reply))
        {
            if (i == 0 && isDue)
                expectDone(player, cleared->m_Text1, "the daily reset");
            else
                expectRefused(player, cleared->m_Text1, "a second daily reset");
            account.m_HomeData = cleared->m_HomeData;
            expect(player, i > 0 || !isDue || account.m_HomeData.m_RushLife == account.m_HomeData.m_MaxRushLife,
                   "the daily reset gives all lives");
        }
    }

    // A stage costs a life; only one is played at a time. Stages are played until no life is left.
    const int lives = account.m_HomeData.m_RushLife;
    for (int i = 0; i <= lives; ++i)
    {
        HomePack_StartGame_Request start;
        start.m_Value1 = 1;
        const auto started =
            co_await askPack<HomePack_StartGame_Reply>(home, socket, packs.sent(player, start), kPatience);
        const auto* const begun = packs.received(player, started);
        if (!begun)
            co_return;
        account.m_HomeData = begun->m_HomeData;
        if (i == lives)
        {
            expectRefused(player, begun->m_Msg, "a stage without a life");
            break;
        }
        expectDone(player, begun->m_Msg, "starting a stage");
        expect(player, account.m_HomeData.m_RushLife == lives - i - 1, "a stage costs a life");
        const auto again =
            co_await askPack<HomePack_StartGame_Reply>(home, socket, packs.sent(player, start), kPatience);
        if (const auto* const second = packs.received(player, again))
            expectRefused(player, second->m_Msg, "a second stage at once");

        HomePack_EndGame_Request end;
        end.m_Value1 = 1;
        end.m_Flag1 = true;
        end.m_Float1 = 12.5f;
        const auto ended = co_await askPack<HomePack_EndGame_Reply>(home, socket, packs.sent(player, end), kPatience);
        if (const auto* const result = packs.received(player, ended))
        {
            expectDone(player, result->m_Msg, "ending a stage");
            expect(player, result->m_Value2 == result->m_HomeData.m_DailyValue0 && result->m_Value2 > 0,
                   "the won stage is counted");
            account.m_HomeData = result->m_HomeData;
        }
    }
    HomePack_EndGame_Request unplayed;
    unplayed.m_Value1 = 1;
    const auto ended = co_await askPack<HomePack_EndGame_Reply>(home, socket, packs.sent(player, unplayed), kPatience);
    if (const auto* const result = packs.received(player, ended))
        expectRefused(player, result->m_Msg, "the end of a stage that is not played");

    // The day's reward, once.
    const int rewards = account.m_HomeData.m_DailyValue1;
    for (int i = 0; i < 2; ++i)
    {
        const HomePack_DirectReWard_Request take;
        const auto reply =
            co_await askPack<HomePack_DirectReWard_Reply>(home, socket, packs.sent(player, take), kPatience);
        if (const auto* const taken = packs.received(player, reply))
        {
            if (i == 0 && rewards == 0)
                expectDone(player, taken->m_Msg, "the reward of the day");
            else
                expectRefused(player, taken->m_Msg, "a second reward");
            expect(player, taken->m_Value1 > 0 && taken->m_Account.m_ItemList.size() > 0, "the reward is in the bag");
            account.m_Account.m_ItemList = taken->m_Account.m_ItemList;
            account.m_HomeData = taken->m_HomeData;
        }
    }

    // Lives and a jump off are bought for diamonds, at the prices of the record, as long as there are any.
    const HomePack_UnlockGame_Request unlock;
    const int price = account.m_HomeData.GetHomeRushUnlockPrice();
    const auto unlocking =
        co_await askPack<HomePack_UnlockGame_Reply>(home, socket, packs.sent(player, unlock), kPatience);
    if (const auto* const unlocked = packs.received(player, unlocking))
    {
        expect(player, unlocked->m_Value1 == price, "the price of an unlocking is that of the record");
        expect(player, unlocked->m_Msg.isEmpty() == (unlocked->m_HomeData.m_RushLife == 1), "a bought life is there");
        account.m_HomeData = unlocked->m_HomeData;
        account.m_GlobalData = unlocked->m_GlobalData;
    }
    constexpr int kMostJumps = 20;
    bool isRefused = false;
    for (int i = 0; i < kMostJumps && !isRefused; ++i)
    {
        const HomePack_JumpOff_Request jump;
        const int cost = account.m_HomeData.GetHomeJumpOffCostDiamond();
        const auto reply = co_await askPack<HomePack_JumpOff_Reply>(home, socket, packs.sent(player, jump), kPatience);
        const auto* const jumped = packs.received(player, reply);
        if (!jumped)
            co_return;
        isRefused = !jumped->m_Flag1;
        expect(player, jumped->m_Value1 == cost, "the price of a jump off is that of the record");
        expect(player, isRefused || jumped->m_HomeData.m_IsJumpOff, "the player has jumped off");
        if (isRefused)
            expectRefused(player, jumped->m_Msg, "a jump off without diamonds");
        account.m_HomeData = jumped->m_HomeData;
        account.m_GlobalData = jumped->m_GlobalData;
    }
    expect(player, isRefused, "the diamonds end");

    // A save may set back the jump, and may not give lives.
    HomePack_SaveData_Request save;
    save.m_HomeData = account.m_HomeData;
    save.m_HomeData.m_IsJumpOff = false;
    for (int i = 0; i < 2; ++i)
    {
        const auto reply = co_await askPack<HomePack_SaveData_Reply>(home, socket, packs.sent(player, save), kPatience);
        if (const auto* const saved = packs.received(player, reply))
        {
            if (i == 0)
                expectDone(player, saved->m_Msg, "a save");
            else
                expectRefused(player, saved->m_Msg, "a save with more lives");
        }
        save.m_HomeData.m_RushLife += 1;
    }
    account.m_HomeData.m_IsJumpOff = false;

    const HomePack_CountdownTime_Request countDown;
    const auto counting =
        co_await askPack<HomePack_CountdownTime_Reply>(home, socket, packs.sent(player, countDown), kPatience);
    if (const auto* const left = packs.received(player, counting))
        expect(player, left->m_Value1 > 0 && left->m_Value1 <= 24 * 60 * 60, "a countdown within a day");
    HomePack_GetPlayerList_Request list;
    const auto listing =
        co_await askPack<HomePack_GetPlayerList_Reply>(home, socket, packs.sent(player, list), kPatience);
    if (const auto* const players = packs.received(player, listing))
        expect(player, players->m_PlayerList[1] > 0, "the list has the stages that were won");
    list.m_Value1 = -1;
    const auto refused =
        co_await askPack<HomePack_GetPlayerList_Reply>(home, socket, packs.sent(player, list), kPatience);
    if (const auto* const players = packs.received(player, refused))
        expectRefused(player, players->m_Msg, "the list of stage -1");
    const HomePack_PlayerNumList_Request numbers;
    const auto numbering =
        co_await askPack<HomePack_PlayerNumList_Reply>(home, socket, packs.sent(player, numbers), kPatience);
    if (const auto* const all = packs.received(player, numbering))
        expect(player, all->m_PlayerNum.count(1) == 1, "the numbers have the stages that were won");
}

host::Task playTravel(PackAccount& player, PackClient& packs)
{
    TravelPacks& travel = packs.m_Travel;
    CCommandSocket& socket = player.getSocket();
    AccountTravelData& record = player.getAccount().m_TravelData;

    const TravelWorldPack_LoadData_Request load;
    const auto loading =
        co_await askPack<TravelWorldPack_LoadData_Reply>(travel, socket, packs.sent(player, load), kPatience);
    const auto* const loaded = packs.received(player, loading);
    if (!loaded)
        co_return;
    expectDone(player, loaded->m_Msg, "loading the travel");
    expect(player, loaded->m_TravelData.IsReaded() && loaded->m_TravelData.IsValid(), "a valid travel record");
    record = loaded->m_TravelData;
    if (record.m_AttractMap.empty())
    {
        player.fail("no attractions");
        co_return;
    }

    // An attraction is unlocked once, and one that does not exist never.
    TravelWorldPack_AttractUnLock_Request unlock;
    unlock.m_AttractId = record.m_AttractMap.begin()->first;
    for (int i = 0; i < 3; ++i)
    {
        const bool wasUnlocked = record.getIsUnlockedValue(unlock.m_AttractId) != 0;
        const auto reply = co_await askPack<TravelWorldPack_AttractUnLock_Reply>(travel, socket,
                                                                                 packs.sent(player, unlock), kPatience);
        if (const auto* const unlocked = packs.received(player, reply))
        {
            record = unlocked->m_TravelData;
            if (i == 0 && !wasUnlocked)
            {
                expectDone(player, unlocked->m_Msg, "unlocking an attraction");
                expect(player, record.getIsUnlockedValue(unlock.m_AttractId) == 1, "the attraction is unlocked");
            }
            else
                expectRefused(player, unlocked->m_Msg, i < 2 ? "unlocking again" : "an attraction that does not exist");
        }
        if (i == 1)
            unlock.m_AttractId = -1;
    }

    // A save raises the level of a task by one; it cannot unlock.
    TravelWorldPack_SaveData_Request save;
    save.m_TravelData = record;
    ++save.m_TravelData.m_AttractMap.begin()->second.m_TaskLevel;
    save.m_TravelData.m_CurVehicle = 2;
    const AccountTravelData wanted = save.m_TravelData;
    for (int i = 0; i < 2; ++i)
    {
        const auto reply =
            co_await askPack<TravelWorldPack_SaveData_Reply>(travel, socket, packs.sent(player, save), kPatience);
        if (const auto* const saved = packs.received(player, reply))
        {
            if (i == 0)
                expectDone(player, saved->m_Msg, "saving a level");
            else
                expectRefused(player, saved->m_Msg, "saving an unlocked attraction");
        }
        save.m_TravelData.m_AttractMap.rbegin()->second.m_IsUnlocked = 1;
    }
    const auto again =
        co_await askPack<TravelWorldPack_LoadData_Reply>(travel, socket, packs.sent(player, load), kPatience);
    if (const auto* const reloaded = packs.received(player, again))
    {
        record = reloaded->m_TravelData;
        expect(player,
               record.SaveStringFromAttractData() == wanted.SaveStringFromAttractData() && record.getCurVehicle() == 2,
               "the saved travel comes back");
    }
}

} // namespace arena::player

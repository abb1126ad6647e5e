#include "examples/arena/player/match_script.h"

namespace arena::player
{

host::Task playBestFamily(PackAccount& player, PackClient& packs)
{
    PackTalk talk(player, packs, packs.m_Match);
    AccountMatchData3& record = player.getAccount().m_MatchData3;
    const auto keep = [&record](const auto& reply)
    {
        record = reply.m_MatchData3;
        return true;
    };

    MatchPack_BestFamilyRandomDice_Request throwDie;
    talk.refused<MatchPack_BestFamilyRandomDice_Reply>(throwDie, "a die before joining");
    MatchPack_EnterBestFamily_Request enter;
    enter.m_Text1 = player.getName();
    talk.done<MatchPack_EnterBestFamily_Reply>(enter, "joining the event",
                                               [keep](const MatchPack_EnterBestFamily_Reply& reply)
                                               { return keep(reply) && reply.m_MatchData3.IsJoinMatch(); });
    talk.refused<MatchPack_EnterBestFamily_Reply>(enter, "joining twice");
    talk.done<MatchPack_BestFamilyRandomDice_Reply>(throwDie, "a die costs a life",
                                                    [keep, &record](const MatchPack_BestFamilyRandomDice_Reply& reply)
                                                    {
                                                        const int lives = record.m_WeekLives;
                                                        return keep(reply) && record.m_WeekLives == lives - 1 &&
                                                               !reply.m_Text2.isEmpty();
                                                    });
    MatchPack_BestFamilySetDice_Request setDie;
    setDie.m_Value1 = 7;
    talk.refused<MatchPack_BestFamilySetDice_Reply>(setDie, "a die set to 7");
    setDie.m_Value1 = 6;
    talk.done<MatchPack_BestFamilySetDice_Reply>(setDie, "a die set to 6",
                                                 [keep](const MatchPack_BestFamilySetDice_Reply& reply)
                                                 { return keep(reply) && reply.m_Text2 == L"6"; });
    talk.done<MatchPack_BestFamilyTigerMachine_Reply>(MatchPack_BestFamilyTigerMachine_Request(), "the tiger machine",
                                                      keep);
    MatchPack_BestFamilyTask_Request task;
    task.m_Value1 = 2;
    talk.done<MatchPack_BestFamilyTask_Reply>(task, "a task",
                                              [keep](const MatchPack_BestFamilyTask_Reply& reply)
                                              { return keep(reply) && reply.m_MatchData3.m_Match3Row[1] == 0; });
    talk.refused<MatchPack_BestFamilyTask_Reply>(task, "a task twice");
    // A result counts if it is better than the one before.
    MatchPack_BestFamilyCheckGameResult_Request result;
    result.m_Value1 = 6;
    result.m_Value2 = 55;
    result.m_Char1 = 'A';
    talk.done<MatchPack_BestFamilyCheckGameResult_Reply>(
        result, "a better result",
        [keep](const MatchPack_BestFamilyCheckGameResult_Reply& reply)
        { return keep(reply) && reply.m_MatchData3.m_ScoreMap.at(6) == 55; });
    talk.refused<MatchPack_BestFamilyCheckGameResult_Reply>(result, "a result that is not better");
    talk.done<MatchPack_BestFamilyCountDownTime_Reply>(MatchPack_BestFamilyCountDownTime_Request(), "the countdown",
                                                       [](const MatchPack_BestFamilyCountDownTime_Reply& reply)
                                                       { return !reply.m_Text2.isEmpty(); });
    MatchPack_TakeGift_Request gift;
    gift.m_Value1 = 1;
    talk.done<MatchPack_TakeGift_Reply>(gift, "the gift of the stage", keep);
    talk.refused<MatchPack_TakeGift_Reply>(gift, "a second gift");
    MatchPack_UpdateBaodiTaskExecState_Request state;
    state.m_Flag1 = false;
    talk.send(state);

    // Brain games, tools and retries.
    MatchPack_SelectBrainGame_Request select;
    select.m_Value1 = 3;
    MatchPack_StartBrainGame_Request start;
    start.m_Value1 = 3;
    talk.refused<MatchPack_StartBrainGame_Reply>(start, "a brain game that is not selected");
    talk.done<MatchPack_SelectBrainGame_Reply>(select, "selecting a brain game",
                                               [](const MatchPack_SelectBrainGame_Reply& reply)
                                               { return reply.m_Value1 == 3 && reply.m_Value2 > 0; });
    talk.done<MatchPack_StartBrainGame_Reply>(start, "a brain game");
    MatchPack_BuyTool_Request buy;
    buy.m_Value1 = 2;
    talk.done<MatchPack_BuyTool_Reply>(buy, "two tools",
                                       [](const MatchPack_BuyTool_Reply& reply) { return reply.m_Value1 >= 2; });
    buy.m_Value1 = 0;
    talk.refused<MatchPack_BuyTool_Reply>(buy, "no tools");
    MatchPack_TryAgainGame_Request again;
    again.m_Value1 = 6;
    talk.done<MatchPack_TryAgainGame_Reply>(again, "a game again");
    again.m_Value1 = 1;
    talk.refused<MatchPack_TryAgainGame_Reply>(again, "a game again that is not of the event");

    talk.done<MatchPack_ExitBestFamily_Reply>(MatchPack_ExitBestFamily_Request(), "leaving the event",
                                              [keep](const MatchPack_ExitBestFamily_Reply& reply) {
                                                  return keep(reply) && !reply.m_MatchData3.IsJoinMatch() &&
                                                         !reply.m_MatchData3.m_Match3Flag2;
                                              });
    talk.refused<MatchPack_ExitBestFamily_Reply>(MatchPack_ExitBestFamily_Request(), "leaving twice");
    co_return;
}

host::Task playTeams(PackAccount& player, PackClient& packs)
{
    PackTalk talk(player, packs, packs.m_Match);
    AccountMatchData& record = player.getAccount().m_MatchData;

    MatchPackType_SelectTeam_Request select;
    select.m_TeamId = 1;
    talk.refused<MatchPackType_SelectTeam_Reply>(select, "a team before entering the match");
    talk.done<MatchPackType_Login_Reply>(MatchPackType_Login_Request(), "entering the match",
                                         [&](const MatchPackType_Login_Reply& reply) {
                                             return reply.m_Value1 > 0 &&
                                                    reply.m_MatchData.m_MatchText0 == player.getName();
                                         });
    talk.refused<MatchPackType_Login_Reply>(MatchPackType_Login_Request(), "entering the match twice");
    talk.done<MatchPackType_QueryMatchState_Reply>(MatchPackType_QueryMatchState_Request(), "the state of the match",
                                                   [](const MatchPackType_QueryMatchState_Reply& reply)
                                                   { return !reply.m_Match.m_MatchTitle.isEmpty(); });
    MatchPackType_StartGame_Request start;
    start.m_Value1 = 6;
    MatchPackType_EndGame_Request end;
    end.m_Value1 = 6;
    end.m_Float1 = 21.5f;
    end.m_Value2 = 80;
    talk.refused<MatchPackType_StartGame_Reply>(start, "a game without a team");
    talk.done<MatchPackType_SelectTeam_Reply>(select, "joining a team",
                                              [&record](const MatchPackType_SelectTeam_Reply& reply)
                                              {
                                                  record = reply.m_MatchData;
                                                  return record.m_TeamId == 1;
                                              });
    select.m_TeamId = 0;
    talk.refused<MatchPackType_SelectTeam_Reply>(select, "joining another team");
    talk.done<MatchPackType_StartGame_Reply>(start, "a game for the team");
    talk.refused<MatchPackType_StartGame_Reply>(start, "a second game at once");
    talk.done<MatchPackType_EndGame_Reply>(end, "the end of the game",
                                           [](const MatchPackType_EndGame_Reply& reply)
                                           { return reply.m_Flag1 && reply.m_Value1 >= 80; });
    talk.refused<MatchPackType_EndGame_Reply>(end, "the end of a game that is not played");

    talk.done<MatchPackType_QueryTeamState_Reply>(RequestFor<MatchPackType_QueryTeamState_Reply>(), "the teams",
                                                  [](const MatchPackType_QueryTeamState_Reply& reply)
                                                  { return reply.m_Team2.m_Value1 >= 80; });
    talk.done<MatchPackType_QueryTeamRank_Reply>(MatchPackType_QueryTeamRank_Request(), "the rank of the teams",
                                                 [](const MatchPackType_QueryTeamRank_Reply& reply)
                                                 { return reply.m_RankList.size() == 2; });
    MatchPackType_QueryPersonTeamRank_Request rank;
    rank.m_Value1 = 1;
    talk.done<MatchPackType_QueryPersonTeamRank_Reply>(rank, "the rank in the team",
                                                       [](const MatchPackType_QueryPersonTeamRank_Reply& reply)
                                                       { return !reply.m_RankList1.empty(); });
    rank.m_Value1 = 9;
    talk.refused<MatchPackType_QueryPersonTeamRank_Reply>(rank, "the rank in a team that does not exist");
    talk.done<MatchPackType_QueryTotalScoreRank_Reply>(
        RequestFor<MatchPackType_QueryTotalScoreRank_Reply>(), "all scores",
        [](const MatchPackType_QueryTotalScoreRank_Reply& reply) { return !reply.m_RankList1.empty(); });
    talk.done<MatchPackType_QueryGameStopRank_Reply>(
        RequestFor<MatchPackType_QueryGameStopRank_Reply>(), "games and points",
        [](const MatchPackType_QueryGameStopRank_Reply& reply) { return reply.m_Value1 >= 1 && reply.m_Value2 >= 80; });
    talk.done<MatchPackType_QuerySchedule_Reply>(RequestFor<MatchPackType_QuerySchedule_Reply>(), "the schedule",
                                                 [](const MatchPackType_QuerySchedule_Reply& reply)
                                                 { return !reply.m_Schedule.empty(); });
    talk.done<MatchPackType_QueryAwardsReply>(MatchPackType_QueryAwardsRequest(), "the awards",
                                              [](const MatchPackType_QueryAwardsReply& reply)
                                              { return reply.m_Value1 == 1 && reply.m_Awards.size() == 1; });
    MatchPack_TeamAwards_Request awards;
    awards.m_Value1 = 1;
    talk.done<MatchPack_TeamAwards_Reply>(awards, "the awards of the team",
                                          [](const MatchPack_TeamAwards_Reply& reply)
                                          { return !reply.m_List1.empty() && !reply.m_Numbers.empty(); });
    awards.m_Value1 = -1;
    talk.refused<MatchPack_TeamAwards_Reply>(
        awards, "the awards of no team", [](const MatchPack_TeamAwards_Reply& reply) { return reply.m_List1.empty(); });
    MatchPack_FinishSchedule_Request finish;
    finish.m_Value1 = 1;
    talk.refused<MatchPack_FinishSchedule_Reply>(finish, "a round without players",
                                                 [](const MatchPack_FinishSchedule_Reply& reply)
                                                 { return reply.m_Value1 == 0; });
    finish.m_Names.push_back(player.getName());
    talk.done<MatchPack_FinishSchedule_Reply>(finish, "a finished round",
                                              [](const MatchPack_FinishSchedule_Reply& reply)
                                              { return reply.m_Value1 == 1 && reply.m_Value2 == 1; });
    MatchPack_PlayerList_Request list;
    list.m_Value2 = 10;
    talk.done<MatchPack_PlayerList_Reply>(list, "the players",
                                          [&](const MatchPack_PlayerList_Reply& reply) {
                                              return !reply.m_SortList.empty() &&
                                                     reply.m_SelfSort.m_AccountName == player.getName();
                                          });
    list.m_Value2 = 0;
    talk.refused<MatchPack_PlayerList_Reply>(list, "a list without rows");
    // Its reply is that of the ranks in a team.
    MatchPackType_QueryPersonClearedInfo_Request cleared;
    cleared.m_Text1 = player.getName();
    const auto clearing = co_await host::askPack<MatchPackType_QueryPersonTeamRank_Reply>(
        packs.m_Match, player.getSocket(), packs.sent(player, cleared), kPatience);
    if (const auto* const own = packs.received(player, clearing))
        expect(player, own->m_RankList1.size() == 1, "the player's own rank");

    talk.done<MatchPackType_Logout_Reply>(MatchPackType_Logout_Request(), "leaving the match");
    talk.refused<MatchPackType_Logout_Reply>(MatchPackType_Logout_Request(), "leaving the match twice");
}

host::Task playStamps(PackAccount& player, PackClient& packs)
{
    PackTalk talk(player, packs, packs.m_Match);
    AccountMatchData& record = player.getAccount().m_MatchData;

    MatchPack_ExchangeStampRequest exchange;
    exchange.m_Value1 = 4;
    talk.done<MatchPack_ExchangeStampReply>(exchange, "four stamps for points",
                                            [&record](const MatchPack_ExchangeStampReply& reply)
                                            {
                                                record = reply.m_MatchData;
                                                return reply.m_Value1 >= 4;
                                            });
    exchange.m_Value1 = 1000000;
    talk.refused<MatchPack_ExchangeStampReply>(exchange, "stamps without points");
    MatchPack_StampChangeGoodsRequest change;
    change.m_Value1 = 1;
    talk.done<MatchPack_StampChangeGoodsReply>(change, "a good for a stamp",
                                               [](const MatchPack_StampChangeGoodsReply& reply)
                                               { return !reply.m_ShopAwards.m_Text1.isEmpty(); });
    change.m_Value1 = 0;
    talk.refused<MatchPack_StampChangeGoodsReply>(change, "a good that does not exist");
    change.m_Value1 = 2;
    talk.refused<MatchPack_NotEnoughStockReply>(change, "a good that is sold out",
                                                [](const MatchPack_NotEnoughStockReply& reply)
                                                { return reply.m_Value1 == 2; });
    MatchPack_GiveBet_Request bet;
    bet.m_Text1 = L"2";
    bet.m_Value1 = 1;
    talk.done<MatchPack_GiveBet_Reply>(bet, "a bet");
    talk.refused<MatchPack_GiveBet_Reply>(bet, "a second bet");
    MatchPack_GivePraise_Request praise;
    praise.m_Text1 = L"the champion";
    talk.done<MatchPack_GivePraise_Reply>(praise, "a praise",
                                          [](const MatchPack_GivePraise_Reply& reply) { return reply.m_Value1 > 0; });
    praise.m_Text1 = player.getName();
    talk.refused<MatchPack_GivePraise_Reply>(praise, "a praise for oneself");

    MatchPack_FinalLottery_Request lottery;
    lottery.m_Value1 = 7;
    talk.done<MatchPack_FinalLottery_Reply>(lottery, "the lottery of the final",
                                            [](const MatchPack_FinalLottery_Reply& reply)
                                            { return reply.m_Numbers.size() == 3; });
    lottery.m_Value1 = 10;
    talk.refused<MatchPack_FinalLottery_Reply>(lottery, "a number that does not exist");
    talk.done<MatchPack_FinalMatchInfo_Reply>(MatchPack_FinalMatchInfo_Request(), "the final",
                                              [&](const MatchPack_FinalMatchInfo_Reply& reply)
                                              { return reply.m_Pair1.first == player.getName(); });
    MatchPack_LotteryReset_Request reset;
    talk.done<MatchPackType_LotteryReset>(reset, "a new round of the lottery",
                                          [](const MatchPackType_LotteryReset& reply) { return reply.m_Value1 > 0; });
    reset.m_Value1 = 5;
    talk.refused<MatchPackType_LotteryReset>(reset, "a round that is not the next");
    talk.done<MatchPackType_LotteryRevealer>(MatchPack_LotteryRevealer_Request(), "a number of the lottery",
                                             [](const MatchPackType_LotteryRevealer& reply)
                                             { return !reply.m_Numbers1.empty(); });
    talk.done<MatchPackType_IsCanRevealer>(RequestFor<MatchPackType_IsCanRevealer>(), "whether numbers are left");
    talk.done<MatchPackType_LotteryBaseNum>(RequestFor<MatchPackType_LotteryBaseNum>(), "the numbers to choose from",
                                            [](const MatchPackType_LotteryBaseNum& reply)
                                            { return reply.m_Value1 > 0; });
    talk.done<MatchPackType_LotteryAllNum>(RequestFor<MatchPackType_LotteryAllNum>(), "all numbers");
    co_return;
}

host::Task playMeet(PackAccount& player, PackClient& packs)
{
    PackTalk talk(player, packs, packs.m_Match);
    AccountMatchData4& record = player.getAccount().m_MatchData4;
    const auto keep = [&record](const auto& reply)
    {
        record = reply.m_MatchData4;
        return true;
    };

    Match4Pack_DeductEnergy_Request pay;
    pay.m_Value1 = 1;
    talk.refused<Match4Pack_DeductEnergy_Reply>(pay, "a game before entering the meet");
    Match4Pack_EnterYundonghui_Request enter;
    enter.m_Text1 = player.getName();
    talk.done<Match4Pack_EnterYundonghui_Reply>(enter, "entering the meet", keep);
    talk.refused<Match4Pack_EnterYundonghui_Reply>(enter, "entering the meet twice");
    talk.done<Match4Pack_DeductEnergy_Reply>(pay, "energy for a game");
    pay.m_Value1 = 1000000;
    talk.refused<Match4Pack_DeductEnergy_Reply>(pay, "energy for a million games");
    // A game that was paid for gives rating, once.
    const RequestFor<Match4Pack_EndGameCalculate_Reply> end;
    talk.done<Match4Pack_EndGameCalculate_Reply>(end, "the end of a game raises the rating",
                                                 [keep, &record](const Match4Pack_EndGameCalculate_Reply& reply)
                                                 {
                                                     const int before = record.m_MatchRating;
                                                     return keep(reply) && record.m_MatchRating > before;
                                                 });
    talk.refused<Match4Pack_EndGameCalculate_Reply>(end, "the end of a game that was not paid for");
    Match4Pack_CheckHstryRec_Request history;
    history.m_Text1 = player.getName();
    talk.done<Match4Pack_CheckHstryRec_Reply>(history, "the history",
                                              [](const Match4Pack_CheckHstryRec_Reply& reply)
                                              { return reply.m_History1[0].m_Value1 > 0; });
    history.m_Text1 = L"a stranger";
    talk.refused<Match4Pack_CheckHstryRec_Reply>(history, "the history of a stranger");
    talk.done<Match4Pack_CheckBeWeekend_Reply>(RequestFor<Match4Pack_CheckBeWeekend_Reply>(), "the day of the week",
                                               [](const Match4Pack_CheckBeWeekend_Reply& reply)
                                               { return reply.m_Value1 >= 0 && reply.m_Value1 < 7; });
    talk.done<Match4Pack_SportRank_Reply>(RequestFor<Match4Pack_SportRank_Reply>(), "the ranks",
                                          [](const Match4Pack_SportRank_Reply& reply)
                                          { return !reply.m_Table1[0][0].m_RankName.isEmpty(); });
    Match4Pack_RememberStateIn_Request remember;
    remember.m_Value1 = 4;
    talk.send(remember);
    talk.done<Match4Pack_GetAccuntInfo_Reply>(Match4Pack_GetAccuntInfo_Request(), "the record of the meet",
                                              [keep](const Match4Pack_GetAccuntInfo_Reply& reply)
                                              { return keep(reply) && reply.m_MatchData4.m_Match4Value2 == 4; });

    // A player may find no mate, if it is the only one.
    const Match4Pack_FindMate_Request find;
    const auto finding = co_await host::askPack<Match4Pack_FindMate_Reply>(packs.m_Match, player.getSocket(),
                                                                           packs.sent(player, find), kPatience);
    if (const auto* const mate = packs.received(player, finding))
        expect(player, mate->m_Text1.isEmpty() != mate->m_Text2.isEmpty(), "a mate or none");
    Match4Pack_SaveMatchData_Request save;
    save.m_MatchData4 = record;
    save.m_MatchData4.m_Match4Text0 = L"faster";
    talk.done<Match4Pack_SaveMatchData_Reply>(save, "saving a text");
    save.m_MatchData4.m_MatchRating += 500;
    talk.refused<Match4Pack_SaveMatchData_Reply>(save, "saving a rating");

    talk.done<Match4Pack_TicketGoodConfig_Reply>(RequestFor<Match4Pack_TicketGoodConfig_Reply>(), "the goods",
                                                 [](const Match4Pack_TicketGoodConfig_Reply& reply)
                                                 { return reply.m_Goods1.size() == 2; });
    Match4Pack_BuyShopGood_Request buy;
    buy.m_Good.m_GoodId = 1;
    talk.done<Match4Pack_BuyShopGood_Reply>(buy, "a good for tickets",
                                            [keep](const Match4Pack_BuyShopGood_Reply& reply)
                                            { return keep(reply) && reply.m_Flag1; });
    buy.m_Good.m_GoodId = 2;
    talk.refused<Match4Pack_BuyShopGood_Reply>(
        buy, "a good without tickets", [](const Match4Pack_BuyShopGood_Reply& reply) { return !reply.m_Flag1; });
    talk.done<Match4Pack_OrderRecord_Reply>(RequestFor<Match4Pack_OrderRecord_Reply>(), "the orders",
                                            [](const Match4Pack_OrderRecord_Reply& reply)
                                            { return !reply.m_Orders.empty(); });
    talk.done<Match4Pack_ExitYundonghui_Reply>(Match4Pack_ExitYundonghui_Request(), "leaving the meet", keep);
    talk.refused<Match4Pack_ExitYundonghui_Reply>(Match4Pack_ExitYundonghui_Request(), "leaving the meet twice");
}

host::Task playSeasons(PackAccount& player, PackClient& packs)
{
    PackTalk talk(player, packs, packs.m_Match);
    CAccount& account = player.getAccount();

    CombatPack_PlayerSelectGroup_Request select;
    select.m_Value1 = 2;
    talk.refused<CombatPack_PlayerSelectGroup_Reply>(select, "a group before enrolling");
    talk.done<CombatPack_Enroll_Reply>(CombatPack_Enroll_Request(), "enrolling",
                                       [&account](const CombatPack_Enroll_Reply& reply)
                                       {
                                           account.m_GlobalData = reply.m_GlobalData;
                                           return true;
                                       });
    talk.refused<CombatPack_Enroll_Reply>(CombatPack_Enroll_Request(), "enrolling twice");
    talk.done<CombatPack_QueryEnroll_Reply>(RequestFor<CombatPack_QueryEnroll_Reply>(), "the enrolment",
                                            [](const CombatPack_QueryEnroll_Reply& reply)
                                            { return reply.m_Value1 == 1; });
    talk.done<CombatPack_PlayerSelectGroup_Reply>(select, "a group");
    talk.refused<CombatPack_PlayerSelectGroup_Reply>(select, "a second group");
    talk.done<CombatPack_QueryGroup_Reply>(RequestFor<CombatPack_QueryGroup_Reply>(), "the group",
                                           [](const CombatPack_QueryGroup_Reply& reply)
                                           { return reply.m_Value1 == 2; });
    // Diamonds become tickets; 0 in the reply is a refusal.
    CombatPack_Change_Diamond change;
    for (const int diamonds : {5, -1})
    {
        change.m_Value1 = diamonds;
        const auto changing = co_await host::ask<host::PackAnswer<CombatPack_Change_Diamond>>(
            player.getSocket(), host::packed<CCmdMatchPackRequest>(packs.m_Match, packs.sent(player, change)),
            kPatience);
        if (const auto* const changed = packs.received(player, changing))
        {
            expect(player, changed->m_Value1 == (diamonds > 0 ? diamonds : 0), "diamonds for tickets");
            account.m_GlobalData = changed->m_GlobalData;
        }
    }
    talk.done<CombatPack_TicketGoodConfig_Reply>(RequestFor<CombatPack_TicketGoodConfig_Reply>(), "the goods",
                                                 [](const CombatPack_TicketGoodConfig_Reply& reply)
                                                 { return reply.m_Goods1.size() == 2; });
    CombatPack_BuyShopGood_Request buy;
    buy.m_Good.m_GoodId = 1;
    talk.done<CombatPack_BuyShopGood_Reply>(buy, "a good for tickets",
                                            [&account](const CombatPack_BuyShopGood_Reply& reply)
                                            {
                                                account.m_CombatData = reply.m_CombatData;
                                                return reply.m_Flag1;
                                            });
    buy.m_Good.m_GoodId = 2;
    talk.refused<CombatPack_BuyShopGood_Reply>(buy, "a good without tickets");
    talk.done<CombatPack_OrderRecord_Reply>(RequestFor<CombatPack_OrderRecord_Reply>(), "the orders",
                                            [](const CombatPack_OrderRecord_Reply& reply)
                                            { return !reply.m_Orders.empty(); });
    talk.done<CombatRankData_Pack_Reply>(RequestFor<CombatRankData_Pack_Reply>(), "the rank board",
                                         [](const CombatRankData_Pack_Reply& reply)
                                         { return !reply.m_CombatRankDatas1[1][0].m_Name.isEmpty(); });

    talk.refused<BS4Pack_GoldenTime_Reply>(RequestFor<BS4Pack_GoldenTime_Reply>(), "a golden time without a group",
                                           [](const BS4Pack_GoldenTime_Reply& reply) { return reply.m_Value1 == 0; });
    talk.done<BS4Pack_GameSeason_Reply>(RequestFor<BS4Pack_GameSeason_Reply>(), "the season",
                                        [](const BS4Pack_GameSeason_Reply& reply) { return reply.m_Value1 > 0; });
    talk.done<BS4Pack_SelectGroup_Reply>(RequestFor<BS4Pack_SelectGroup_Reply>(), "a group of the season");
    talk.refused<BS4Pack_SelectGroup_Reply>(RequestFor<BS4Pack_SelectGroup_Reply>(), "a second group of the season");
    // The second golden time and the second last stand begin with the end of the first.
    for (int i = 0; i < 2; ++i)
    {
        talk.done<BS4Pack_GoldenTime_Reply>(RequestFor<BS4Pack_GoldenTime_Reply>(), "a golden time",
                                            [](const BS4Pack_GoldenTime_Reply& reply) { return reply.m_Value1 > 0; });
        talk.done<BS4Pack_LastStand_Reply>(RequestFor<BS4Pack_LastStand_Reply>(), "a last stand",
                                           [](const BS4Pack_LastStand_Reply& reply) { return reply.m_Value1 > 0; });
    }
    talk.done<BS4RankData_Pack_Reply>(RequestFor<BS4RankData_Pack_Reply>(), "the rank board of the season",
                                      [](const BS4RankData_Pack_Reply& reply) { return reply.m_Value1 > 0; });
}

} // namespace arena::player

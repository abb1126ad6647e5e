// The teams of the match: a player logs in, joins one for good, and plays for it. The player's part is in the record of
// the first match generation; the points of the teams are kept in memory and end with the process.
#include "examples/arena/platform/calendar.h"
#include "examples/arena/platform/packs/match_features.h"

#include <algorithm>

namespace arena::platform
{

namespace
{

using Text = zet::String_T<wchar_t>;

constexpr wchar_t kNoSuchTeam[] = L"no such team";
constexpr wchar_t kNoTeam[] = L"no team";
constexpr wchar_t kTeamBefore[] = L"in a team";
constexpr wchar_t kNoSuchGame[] = L"no such game";
constexpr wchar_t kNoRows[] = L"no rows are wanted";
constexpr wchar_t kPlaysNot[] = L"no game is being played";
constexpr wchar_t kPlaysAlready[] = L"a game is being played";

constexpr const wchar_t* kTeams[] = {L"red", L"blue"};
constexpr int kTeamCount = static_cast<int>(std::size(kTeams));
constexpr int kMostGame = 13;
constexpr int kMostPoints = 100;
constexpr int kRounds = 3;

// What the platform keeps in the carried values of the record: the game that is being played, 0 for none, and how many
// were played.
int& playedGame(AccountMatchData& data)
{
    return data.m_MatchValue1;
}
int& gamesOf(AccountMatchData& data)
{
    return data.m_MatchValue2;
}

class Teams
{
public:
    void add(MatchPacks& packs)
    {
        m_Packs = &packs;
        on<MatchPackType_Login_Request, MatchPackType_Login_Reply>(&Teams::enter);
        on<MatchPackType_Logout_Request, MatchPackType_Logout_Reply>(&Teams::leave);
        on<MatchPackType_QueryMatchState_Request, MatchPackType_QueryMatchState_Reply>(&Teams::tellMatch);
        on<MatchPackType_SelectTeam_Request, MatchPackType_SelectTeam_Reply>(&Teams::selectTeam);
        on<MatchPackType_StartGame_Request, MatchPackType_StartGame_Reply>(&Teams::startGame);
        on<MatchPackType_EndGame_Request, MatchPackType_EndGame_Reply>(&Teams::endGame);
        on<MatchPackType_QueryTeamRank_Request, MatchPackType_QueryTeamRank_Reply>(&Teams::rankTeams);
        on<MatchPackType_QueryPersonTeamRank_Request, MatchPackType_QueryPersonTeamRank_Reply>(&Teams::rankPlayers);
        on<MatchPackType_QueryAwardsRequest, MatchPackType_QueryAwardsReply>(&Teams::tellAwards);
        on<RequestFor<MatchPackType_QueryTeamState_Reply>, MatchPackType_QueryTeamState_Reply>(&Teams::tellTeams);
        on<RequestFor<MatchPackType_QueryTotalScoreRank_Reply>, MatchPackType_QueryTotalScoreRank_Reply>(
            &Teams::rankScores);
        on<RequestFor<MatchPackType_QueryGameStopRank_Reply>, MatchPackType_QueryGameStopRank_Reply>(&Teams::tellStop);
        on<RequestFor<MatchPackType_QuerySchedule_Reply>, MatchPackType_QuerySchedule_Reply>(&Teams::tellSchedule);
        on<MatchPack_FinishSchedule_Request, MatchPack_FinishSchedule_Reply>(&Teams::finishSchedule);
        on<MatchPack_TeamAwards_Request, MatchPack_TeamAwards_Reply>(&Teams::tellTeamAwards);
        on<MatchPack_PlayerList_Request, MatchPack_PlayerList_Reply>(&Teams::listPlayers);
        // m_Text1: a player. The reply is that of the ranks of persons.
        serveSilently<MatchPackType_QueryPersonClearedInfo_Request>(
            packs,
            [this](Session& session, const MatchPackType_QueryPersonClearedInfo_Request& request)
            {
                MatchPackType_QueryPersonTeamRank_Reply reply;
                if (const auto player = m_Players.find(request.m_Text1); player != m_Players.end())
                    reply.m_RankList1.push_back(player->second);
                m_Packs->send(session, reply);
            });
    }

private:
    template <class Request, class Reply>
    void on(void (Teams::*work)(Session&, const Request&, Reply&))
    {
        serve<Request, Reply>(*m_Packs, [this, work](Session& session, const Request& request, Reply& reply)
                              { (this->*work)(session, request, reply); });
    }
    static AccountMatchData& dataOf(Session& session) { return session.getAccount().m_MatchData; }
    // The row of a player in the ranks.
    void noteRank(Session& session)
    {
        m_Players[session.getAccount().m_Account.m_AccountName].ReadData(dataOf(session));
    }
    template <class Work>
    void forEachTeam(Work work) const
    {
        for (int team = 0; team < kTeamCount; ++team)
            work(team, kTeams[team], m_Points[team]);
    }

    // The record gets the player's name, by which ranks find it. m_Value1: the teams.
    void enter(Session& session, const MatchPackType_Login_Request&, MatchPackType_Login_Reply& reply)
    {
        if (!m_Members.add(session, true))
            refuse(reply, kEnteredBefore);
        else
        {
            dataOf(session).m_MatchText0 = session.getAccount().m_Account.m_AccountName;
            save(session, reply);
        }
        reply.m_Value1 = kTeamCount;
        reply.m_MatchData = dataOf(session);
    }
    void leave(Session& session, const MatchPackType_Logout_Request&, MatchPackType_Logout_Reply& reply)
    {
        if (!m_Members.remove(session))
            refuse(reply, kNotEntered);
    }
    void tellMatch(Session&, const MatchPackType_QueryMatchState_Request&, MatchPackType_QueryMatchState_Reply& reply)
    {
        reply.m_Match.m_MatchKind = 1;
        reply.m_Match.m_MatchRound = 1;
        reply.m_Match.m_MatchTitle = L"red against blue";
    }
    void selectTeam(Session& session, const MatchPackType_SelectTeam_Request& request,
                    MatchPackType_SelectTeam_Reply& reply)
    {
        AccountMatchData& data = dataOf(session);
        if (!m_Members.find(session))
            refuse(reply, kNotEntered);
        else if (request.m_TeamId < 0 || request.m_TeamId >= kTeamCount)
            refuse(reply, kNoSuchTeam);
        else if (data.m_TeamId >= 0)
            refuse(reply, kTeamBefore);
        else
        {
            data.m_TeamId = request.m_TeamId;
            data.m_MatchName = kTeams[request.m_TeamId];
            if (save(session, reply))
                noteRank(session);
        }
        reply.m_MatchData = data;
    }
    // m_Value1: the game.
    void startGame(Session& session, const MatchPackType_StartGame_Request& request,
                   MatchPackType_StartGame_Reply& reply)
    {
        AccountMatchData& data = dataOf(session);
        if (data.m_TeamId < 0)
            return refuse(reply, kNoTeam);
        if (request.m_Value1 < 1 || request.m_Value1 > kMostGame)
            return refuse(reply, kNoSuchGame);
        if (playedGame(data) != 0)
            return refuse(reply, kPlaysAlready);
        playedGame(data) = request.m_Value1;
        save(session, reply);
    }
    // m_Value1: the game; m_Value2: the points, for the player and the team. In the reply, the team's points. All who
    // have entered get the new state of the team.
    void endGame(Session& session, const MatchPackType_EndGame_Request& request, MatchPackType_EndGame_Reply& reply)
    {
        AccountMatchData& data = dataOf(session);
        if (playedGame(data) == 0 || playedGame(data) != request.m_Value1)
            return refuse(reply, kPlaysNot);
        const int points = std::clamp(request.m_Value2, 0, kMostPoints);
        playedGame(data) = 0;
        data.m_MatchScore += points;
        gamesOf(data) = std::max(0, gamesOf(data)) + 1;
        if (!save(session, reply))
            return;
        const int team = std::clamp(data.m_TeamId, 0, kTeamCount - 1);
        m_Points[team] += points;
        noteRank(session);
        reply.m_Value1 = m_Points[team];
        reply.m_Flag1 = true;
        MatchPackType_UpdateTeamState_Reply state;
        state.m_Value1 = team;
        state.m_Value2 = m_Points[team];
        state.m_Text1 = kTeams[team];
        m_Members.forEach([&](Session& other, bool) { m_Packs->send(other, state); });
    }
    void rankTeams(Session&, const MatchPackType_QueryTeamRank_Request&, MatchPackType_QueryTeamRank_Reply& reply)
    {
        forEachTeam(
            [&](int team, const wchar_t* name, int points)
            {
                TeamMatchRankData row;
                row.m_TeamId = team;
                row.m_TeamName = name;
                row.m_Value1 = points;
                reply.m_RankList.push_back(row);
            });
        std::stable_sort(reply.m_RankList.begin(), reply.m_RankList.end(),
                         [](const auto& a, const auto& b) { return a.m_Value1 > b.m_Value1; });
    }
    // m_Value1: the team; its players, the best one first.
    void rankPlayers(Session&, const MatchPackType_QueryPersonTeamRank_Request& request,
                     MatchPackType_QueryPersonTeamRank_Reply& reply)
    {
        if (request.m_Value1 < 0 || request.m_Value1 >= kTeamCount)
            return refuse(reply, kNoSuchTeam);
        for (const auto& [name, row] : m_Players)
            if (row.m_RankName == kTeams[request.m_Value1])
                reply.m_RankList1.push_back(row);
        std::stable_sort(reply.m_RankList1.begin(), reply.m_RankList1.end(),
                         [](const auto& a, const auto& b) { return a.m_RankScore > b.m_RankScore; });
        reply.m_RankList1.resize(std::min(reply.m_RankList1.size(), kMostRows));
        reply.m_Value1 = static_cast<int>(reply.m_RankList1.size());
    }
    void rankScores(Session&, const RequestFor<MatchPackType_QueryTotalScoreRank_Reply>&,
                    MatchPackType_QueryTotalScoreRank_Reply& reply)
    {
        for (const auto& [name, row] : m_Players)
        {
            MatchTotalScoreRank rank;
            rank.m_Text1 = name;
            rank.m_Text2 = row.m_RankName;
            rank.m_Value1 = row.m_RankScore;
            reply.m_RankList1.push_back(rank);
        }
        std::stable_sort(reply.m_RankList1.begin(), reply.m_RankList1.end(),
                         [](const auto& a, const auto& b) { return a.m_Value1 > b.m_Value1; });
        reply.m_RankList1.resize(std::min(reply.m_RankList1.size(), kMostRows));
    }
    void tellStop(Session& session, const RequestFor<MatchPackType_QueryGameStopRank_Reply>&,
                  MatchPackType_QueryGameStopRank_Reply& reply)
    {
        reply.m_Value1 = std::max(0, gamesOf(dataOf(session)));
        reply.m_Value2 = dataOf(session).m_MatchScore;
    }
    void tellTeams(Session&, const RequestFor<MatchPackType_QueryTeamState_Reply>&,
                   MatchPackType_QueryTeamState_Reply& reply)
    {
        TeamMatchData* const states[kTeamCount] = {&reply.m_Team1, &reply.m_Team2};
        forEachTeam(
            [&](int team, const wchar_t* name, int points)
            {
                states[team]->m_TeamId = team;
                states[team]->m_TeamName = name;
                states[team]->m_Value1 = points;
            });
    }
    void tellSchedule(Session&, const RequestFor<MatchPackType_QuerySchedule_Reply>&,
                      MatchPackType_QuerySchedule_Reply& reply)
    {
        for (int round = 1; round <= kRounds; ++round)
        {
            TeamMatchScheduleData row;
            row.m_Value1 = round;
            row.m_Text1 = getToday();
            reply.m_Schedule.push_back(row);
        }
    }
    // m_Value1: the round; m_Names: who has played. 0 in the reply is a refusal.
    void finishSchedule(Session& session, const MatchPack_FinishSchedule_Request& request,
                        MatchPack_FinishSchedule_Reply& reply)
    {
        if (!m_Members.find(session) || request.m_Value1 < 1 || request.m_Value1 > kRounds || request.m_Names.empty())
            return;
        reply.m_Value1 = request.m_Value1;
        reply.m_Value2 = static_cast<int>(request.m_Names.size());
    }
    // m_Value1: the team; names, teams and awards of its players, and their points. No lists for no such team.
    void tellTeamAwards(Session&, const MatchPack_TeamAwards_Request& request, MatchPack_TeamAwards_Reply& reply)
    {
        if (request.m_Value1 < 0 || request.m_Value1 >= kTeamCount)
            return;
        for (const auto& [name, row] : m_Players)
            if (row.m_RankName == kTeams[request.m_Value1] && reply.m_List1.size() < kMostRows)
            {
                reply.m_List1.push_back(name);
                reply.m_List2.push_back(row.m_RankName);
                reply.m_List3.emplace_back(L"medal");
                reply.m_Numbers.push_back(row.m_RankScore);
            }
    }
    // m_Value1 of the reply is their number, -1 for a request without a team.
    void tellAwards(Session& session, const MatchPackType_QueryAwardsRequest&, MatchPackType_QueryAwardsReply& reply)
    {
        if (dataOf(session).m_TeamId < 0)
        {
            reply.m_Value1 = -1;
            return;
        }
        MatchQueryAwards award;
        award.m_Text1 = L"medal";
        award.m_Text2 = dataOf(session).m_MatchName;
        reply.m_Awards.push_back(award);
        reply.m_Value1 = 1;
    }
    // m_Value1: the first row, m_Value2: how many. The player's own row is apart.
    void listPlayers(Session& session, const MatchPack_PlayerList_Request& request, MatchPack_PlayerList_Reply& reply)
    {
        if (request.m_Value1 < 0 || request.m_Value2 < 1)
            return refuse(reply, kNoRows);
        std::vector<GameMatchSortInfo> rows;
        for (const auto& [name, player] : m_Players)
        {
            GameMatchSortInfo row;
            row.m_AccountName = name;
            row.m_SortKey = player.m_RankScore;
            rows.push_back(row);
        }
        // The board is inverted: the smaller row has the greater key.
        std::stable_sort(rows.begin(), rows.end());
        for (size_t i = 0; i < rows.size(); ++i)
        {
            rows[i].m_Rank = static_cast<int>(i) + 1;
            if (rows[i].m_AccountName == session.getAccount().m_Account.m_AccountName)
                reply.m_SelfSort = rows[i];
        }
        const size_t first = std::min(rows.size(), static_cast<size_t>(request.m_Value1));
        const size_t count = std::min({rows.size() - first, static_cast<size_t>(request.m_Value2), kMostRows});
        const auto from = rows.begin() + static_cast<std::ptrdiff_t>(first);
        reply.m_SortList.assign(from, from + static_cast<std::ptrdiff_t>(count));
        reply.m_Value1 = static_cast<int>(rows.size());
    }

    static constexpr size_t kMostRows = 100;

    MatchPacks* m_Packs = nullptr;
    Members<bool> m_Members;
    int m_Points[kTeamCount] = {};
    // By the name of the account.
    std::map<Text, AccountMatchRankData> m_Players;
};

} // namespace

std::shared_ptr<void> addTeams(MatchPacks& packs)
{
    auto teams = std::make_shared<Teams>();
    teams->add(packs);
    return teams;
}

} // namespace arena::platform

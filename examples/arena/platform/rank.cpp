// The ranking boards. The scores are those of the games that the platform saw end; the row that a client sends is not
// believed, and only its number of the game is used.
#include "commands/rank.h"
#include "examples/arena/platform/platform.h"
#include "examples/arena/platform/scores.h"
#include "examples/arena/protocol/platform_codes.h"

namespace arena::platform
{

namespace
{

using namespace protocol;

// The fields that all kinds of rows have.
template <class Row>
Row makeRow(const ScoreRow& score, int game)
{
    Row row;
    row.m_Rank = score.m_Rank;
    row.m_SortId = game;
    row.m_AccountName = score.m_Name;
    row.m_NickName = score.m_Name;
    if constexpr (requires { row.m_SortKey0; })
        row.m_SortKey0 = score.m_Score;
    else
        row.m_SortKey = score.m_Score;
    if constexpr (requires { row.m_SortTime; })
        row.m_SortTime = score.m_Reached;
    return row;
}

// Answers a request: m_Value1 is the game, 0 for a board of all games. The reply's numbers: the result, the game, the
// rows.
template <class Reply, class Row>
void answer(Platform& platform, Session& session, const char* name, int game, Row Reply::*ownRow,
            std::vector<Row> Reply::*boardRows)
{
    Reply reply;
    std::vector<ScoreRow> rows;
    ScoreRow own;
    reply.m_Value2 = game;
    if (!session.isLoggedIn())
    {
        reply.m_Value1 = kNotLoggedIn;
        reply.m_Text1 = L"no player is logged in";
    }
    else if (!readBoard(platform.getAccounts().getDatabase(), name, game, session.getStored().m_Id, rows, own))
    {
        reply.m_Value1 = kNotSaved;
        reply.m_Text1 = L"the database does not answer";
    }
    else
    {
        own.m_Name = session.getStored().m_Name;
        reply.*ownRow = makeRow<Row>(own, game);
        for (const ScoreRow& row : rows)
            (reply.*boardRows).push_back(makeRow<Row>(row, game));
        reply.m_Value3 = static_cast<int>(rows.size());
    }
    session.send(reply);
}

} // namespace

void installRanks(Platform& platform)
{
    platform.on<CCmdRequestSortAccount>(
        [&platform](Session& session, const CCmdRequestSortAccount&)
        {
            answer(platform, session, board::kAccount, 0, &CCmdReplySortAccount::m_SortInfo,
                   &CCmdReplySortAccount::m_SortInfos);
        });
    platform.on<CCmdRequestSortCalorie>(
        [&platform](Session& session, const CCmdRequestSortCalorie&)
        {
            answer(platform, session, board::kCalorie, 0, &CCmdReplySortCalorie::m_GameCalorieSortInfo,
                   &CCmdReplySortCalorie::m_GameCalorieSortInfos);
        });
    platform.on<CCmdRequestSortTupoCalorie>(
        [&platform](Session& session, const CCmdRequestSortTupoCalorie&)
        {
            answer(platform, session, board::kTupoCalorie, 0, &CCmdReplySortTupoCalorie::m_GameCalorieSortInfo,
                   &CCmdReplySortTupoCalorie::m_GameCalorieSortInfos);
        });
    platform.on<CCmdRequestSortBrain>(
        [&platform](Session& session, const CCmdRequestSortBrain& request)
        {
            answer(platform, session, board::kBrain, request.m_Value1, &CCmdReplySortBrain::m_GameBrainSortInfo,
                   &CCmdReplySortBrain::m_GameBrainSortInfos);
        });
    platform.on<CCmdRequestSortMusic>(
        [&platform](Session& session, const CCmdRequestSortMusic& request)
        {
            answer(platform, session, board::kMusic, request.m_Value1, &CCmdReplySortMusic::m_GameMusicSortInfo,
                   &CCmdReplySortMusic::m_GameMusicSortInfos);
        });
    platform.on<CCmdRequestSortKinect>(
        [&platform](Session& session, const CCmdRequestSortKinect& request)
        {
            answer(platform, session, board::kKinect, request.m_Value1, &CCmdReplySortKinect::m_GameKinectSortInfo,
                   &CCmdReplySortKinect::m_GameKinectSortInfos);
        });
    platform.on<CCmdRequestSortRush>(
        [&platform](Session& session, const CCmdRequestSortRush& request)
        {
            answer(platform, session, board::kRush, request.m_Value1, &CCmdReplySortRush::m_GameRushSortInfo,
                   &CCmdReplySortRush::m_GameRushSortInfos);
        });
}

} // namespace arena::platform

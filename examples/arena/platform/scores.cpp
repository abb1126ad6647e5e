#include "examples/arena/platform/scores.h"
#include "examples/arena/platform/accounts.h"
#include "examples/arena/platform/database.h"
#include "framework/time.h"

namespace arena::platform
{

namespace
{

// isSum: the score is added to the one that is there; otherwise the greater one stays.
void store(soci::session& sql, const char* name, int game, int account, int score, bool isSum)
{
    const std::string board = name;
    const std::string now = toUtf8(zet::Time::getCurrent().convertToString(true));
    int old = 0;
    sql << "SELECT score FROM scores WHERE board = :board AND game = :game AND account = :account", soci::use(board),
        soci::use(game), soci::use(account), soci::into(old);
    if (!sql.got_data())
    {
        sql << "INSERT INTO scores (board, game, account, score, reached) VALUES (:board, :game, :account, :score, "
               ":now)",
            soci::use(board), soci::use(game), soci::use(account), soci::use(score), soci::use(now);
        return;
    }
    const int next = isSum ? old + score : score;
    if (next <= old)
        return;
    sql << "UPDATE scores SET score = :score, reached = :now WHERE board = :board AND game = :game AND "
           "account = :account",
        soci::use(next), soci::use(now), soci::use(board), soci::use(game), soci::use(account);
}

const char* boardOf(int type)
{
    switch (type)
    {
    case 10:
        return board::kRush;
    case 11:
        return board::kMusic;
    case 12:
        return board::kBrain;
    case 14:
        return board::kKinect;
    default:
        return nullptr;
    }
}

} // namespace

bool storeScores(soci::session& sql, const StoredAccount& account, int type, int game, int score, int calories)
{
    store(sql, board::kAccount, 0, account.m_Id, score, true);
    store(sql, board::kCalorie, 0, account.m_Id, calories, true);
    store(sql, board::kTupoCalorie, 0, account.m_Id, calories, false);
    if (const char* const own = boardOf(type))
        store(sql, own, game, account.m_Id, score, false);
    return true;
}

bool readBoard(Database& database, const char* name, int game, int account, std::vector<ScoreRow>& rows, ScoreRow& own)
{
    const std::string board = name;
    return database.transact(
        [&](soci::session& sql)
        {
            const soci::rowset<soci::row> found =
                (sql.prepare
                     << "SELECT scores.account, name, score, reached FROM scores JOIN accounts ON accounts.id = "
                        "scores.account WHERE board = :board AND game = :game ORDER BY score DESC, reached, "
                        "scores.account LIMIT "
                     << kBoardRows,
                 soci::use(board), soci::use(game));
            for (const soci::row& each : found)
            {
                ScoreRow row;
                row.m_Rank = static_cast<int>(rows.size()) + 1;
                row.m_Account = each.get<int>(0);
                row.m_Name = fromUtf8(each.get<std::string>(1));
                row.m_Score = each.get<int>(2);
                row.m_Reached = fromUtf8(each.get<std::string>(3));
                rows.push_back(row);
            }
            std::string reached;
            sql << "SELECT score, reached FROM scores WHERE board = :board AND game = :game AND account = :account",
                soci::use(board), soci::use(game), soci::use(account), soci::into(own.m_Score), soci::into(reached);
            if (!sql.got_data())
                return true;
            int before = 0;
            sql << "SELECT COUNT(*) FROM scores WHERE board = :board AND game = :game AND (score > :score OR (score = "
                   ":score2 AND (reached < :reached OR (reached = :reached2 AND account < :account))))",
                soci::use(board), soci::use(game), soci::use(own.m_Score), soci::use(own.m_Score), soci::use(reached),
                soci::use(reached), soci::use(account), soci::into(before);
            own.m_Rank = before + 1;
            own.m_Account = account;
            own.m_Reached = fromUtf8(reached);
            return true;
        });
}

} // namespace arena::platform

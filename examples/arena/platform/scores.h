// The scores of the ranking boards, a row for each board, game and account.
#pragma once

#include "framework/string.h"

#include <string>
#include <vector>

namespace soci
{
class session;
}

namespace arena::platform
{

class Database;
struct StoredAccount;

namespace board
{
// All stars, the kilocalories of all games, and the most of one game: their game is 0.
constexpr char kAccount[] = "account";
constexpr char kCalorie[] = "calorie";
constexpr char kTupoCalorie[] = "tupo";
// The best score of each game.
constexpr char kBrain[] = "brain";
constexpr char kMusic[] = "music";
constexpr char kKinect[] = "kinect";
constexpr char kRush[] = "rush";
} // namespace board

// The highest rows of a board that a reply has.
constexpr int kBoardRows = 50;

struct ScoreRow
{
    int m_Rank = 0;
    int m_Account = 0;
    zet::String_T<wchar_t> m_Name;
    int m_Score = 0;
    zet::String_T<wchar_t> m_Reached;
};

// In the transaction that saves the end of a game: its score and kilocalories on the boards of its kind. A best score
// only rises, and a sum grows.
bool storeScores(soci::session& sql, const StoredAccount& account, int type, int game, int score, int calories);

// The first rows of a board, and the row of an account, with rank 0 if it has none. Of equal scores the one that was
// reached first is higher. False if the database failed.
bool readBoard(Database& database, const char* board, int game, int account, std::vector<ScoreRow>& rows,
               ScoreRow& own);

} // namespace arena::platform

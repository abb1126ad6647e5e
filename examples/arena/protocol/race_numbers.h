// What players, zones and game servers agree on: the numbers and texts in the commands of a game and its race.
#pragma once

namespace arena::race
{

// A game has 1 to 8 pawns.
inline constexpr int kMostPawns = 8;

// CCmdGZ_createGame::m_Value1: the number of pawns, and this bit for a game of the combat mode.
inline constexpr int kCombatBit = 0x100;
inline constexpr int kPawnsMask = 0xFF;

// CCmdGZ_gameReady::m_Value1: how the player wants to receive positions.
enum PositionRoad : int
{
    kPositionsByTcp = 0,
    kPositionsByUdp = 1
};

// GameSvrInfo::m_Text is the key of the zone, m_Value1 is the most games of the server, m_Value2 its UDP port or 0.

// CCmdGS_joinGameFail::m_Value1.
enum JoinRefusal : int
{
    kNoSuchGame = 1,
    kNotAPlayerOfIt = 2,
    kJoinedAlready = 3,
    kRaceHasBegun = 4
};

// CCmdGS_PawnFouled::m_Byte1. The float is the penalty in seconds.
enum Foul : unsigned char
{
    // CCmdGS_PawnStartRun before CCmdGS_PawnCanRun.
    kFalseStart = 1,
    // A reported distance that is behind the last one, or too far ahead of it. It does not count.
    kImpossibleStride = 2
};
inline constexpr float kFoulPenalty = 1.0f;

// CCmdGS_PawnRunning::m_Float1 is the distance from the start in metres; its list is the position on the screen, x and
// y. CCmdGS_PlayerRaceData has the name, the rank at this moment, the distance and the seconds since the start.
inline constexpr float kTrackLength = 100.0f;
inline constexpr float kLongestStride = 20.0f;
// CCmdGS_PawnInput is one step.
inline constexpr float kStepLength = 1.0f;

// CCmdGS_PawnScore has the name, the place and the seconds with penalties. A pawn that does not finish has no place.
inline constexpr int kNoPlace = 0;
// CCmdGS_PlayerReward has the name, the place, the points for the season and the coins.
constexpr int pointsOf(int place)
{
    return place == kNoPlace ? 0 : kMostPawns + 1 - place;
}
constexpr int coinsOf(int place)
{
    return 10 * pointsOf(place);
}
// The stack of the bag that the coins go to.
inline constexpr wchar_t kCoin[] = L"coin";

// AccountBS4Data: m_Text1 is the name, m_Value1 the races, m_Value2 the points, m_Value3 the best place.
// AccountCombatData: m_CombatRating changes by this for each place above or below the middle.
inline constexpr int kRatingStep = 8;

} // namespace arena::race

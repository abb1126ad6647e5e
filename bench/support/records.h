// The records of the benchmarks: accounts and the most frequent commands, different ones for each seed.
#pragma once

#include "commands/camera.h"
#include "commands/device.h"
#include "commands/race_pawn.h"
#include "packs/envelope.h"
#include "packs/home.h"
#include "playerdata/account_core.h"

#include <memory>
#include <random>

namespace bench
{

// Records that are used in turn, so that no branch is learned by heart.
constexpr int kRecords = 64;

constexpr int kGames = 30;
constexpr int kItems = 20;
// An account with that many games and items.
std::unique_ptr<AccountData> accountOf(unsigned seed);

void fill(CCmdGS_PawnRunning& command, std::mt19937& random);
void fill(CCmdGS_PawnInput& command, std::mt19937& random);
void fill(CCmdKeyEvent& command, std::mt19937& random);
void fill(CCmdTouchEvent& command, std::mt19937& random);
void fill(CCmdSkeletons& command, std::mt19937& random);
// With the start of a game as its message.
void fill(CCmdHomePackRequest& command, std::mt19937& random);

} // namespace bench

// All messages of the match feature itself. Its teams are in match_type.h, its later seasons in match4.h and
// combat_bs4.h.
#pragma once

#include "packs/match_best_family.h"
#include "packs/match_games.h"
#include "packs/match_rewards.h"
#include "packs/match_stamps.h"

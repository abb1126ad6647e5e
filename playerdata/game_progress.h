// Includes the records of all kinds of game, for hosts that handle every kind.
#pragma once

#include "playerdata/game_kinds.h"
#include "playerdata/game_object.h"
#include "playerdata/game_target.h"
#include "playerdata/game_training.h"

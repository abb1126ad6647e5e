// All messages of the query tool, a statistics client.
#pragma once

#include "packs/query_tool_access.h"
#include "packs/query_tool_games.h"
#include "packs/query_tool_online.h"
#include "packs/query_tool_payment.h"

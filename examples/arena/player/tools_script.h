// What programs ask: the profiling, the monitoring and the query tool of the operator, and the pool of social APIs.
#pragma once

#include "examples/arena/player/pack_client.h"

namespace arena::player
{

host::Task playProfiling(PackAccount& player, PackClient& packs);
// A player who is not the operator is refused.
host::Task playMonitoring(PackAccount& player, PackClient&);
host::Task playQueryTool(PackAccount& player, PackClient& packs);
host::Task playSocial(PackAccount& player, PackClient& packs);

} // namespace arena::player

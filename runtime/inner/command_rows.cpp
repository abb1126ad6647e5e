// Checks each row of commands.def against its class at compile time; contains no code. This is the lowest floor that
// may include both.
#include "runtime/inner/command_row.h"

#include "commands/account_access.h"
#include "commands/account_binding.h"
#include "commands/billing.h"
#include "commands/camera.h"
#include "commands/device.h"
#include "commands/game_centre.h"
#include "commands/game_zone.h"
#include "commands/lesson.h"
#include "commands/login.h"
#include "commands/logs.h"
#include "commands/mail.h"
#include "commands/payment.h"
#include "commands/progress.h"
#include "commands/race.h"
#include "commands/race_pawn.h"
#include "commands/rank.h"
#include "commands/registry.h"
#include "commands/server_choice.h"
#include "commands/server_status.h"
#include "commands/sport.h"
#include "commands/system_info.h"
#include "commands/zone_combat.h"
#include "commands/zone_players.h"
#include "commands/zone_tunnel.h"
#include "packs/envelope.h"
#include "packs/profiling.h"
#include "packs/social.h"

#define COMMAND(id, Class, Base) COMMAND_ROW_HOLDS(Class, Base)
#define SHARED(id, Class, Base) COMMAND_ROW_HOLDS(Class, Base)
#include "dispatch/commands.def"
#undef COMMAND
#undef SHARED

// Which envelope carries which feature message, as a constant of the two classes: packs/messages.def for the compiler.
#pragma once

#include "commands/account_payloads.h"
#include "commands/game_payloads.h"
#include "commands/shop_payloads.h"
#include "packs/achievement.h"
#include "packs/avatar.h"
#include "packs/changing_room.h"
#include "packs/combat_bs4.h"
#include "packs/envelope.h"
#include "packs/friend.h"
#include "packs/home.h"
#include "packs/in_purchase.h"
#include "packs/match.h"
#include "packs/match4.h"
#include "packs/match4_shop.h"
#include "packs/match_best_family.h"
#include "packs/match_games.h"
#include "packs/match_lottery.h"
#include "packs/match_rewards.h"
#include "packs/match_stamps.h"
#include "packs/match_type.h"
#include "packs/profiling.h"
#include "packs/query_tool.h"
#include "packs/query_tool_access.h"
#include "packs/query_tool_games.h"
#include "packs/query_tool_online.h"
#include "packs/query_tool_payment.h"
#include "packs/social.h"
#include "packs/sport.h"
#include "packs/travel.h"
#include "packs/wizard_square.h"

namespace host
{

// A host that has messages of its own specializes this for them.
template <class Message, class Envelope>
inline constexpr bool isCarriedBy = false;

#define MESSAGE(Envelope, Class)                                                                                       \
    template <>                                                                                                        \
    inline constexpr bool isCarriedBy<Class, Envelope> = true;
#define EITHER_WAY(Request, Reply, Class)                                                                              \
    MESSAGE(Request, Class)                                                                                            \
    MESSAGE(Reply, Class)
#include "packs/messages.def"
#undef MESSAGE
#undef EITHER_WAY

} // namespace host

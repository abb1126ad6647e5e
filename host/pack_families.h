// Which envelope carries which feature message, as a constant of the two classes. Made from packs/messages.def.
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
#include "playerdata/combat_rank.h"

#include <type_traits>

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

// The rank boards of combat and BS4. They are account records, since a command of the zone contains one of them, so
// packs/messages.def does not list them; to the client they are messages of the match feature.
template <>
inline constexpr bool isCarriedBy<CombatRankData_Pack_Reply, CCmdMatchPackReply> = true;
template <>
inline constexpr bool isCarriedBy<BS4RankData_Pack_Reply, CCmdMatchPackReply> = true;

// Whether a request and its reply may have the same number. In the protocol the two social messages of a pair have the
// same number, and a host may number the void-data messages so; in all other features each message has a number of its
// own. A host that has envelopes of its own specializes this for them.
template <class Envelope>
inline constexpr bool isNumberedByPair =
    std::is_base_of_v<CCmdSocialPlatform, Envelope> || std::is_base_of_v<CCmdVoidDataEnvelope, Envelope>;

// Whether a message is read into the present elements of its lists, so that the reader must size the lists first.
template <class Message>
inline constexpr bool isReadIntoElements = false;
template <>
inline constexpr bool isReadIntoElements<Match4Pack_CheckHstryRec_Reply> = true;

} // namespace host

// One statement of the wire order per class, in the class's .cpp. It reads like the layout:
//
//   WIRE_ORDER_BOTH(FGameTrade)
//   {
//       return LIST(r.m_Items) && FIELDS(r.m_TradeName, r.m_TradeText, r.m_MainType, r.m_Cost0, r.m_Cost1);
//   }
//
// Writing and reading for the packagers, the schema and the smallest size come from it. r is the record; steps are
// joined by &&, since a step that fails ends the walk. Most orders need five words:
//
//   FIELDS(members...)      fields in order, tested; a packager is sent as the size and the bytes of what it holds
//   HEAD(Base)              the fields of the base, anywhere in the order
//   LIST(list, words...)    a tested count, then that many tested elements into the emptied list
//   NO_FIELDS               a class without fields of its own
//   NOT_SENT(members...)    members that are not sent
//
// The others are departures that are on the wire and have to stay, each with a class that needs it. Steps:
//
//   UNTESTED                all fields are tried and decide nothing               CombatPlayerEntry
//   SKIPPED_ON_FAILURE      a field that cannot be read skips those after it in   MatchPlayerInfo
//                           the step and decides nothing; a writer tests them
//   EITHER_WAY(steps)       the first that fails ends these steps, and the walk   HomePack_PlayerNumList_Reply
//                           continues; a count not reached is 0
//   AGAIN                   fields that were sent before are sent again           AchievementPack_StartGame_Reply
//   COUNT_OF, ELEMENTS_OF   the two halves of a list, as separate steps           CCmdReplySortRush
//   TABLE(rows, columns...) N rows, each a cell of every column; no cell decides  CombatRankData_Pack_Reply
//       CountedRows         N is the COUNT_OF of the first column                 QT_Payment_Pay_Reply
//       SaidRows(n)         N is a number before the table; n is written          BS4RankData_Pack_Reply
//       SaidRows(n, m)      two numbers, for a grid of n by m cells               CombatRankData_Pack_Reply
//       OwnRows             N is the array's size; the number sent is ignored     MatchPackType_LotteryAllNum
//   THROUGH_ONE_LOCAL       untested lists that append by one local variable:     CombatPack_TicketGoodConfig_Reply
//                           what a failed read leaves out keeps the value of the
//                           element before
//   BY_HAND(word, steps)    what the class itself does differently, in its .cpp;  CCmdMaskImage
//                           the schema shows the word
//
// Words of a list, at most one of each group. What decides:
//
//   Untested                nothing, and a count that fails is 0                  CCmdGS_PawnRunning
//   ElementsUntested        the count; an element that fails is stored as far as  AchievementPack_Notice_Reply
//                           it was read, and the loop continues
//   ElementsUntestedOnRead  the same for a reader; a writer tests all             AccountData
//   UntestedOnRead          as Untested for a reader; a writer tests all          CmdAvatarLoadDataReply
//   UntestedOnWrite         as Untested for a writer; a reader tests all          CCmdProfilerUsage
//   LastElementDecides      the count and the last element; a writer tests all    CCmdMazurixGetLessonsReply
//   OnlyAboveZero           no element; a count that fails or is below 1          MatchPlayerInfo
//                           succeeds and leaves the list unchanged; a writer
//                           tests all
//
// Where a reader puts the elements:
//
//   Appends                 after what the list holds                             MatchPack_TeamAwards_Reply
//   ClearedFirst            into the list, emptied before its count is read       CCmdSystemInfoReply
//   SizedFirst              in place, the list sized to the count, not emptied    CCmdGC_gameZoneListResponse
//   IntoExistingSlots       into the elements it has; those beyond are dropped    Match4Pack_CheckHstryRec_Reply
//
// Where the key of a map's element comes from; the list of a map needs one of these:
//
//   Pairs                   it is sent before its value                           MatchPlayerInfo
//   KeyedBy(&T::m_Key)      a member of the element                               AccountData
//   KeyedByPosition         the element's place on the wire, from 0               AccountData
#pragma once

#include "packaging/wire/describer.h"
#include "packaging/wire/reader.h"
#include "packaging/wire/writer.h"

// A statement without its return is an error, whatever the compiler options.
#pragma GCC diagnostic error "-Wreturn-type"

#define FIELDS(...) v.Fields(#__VA_ARGS__, __VA_ARGS__)
#define HEAD(Base) v.template Head<Base>(r)
#define LIST(list, ...) v.template List<wire::departuresOf(__VA_ARGS__)>(#list, list)
#define NO_FIELDS true
#define NOT_SENT(...) v.NotSent(#__VA_ARGS__, __VA_ARGS__)

#define UNTESTED(...) v.UntestedFields(#__VA_ARGS__, __VA_ARGS__)
#define COUNT_OF(list) v.CountOf(#list, list)
#define ELEMENTS_OF(list, ...) v.template ElementsOf<wire::departuresOf(__VA_ARGS__)>(#list, list)
#define TABLE(rows, ...) v.template Table<rows>(#__VA_ARGS__, __VA_ARGS__)
#define THROUGH_ONE_LOCAL(...) v.ThroughOneLocal(#__VA_ARGS__, __VA_ARGS__)
#define BY_HAND(word, ...) v.Marked(#word, [&] { return __VA_ARGS__; })
#define AGAIN(...) BY_HAND(Again, FIELDS(__VA_ARGS__))
#define SKIPPED_ON_FAILURE(...) BY_HAND(SkippedOnFailure, FIELDS(__VA_ARGS__) || !std::is_const_v<R>)
#define EITHER_WAY(steps) BY_HAND(EitherWay, (steps) || true)

// Declares the walk, and makes the schema from it.
#define WIRE_SCHEMA(Class)                                                                                             \
    template <class V, class R>                                                                                        \
    static bool WalkOrder(V& v, R& r, wire::Order<Class>);                                                             \
    const wire::Schema& Class::Wire()                                                                                  \
    {                                                                                                                  \
        static constinit wire::LazySchema schema;                                                                      \
        return schema.get(#Class, &wire::describe<Class>);                                                             \
    }

#define WIRE_WRITE(Class, Packager)                                                                                    \
    bool Class::Write(Packager* pk) const                                                                              \
    {                                                                                                                  \
        wire::Writer<Packager> writer(*pk);                                                                            \
        return WalkOrder(writer, *this, wire::Order<Class>());                                                         \
    }

#define WIRE_READ(Class, Packager)                                                                                     \
    bool Class::Read(Packager* pk)                                                                                     \
    {                                                                                                                  \
        wire::Reader<Packager> reader(*pk);                                                                            \
        return WalkOrder(reader, *this, wire::Order<Class>());                                                         \
    }

#define WIRE_WALK(Class)                                                                                               \
    template <class V, class R>                                                                                        \
    static bool WalkOrder([[maybe_unused]] V& v, [[maybe_unused]] R& r, wire::Order<Class>)

// A record of the command packager, of the data packager, of both.
#define WIRE_ORDER_CMD(Class)                                                                                          \
    WIRE_SCHEMA(Class) WIRE_WRITE(Class, CCmdPackager) WIRE_READ(Class, CCmdPackager) WIRE_WALK(Class)
#define WIRE_ORDER_DATA(Class)                                                                                         \
    WIRE_SCHEMA(Class) WIRE_WRITE(Class, CDataPackager) WIRE_READ(Class, CDataPackager) WIRE_WALK(Class)
#define WIRE_ORDER_BOTH(Class)                                                                                         \
    WIRE_SCHEMA(Class)                                                                                                 \
    WIRE_WRITE(Class, CCmdPackager)                                                                                    \
    WIRE_READ(Class, CCmdPackager) WIRE_WRITE(Class, CDataPackager) WIRE_READ(Class, CDataPackager) WIRE_WALK(Class)

// A command: its order, and the pair of functions of dispatch/command_process.h.
#define WIRE_COMMAND(Class)                                                                                            \
    COMMAND_PAIR(Class)                                                                                                \
    WIRE_ORDER_CMD(Class)

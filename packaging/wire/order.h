// One statement of the wire order per class. The statement stands in the class's .cpp and reads like the layout:
//
//   WIRE_ORDER_BOTH(FGameTrade)
//   {
//       return LIST(r.m_Items) && FIELDS(r.m_TradeName, r.m_TradeText, r.m_MainType, r.m_Cost0, r.m_Cost1);
//   }
//
// Writing and reading for the packagers, the schema and the smallest size all come from it. r is the record; steps are
// joined by &&, since a step that fails ends the walk. Words behind a list name its departures: see quirks.h.
#pragma once

#include "packaging/wire/describer.h"
#include "packaging/wire/reader.h"
#include "packaging/wire/writer.h"

// Fields in order, tested.
#define FIELDS(...) v.Fields(#__VA_ARGS__, __VA_ARGS__)
// Fields in order, tested by a writer; where one cannot be read, those behind it are skipped and the walk goes on.
#define SKIPPED_ON_FAILURE(...) v.SkippedOnFailure(#__VA_ARGS__, __VA_ARGS__)
// Fields that are all tried and decide nothing.
#define UNTESTED(...) v.UntestedFields(#__VA_ARGS__, __VA_ARGS__)
// The same, set to 0 in front of reading.
#define UNTESTED_FROM_ZERO(...) v.UntestedFromZero(#__VA_ARGS__, __VA_ARGS__)
// A buffer that may be larger than a packager's buffer value.
#define UNLIMITED(buffer) v.Unlimited(#buffer, buffer)
// Members that stay at home.
#define NOT_SENT(...) v.NotSent(#__VA_ARGS__, __VA_ARGS__)
// A class without fields of its own.
#define NO_FIELDS true
// Steps that end at the first that fails, while the walk goes on behind them; a count not reached is 0.
#define EITHER_WAY(steps) v.EitherWay([&] { return steps; })
// The base's part, wherever it stands.
#define HEAD(Base) v.template Head<Base>(static_cast<wire::Like<R, Base>&>(r))
// A count and that many elements.
#define LIST(...) v.List(#__VA_ARGS__, __VA_ARGS__)
// The two halves of a list that stand apart.
#define COUNT_OF(list) v.CountOf(#list, list)
#define ELEMENTS_OF(...) v.ElementsOf(#__VA_ARGS__, __VA_ARGS__)
// Lists that reading adds to by way of one local for the elements of all: what a failed read leaves out keeps the value
// of the element before, across the lists too. Nothing in them decides, in either direction.
#define THROUGH_ONE_LOCAL(...) v.ThroughOneLocal(#__VA_ARGS__, __VA_ARGS__)
// The size and the bytes of a packager.
#define PAYLOAD(packager) v.Payload(#packager, packager)
// As many bytes of an array as an earlier field says, of which known have a value; they decide nothing on reading.
#define SIZED_BYTES(size, bytes, known) v.SizedBytes(#bytes, size, bytes, known)
// Parallel arrays sent row by row; the count of the first stands before, as COUNT_OF.
#define COLUMNS(...) v.Columns(#__VA_ARGS__, __VA_ARGS__)
// A fixed table behind a count that readers ignore.
#define BALLAST_COUNT(count, table) v.Ballast(#table, count, table)
// Tables sent cell by cell in turn, behind the literal numbers of their rows and columns.
#define INTERLEAVED(rows, columns, ...) v.template Interleaved<rows, columns>(#__VA_ARGS__, __VA_ARGS__)
#define INTERLEAVED_ROWS(rows, ...) v.template InterleavedRows<rows>(#__VA_ARGS__, __VA_ARGS__)

#define WIRE_DECLARE_WALK(Class)                                                                                       \
    template <class V, class R>                                                                                        \
    static bool WalkOrder(V& v, R& r, wire::Order<Class>);

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

// Instance stands in for a class that cannot be made by itself.
#define WIRE_SCHEMA_BY(Class, Instance)                                                                                \
    const wire::Schema& Class::Wire()                                                                                  \
    {                                                                                                                  \
        static const wire::Schema schema =                                                                             \
            wire::describe<Class, Instance>(#Class, [](wire::Describer& describer, const Class& record)                \
                                            { WalkOrder(describer, record, wire::Order<Class>()); });                  \
        return schema;                                                                                                 \
    }
#define WIRE_SCHEMA(Class) WIRE_SCHEMA_BY(Class, Class)

#define WIRE_WALK(Class)                                                                                               \
    template <class V, class R>                                                                                        \
    static bool WalkOrder([[maybe_unused]] V& v, [[maybe_unused]] R& r, wire::Order<Class>)

// A record of the command packager, of the data packager, of both.
#define WIRE_ORDER_CMD(Class)                                                                                          \
    WIRE_DECLARE_WALK(Class)                                                                                           \
    WIRE_WRITE(Class, CCmdPackager) WIRE_READ(Class, CCmdPackager) WIRE_SCHEMA(Class) WIRE_WALK(Class)
#define WIRE_ORDER_DATA(Class)                                                                                         \
    WIRE_DECLARE_WALK(Class)                                                                                           \
    WIRE_WRITE(Class, CDataPackager) WIRE_READ(Class, CDataPackager) WIRE_SCHEMA(Class) WIRE_WALK(Class)
#define WIRE_ORDER_BOTH(Class)                                                                                         \
    WIRE_DECLARE_WALK(Class)                                                                                           \
    WIRE_WRITE(Class, CCmdPackager)                                                                                    \
    WIRE_READ(Class, CCmdPackager)                                                                                     \
    WIRE_WRITE(Class, CDataPackager) WIRE_READ(Class, CDataPackager) WIRE_SCHEMA(Class) WIRE_WALK(Class)

// A command: its order, and the pair of functions that dispatch/command_process.h tells.
#define WIRE_COMMAND(Class)                                                                                            \
    COMMAND_PAIR(Class)                                                                                                \
    WIRE_ORDER_CMD(Class)

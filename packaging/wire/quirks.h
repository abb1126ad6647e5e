// The words for departures. A list's departures from "tested count, clear, tested elements" are one value of
// independent parts: what decides, where read elements go, where a map's key comes from. A list without a word has
// none. The table of the words is at the head of order.h.
#pragma once

#include <concepts>
#include <cstdint>

namespace wire
{

// What can fail the reading or the writing of a list.
enum class Decides : unsigned char
{
    kAll,         // the count and each element; the first that fails ends the list and fails
    kCount,       // the count; an element that fails is stored as far as it was read, and the loop continues
    kNothing,     // as kCount, and a count that fails is 0
    kLastElement, // as kCount, and then the last element
    kAboveZero    // as kCount, but a count that fails or is below 1 succeeds and leaves the list unchanged
};

// Where a reading puts the elements.
enum class Into : unsigned char
{
    kCleared,            // into the list, which is emptied after its count
    kClearedBeforeCount, // emptied before its count, so that a cut count leaves it empty
    kAppended,           // after what the list holds
    kThroughOneLocal,    // the same, by one local for all: what a failed read leaves out keeps the previous value
    kSized,              // in place: the list is sized to the count, not emptied; what fails keeps its value
    kSlots               // into the elements that the list has; those beyond them are read and dropped
};

// Where the key of a map's element comes from. Of two elements with one key the later is kept.
enum class Key : unsigned char
{
    kNone,
    kTravels, // it is sent before its value
    kPlace,   // the element's place on the wire, from 0: gaps close when the map is sent
    kMember   // a member of the element, which is not sent apart
};

// All departures of a list. Each word says one of three parts: what decides in the two directions, where elements go,
// where the key comes from. The schema has the same value.
struct Departures
{
    Decides reading = Decides::kAll;
    Decides writing = Decides::kAll;
    Into into = Into::kCleared;
    Key key = Key::kNone;
    // Two words say the same part.
    bool isContradiction = false;

    constexpr bool saysTests() const { return reading != Decides::kAll || writing != Decides::kAll; }
};

inline constexpr Departures Untested{.reading = Decides::kNothing, .writing = Decides::kNothing};
inline constexpr Departures ElementsUntested{.reading = Decides::kCount, .writing = Decides::kCount};
inline constexpr Departures ElementsUntestedOnRead{.reading = Decides::kCount};
inline constexpr Departures UntestedOnRead{.reading = Decides::kNothing};
inline constexpr Departures UntestedOnWrite{.writing = Decides::kNothing};
inline constexpr Departures LastElementDecides{.reading = Decides::kLastElement};
inline constexpr Departures OnlyAboveZero{.reading = Decides::kAboveZero};
inline constexpr Departures Appends{.into = Into::kAppended};
inline constexpr Departures ClearedFirst{.into = Into::kClearedBeforeCount};
inline constexpr Departures SizedFirst{.into = Into::kSized};
inline constexpr Departures IntoExistingSlots{.into = Into::kSlots};
inline constexpr Departures Pairs{.key = Key::kTravels};
inline constexpr Departures KeyedByPosition{.key = Key::kPlace};

// Departures together with the member of an element that is its key.
template <class Member>
struct KeyedDepartures : Departures
{
    Member member;
};
template <class T, class K>
constexpr KeyedDepartures<K T::*> KeyedBy(K T::*member)
{
    return {{.key = Key::kMember}, member};
}

// What both words say.
template <std::derived_from<Departures> A, std::derived_from<Departures> B>
constexpr auto operator+(const A& a, const B& b)
{
    const bool sameTests = a.saysTests() && b.saysTests();
    const bool samePlace = a.into != Into::kCleared && b.into != Into::kCleared;
    const bool sameKey = a.key != Key::kNone && b.key != Key::kNone;
    const Departures both{a.saysTests() ? a.reading : b.reading, a.saysTests() ? a.writing : b.writing,
                          a.into != Into::kCleared ? a.into : b.into, a.key != Key::kNone ? a.key : b.key,
                          a.isContradiction || b.isContradiction || sameTests || samePlace || sameKey};
    if constexpr (requires { a.member; })
        return KeyedDepartures<decltype(a.member)>{both, a.member};
    else if constexpr (requires { b.member; })
        return KeyedDepartures<decltype(b.member)>{both, b.member};
    else
        return both;
}

// The words of one list together.
template <class... Words>
constexpr auto departuresOf(const Words&... words)
{
    constexpr bool areWords = (std::derived_from<Words, Departures> && ...);
    static_assert(areWords, "only words for its departures can follow a list, such as wire::Untested");
    if constexpr (areWords)
        return (Departures() + ... + words);
    else
        return Departures();
}

// What gives the number of a list's elements, of a table's rows, of an array's bytes or items.
enum class Says : unsigned char
{
    kType,        // the array's own size; a table sends it, and readers ignore the number that they read
    kCount,       // a count right before; it bounds a reader's loop, and arrays bound what is kept
    kCountBefore, // a count earlier in the order, a step of its own
    kMember       // an int member earlier in the order
};

// The rows of a table: N rows, each a cell of every column. Two numbers are a table of tables, cell by cell.
struct Rows
{
    Says says;
    int rows = 0;
    int across = 0;
};

inline constexpr Rows CountedRows{Says::kCountBefore};
inline constexpr Rows OwnRows{Says::kType};
constexpr Rows SaidRows(int rows, int across = 0)
{
    return {Says::kCount, rows, across};
}

// Counts up to this are taken from the wire as they are, so that a payload of no more elements, cut or whole, behaves
// as it always did. A whole payload does so at any count.
constexpr int64_t kTrustedCount = 1024;

// The elements to read for a count from the wire, if each takes at least smallest bytes and left bytes remain: at most
// one more than fit, so that the loop meets the end of the payload, and memory grows with the bytes that arrived.
constexpr int64_t boundedCount(int64_t count, int64_t left, int64_t smallest)
{
    if (count <= 0)
        return 0;
    if (count <= kTrustedCount)
        return count;
    const int64_t most = left / (smallest > 0 ? smallest : 1) + 1;
    return count < most ? count : most;
}

} // namespace wire

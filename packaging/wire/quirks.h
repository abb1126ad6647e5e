// The words for departures. A list's departures from "tested count, clear, tested elements" are one value of
// independent parts: what decides, where read elements go, where a map's key comes from. A list without a word has
// none. The table of the words stands at the head of order.h.
#pragma once

#include <cstdint>

namespace wire
{

// What can fail the reading or the writing of a list.
enum class Decides : unsigned char
{
    kAll,         // the count and each element; the first that fails ends the list
    kCount,       // the count; an element that fails is stored as far as it was read, and the loop goes on
    kNothing,     // as kCount, and a count that fails is 0
    kLastElement, // as kCount, and then the last element
    kAboveZero    // as kCount, but a count that fails or is below 1 ends the list well and leaves it as it was
};

// Where a reading puts the elements.
enum class Into : unsigned char
{
    kCleared,            // into the list, which is emptied after its count
    kClearedBeforeCount, // emptied before its count, so that a cut count leaves it empty
    kAppended,           // after what the list holds
    kThroughOneLocal,    // the same, by one local for all: what a failed read leaves out keeps the element's before
    kSized,              // in place, the list sized to the count and not emptied: what fails keeps what it had
    kSlots               // into the elements that the list has; those beyond them are read and dropped
};

// Where the key of a map's element comes from; of two elements with one key the later stays.
enum class Key : unsigned char
{
    kNone,
    kTravels, // it goes before its value
    kPlace,   // the element's place on the wire, from 0: holes close when the map travels
    kMember   // a member of the element, which does not go by itself
};

// All departures of a list; the same value stands in its schema.
struct Departures
{
    Decides reading = Decides::kAll;
    Decides writing = Decides::kAll;
    Into into = Into::kCleared;
    Key key = Key::kNone;

    friend constexpr bool operator==(const Departures&, const Departures&) = default;
};

// A word says one of the three parts: what decides in the two directions, where elements go, where the key comes from.
struct Tests
{
    Decides reading;
    Decides writing;

    friend constexpr bool operator==(const Tests&, const Tests&) = default;
};
struct NoMember
{
};
template <class Member = NoMember>
struct KeyFrom
{
    Key key;
    Member member;
};

inline constexpr Tests Untested{Decides::kNothing, Decides::kNothing};
inline constexpr Tests ElementsUntested{Decides::kCount, Decides::kCount};
inline constexpr Tests ElementsUntestedOnRead{Decides::kCount, Decides::kAll};
inline constexpr Tests UntestedOnRead{Decides::kNothing, Decides::kAll};
inline constexpr Tests UntestedOnWrite{Decides::kAll, Decides::kNothing};
inline constexpr Tests LastElementDecides{Decides::kLastElement, Decides::kAll};
inline constexpr Tests OnlyAboveZero{Decides::kAboveZero, Decides::kAll};
inline constexpr Into Appends = Into::kAppended;
inline constexpr Into ClearedFirst = Into::kClearedBeforeCount;
inline constexpr Into SizedFirst = Into::kSized;
inline constexpr Into IntoExistingSlots = Into::kSlots;
inline constexpr KeyFrom<> Pairs{Key::kTravels, {}};
inline constexpr KeyFrom<> KeyedByPosition{Key::kPlace, {}};
template <class T, class K>
constexpr KeyFrom<K T::*> KeyedBy(K T::*member)
{
    return {Key::kMember, member};
}

// The name of any other departure, of a step or of what one class tells by hand in its source file.
struct Word
{
    const char* text;
};

inline constexpr Word Again{"Again"};
inline constexpr Word SkippedOnFailure{"SkippedOnFailure"};
inline constexpr Word EitherWay{"EitherWay"};

// Who says how many: elements of a list, cells of a table, bytes or items of an array.
enum class Says : unsigned char
{
    kType,        // the array's own size; a table sends it, and readers ignore what comes
    kCount,       // a count right before; it bounds a reading's loop, and arrays bound what is kept
    kCountBefore, // a count that went before, by itself
    kMember       // an int member that went before
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

// The words of one list together.
template <class Member>
struct ListForm
{
    Departures parts;
    Member member;
};

template <class Word>
inline constexpr int kPartOf = 0;
template <>
inline constexpr int kPartOf<Tests> = 1;
template <>
inline constexpr int kPartOf<Into> = 2;
template <class Member>
inline constexpr int kPartOf<KeyFrom<Member>> = 3;

template <int Part, class... Word>
inline constexpr int kWordsOfPart = (0 + ... + (kPartOf<Word> == Part));

constexpr void say(Departures& parts, Tests tests)
{
    parts.reading = tests.reading;
    parts.writing = tests.writing;
}
constexpr void say(Departures& parts, Into into)
{
    parts.into = into;
}
template <class Member>
constexpr void say(Departures& parts, KeyFrom<Member> from)
{
    parts.key = from.key;
}

constexpr NoMember memberOf()
{
    return {};
}
template <class Word, class... More>
constexpr auto memberOf([[maybe_unused]] Word word, [[maybe_unused]] More... more)
{
    if constexpr (kPartOf<Word> == 3)
        return word.member;
    else
        return memberOf(more...);
}

template <class... Word>
constexpr auto formOf(Word... words)
{
    constexpr bool areWords = ((kPartOf<Word> != 0) && ...);
    static_assert(areWords, "after the list stand words for its departures, such as wire::Untested, and nothing else");
    static_assert(
        !areWords || (kWordsOfPart<1, Word...> <= 1 && kWordsOfPart<2, Word...> <= 1 && kWordsOfPart<3, Word...> <= 1),
        "the words of a list contradict each other: one at most says what decides, one where elements go, one "
        "where the key comes from");
    if constexpr (areWords)
    {
        ListForm<decltype(memberOf(words...))> form{{}, memberOf(words...)};
        (say(form.parts, words), ...);
        return form;
    }
    else
    {
        return ListForm<NoMember>{};
    }
}

// Counts up to this are taken as told, so that a payload of no more elements, cut or whole, behaves as it always did. A
// whole payload does so at any count.
constexpr int64_t kTrustedCount = 1024;

// How many elements a count from the wire may ask for, when each takes at least smallest bytes and left are there.
// One more than can be there: the loop meets the end of the payload, and the memory follows the bytes.
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

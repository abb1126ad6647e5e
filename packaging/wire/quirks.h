// The words for the departures of a list from "tested count, clear, tested elements", one definition each. A list that
// carries no word has no departure. Other departures are steps of their own, or a Read that is written by hand.
#pragma once

#include <cstdint>

namespace wire
{

enum Quirk : unsigned
{
    kAppends = 1 << 0,
    kClearedFirst = 1 << 1,
    kUntestedCount = 1 << 2,
    kUntestedElements = 1 << 3,
    kUntestedElementsOnRead = 1 << 4,
    kSizedFirst = 1 << 5,
    kIntoExistingSlots = 1 << 6,
    kThroughOneLocal = 1 << 7,
    kLastElementDecides = 1 << 8,
    kByPosition = 1 << 9,
    kPairs = 1 << 10,
    kOnlyAboveZero = 1 << 11,
    kKeyed = 1 << 12,
    kUntestedCountOnRead = 1 << 13,
    kUntestedOnWrite = 1 << 14
};

template <unsigned F>
struct Word
{
    static constexpr unsigned kFlags = F;
};

// The map's key is a member of the element and does not travel by itself; of two elements with one key the later stays.
template <class T, class K>
struct KeyWord
{
    static constexpr unsigned kFlags = kKeyed;
    K T::*m_Member;
};
template <class T, class K>
constexpr KeyWord<T, K> KeyedBy(K T::*member)
{
    return {member};
}

// Reading adds to what the list holds.
inline constexpr Word<kAppends> Appends;
// Reading empties the list before its count is read, so that a cut count leaves it empty.
inline constexpr Word<kClearedFirst> ClearedFirst;
// Neither the count nor an element decides the result, in either direction; a count that fails is 0.
inline constexpr Word<kUntestedCount | kUntestedElements> Untested;
// The count decides, the elements do not: one that fails is stored as far as it was read, and the loop goes on.
inline constexpr Word<kUntestedElements> ElementsUntested;
// The same for reading alone; a writer stops at the first element that fails.
inline constexpr Word<kUntestedElementsOnRead> ElementsUntestedOnRead;
// Neither the count nor an element decides a reading, and a count that fails is 0; a writer tests both.
inline constexpr Word<kUntestedCountOnRead | kUntestedElementsOnRead> UntestedOnRead;
// Neither decides a writing; a reader tests both.
inline constexpr Word<kUntestedOnWrite> UntestedOnWrite;
// Reading sizes the list to the count and fills it in place, uncleared: an element that fails keeps what it had.
inline constexpr Word<kSizedFirst> SizedFirst;
// Reading stores into the slots that the list has; elements beyond them are taken from the payload and dropped.
inline constexpr Word<kIntoExistingSlots> IntoExistingSlots;
// Reading stores every element, and the last one read decides the result. A writer tests each.
inline constexpr Word<kUntestedElementsOnRead | kLastElementDecides> LastElementDecides;
// The map's key is the element's place on the wire, from 0: holes close when it travels.
inline constexpr Word<kByPosition> KeyedByPosition;
// The map's key travels in front of its value.
inline constexpr Word<kPairs> Pairs;
// A count that cannot be read or is below 1 ends the list well and leaves it as it was; above that the list is cleared,
// and its elements are read untested. A writer tests both.
inline constexpr Word<kOnlyAboveZero | kUntestedElementsOnRead> OnlyAboveZero;

template <class... W>
inline constexpr unsigned kFlagsOf = (0u | ... | W::kFlags);

// The four things that words can say of a list; of each, one word is all there can be.
constexpr unsigned kWordsOfKey = kKeyed | kByPosition | kPairs;
constexpr unsigned kWordsOfPlace = kAppends | kClearedFirst | kSizedFirst | kIntoExistingSlots;
constexpr unsigned kWordsOfReading = kUntestedCount | kUntestedElements | kUntestedElementsOnRead |
                                     kUntestedCountOnRead | kLastElementDecides | kOnlyAboveZero;
constexpr unsigned kWordsOfWriting = kUntestedCount | kUntestedElements | kUntestedOnWrite;

// How many of the words say one of them.
template <unsigned What, class... W>
inline constexpr int kWordsAbout = (0 + ... + ((W::kFlags & What) != 0));

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

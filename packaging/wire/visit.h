// What the writer, the reader and the describer share: what can stand in an order, and how containers look.
#pragma once

#include "packaging/wire/quirks.h"
#include "packaging/wire/schema.h"
#include "packaging/wire/value_form.h"

#include <array>
#include <cassert>
#include <map>
#include <type_traits>
#include <utility>
#include <vector>

namespace wire
{

// Names the class whose order a walk states.
template <class T>
struct Order
{
};

// An array of bytes travels in one piece: cut, it is not read at all.
template <class T>
inline constexpr bool kIsRawBytes = std::is_same_v<std::remove_extent_t<T>, unsigned char>&& std::is_array_v<T>;

template <class T>
inline constexpr bool kIsPair = false;
template <class A, class B>
inline constexpr bool kIsPair<std::pair<A, B>> = true;

// A class with an order of its own.
template <class T>
concept Record = std::is_class_v<T> && requires
{
    T::Wire();
};

// Bytes of the smallest value of T.
template <class T>
int64_t smallest()
{
    using E = std::remove_all_extents_t<T>;
    // NOLINTNEXTLINE(bugprone-sizeof-expression): an array of pointers does not occur.
    constexpr int64_t times = static_cast<int64_t>(sizeof(T) / sizeof(E));
    if constexpr (kFixedSize<E> != 0)
        return kFixedSize<E> * times;
    else if constexpr (Record<E>)
        return E::Wire().smallest * times;
    else if constexpr (kIsPair<E>)
        return (smallest<typename E::first_type>() + smallest<typename E::second_type>()) * times;
    else if constexpr (std::is_same_v<E, zet::Buffer>)
        return 4 * times;
    else
        return times;
}

template <class C>
inline constexpr bool kIsMap = false;
template <class K, class T>
inline constexpr bool kIsMap<std::map<K, T>> = true;

template <class C>
struct ElementOf
{
    using Type = typename C::value_type;
};
template <class K, class T>
struct ElementOf<std::map<K, T>>
{
    using Type = T;
};

template <class C>
inline constexpr bool kIsVector = false;
template <class T>
inline constexpr bool kIsVector<std::vector<T>> = true;

// Whether a list's key can come from that member; other keys have none.
template <class C, class Member>
inline constexpr bool kIsMemberOfElement = true;
template <class C, class T, class K>
inline constexpr bool kIsMemberOfElement<C, K T::*> = std::is_base_of_v<T, typename C::mapped_type>;

// What is wrong with a list and its words.
enum class Nonsense
{
    kNone,
    kNoContainer,
    kMapWithoutKey,
    kKeyWithoutMap,
    kForeignKey,
    kSizedMap,
    kLastOfSlots,
    kLeftAndCleared,
    kIdleClearedFirst,
    kCountApart
};

// Apart: the count of the list is a step of its own.
template <class C, class Member>
constexpr Nonsense nonsenseOf(const ListForm<Member>& form, bool isApart)
{
    if constexpr (!kIsMap<C> && !kIsVector<C>)
    {
        return Nonsense::kNoContainer;
    }
    else
    {
        const auto [reading, writing, into, key] = form.parts;
        const bool fillsSlots = into == Into::kSized || into == Into::kSlots;
        if (kIsMap<C> != (key != Key::kNone))
            return kIsMap<C> ? Nonsense::kMapWithoutKey : Nonsense::kKeyWithoutMap;
        if constexpr (kIsMap<C>)
            if (!kIsMemberOfElement<C, Member>)
                return Nonsense::kForeignKey;
        if (kIsMap<C> && fillsSlots)
            return Nonsense::kSizedMap;
        if (reading == Decides::kLastElement && (kIsMap<C> || fillsSlots))
            return Nonsense::kLastOfSlots;
        if (reading == Decides::kAboveZero && into == Into::kClearedBeforeCount)
            return Nonsense::kLeftAndCleared;
        if (reading == Decides::kNothing && into == Into::kClearedBeforeCount)
            return Nonsense::kIdleClearedFirst;
        if (isApart && (reading == Decides::kNothing || writing == Decides::kNothing ||
                        reading == Decides::kAboveZero || into == Into::kClearedBeforeCount))
            return Nonsense::kCountApart;
        return Nonsense::kNone;
    }
}

// Refuses nonsense, with one sentence. Every order is described once, so the describer alone asks; the other two leave
// out what does not make sense, so that nothing else is reported.
template <class C, auto Form, bool IsApart>
constexpr void refuseNonsense()
{
    constexpr Nonsense wrong = nonsenseOf<C>(Form, IsApart);
    static_assert(wrong != Nonsense::kNoContainer, "LIST, COUNT_OF and ELEMENTS_OF take a std::vector or a std::map; "
                                                   "other members go in FIELDS");
    static_assert(wrong != Nonsense::kMapWithoutKey,
                  "the list of a map needs KeyedBy, KeyedByPosition or Pairs: without a key all elements are one");
    static_assert(wrong != Nonsense::kKeyWithoutMap,
                  "KeyedBy, KeyedByPosition and Pairs are words for a map: the elements of another list have no key");
    static_assert(wrong != Nonsense::kForeignKey, "KeyedBy names a member of the map's element");
    static_assert(wrong != Nonsense::kSizedMap,
                  "SizedFirst and IntoExistingSlots are for a list with places: a map has none");
    static_assert(wrong != Nonsense::kLastOfSlots, "LastElementDecides is for a list that elements are put behind: no "
                                                   "map, SizedFirst or IntoExistingSlots");
    static_assert(wrong != Nonsense::kLeftAndCleared,
                  "OnlyAboveZero leaves a list as it was, which ClearedFirst has emptied by then");
    static_assert(wrong != Nonsense::kIdleClearedFirst,
                  "ClearedFirst does nothing here: a list whose count does not decide is always emptied");
    static_assert(wrong != Nonsense::kCountApart,
                  "a word about the count does nothing at ELEMENTS_OF: COUNT_OF has read and tested it before");
}

// The cells of a table's column: of a vector its elements, of an array those of the last extent.
template <class T>
struct CellOf
{
    using Type = std::remove_all_extents_t<T>;
};
template <class T>
struct CellOf<std::vector<T>>
{
    using Type = T;
};
template <class T>
inline constexpr int kCells = static_cast<int>(sizeof(T) / sizeof(std::remove_all_extents_t<T>));
// Cells of a column in each line of a table of tables.
template <class T>
inline constexpr int kAcross = std::rank_v<T> == 2 ? static_cast<int>(std::extent_v<T, 1>) : 1;

// Whether a column belongs to a table of these rows.
template <class T>
constexpr bool isColumn(const Rows& rows)
{
    if (rows.says == Says::kCountBefore)
        return kIsVector<T>;
    if (rows.says == Says::kType)
        return std::is_array_v<T>;
    return std::rank_v<T> == (rows.across != 0 ? 2 : 1) && static_cast<int>(std::extent_v<T>) == rows.rows &&
           (rows.across == 0 || kAcross<T> <= rows.across);
}

// Where in a run of fixed-size fields a field stands: the bytes of the run if it is the first of one, its place in it.
struct Place
{
    int runBytes = 0;
    int offset = -1;
};

// Finds the runs of fixed-size fields, so that one look at the room serves a whole run.
template <class... T>
constexpr std::array<Place, sizeof...(T)> placesOf()
{
    constexpr int sizes[] = {kFixedSize<T>...};
    std::array<Place, sizeof...(T)> places{};
    size_t first = 0;
    for (size_t i = 0; i < sizeof...(T); ++i)
    {
        if (sizes[i] == 0)
        {
            first = i + 1;
            continue;
        }
        places[i].offset = i == first ? 0 : places[i - 1].offset + sizes[i - 1];
        places[first].runBytes += sizes[i];
    }
    return places;
}

// A writer takes a record const, a reader takes it as it is.
template <class R, class Base>
using Like = std::conditional_t<std::is_const_v<R>, const Base, Base>;

// The count of a list that stands apart from its elements, until they come.
class PendingCounts
{
public:
    void set(const void* list, int count)
    {
        assert(m_Used < kMost && "an order holds back more counts than there is room for");
        if (m_Used < kMost)
            m_Entries[m_Used++] = {list, count};
    }
    int get(const void* list) const
    {
        for (int i = 0; i < m_Used; ++i)
            if (m_Entries[i].m_List == list)
                return m_Entries[i].m_Count;
        return 0;
    }

private:
    struct Entry
    {
        const void* m_List;
        int m_Count;
    };
    static constexpr int kMost = 12;
    Entry m_Entries[kMost];
    int m_Used = 0;
};

} // namespace wire

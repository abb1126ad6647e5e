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

// A value that a packager writes and reads by itself.
template <class T>
inline constexpr bool kIsValue =
    std::is_arithmetic_v<T> ? kFixedSize<T> != 0 || std::is_same_v<T, float>
                            : std::is_same_v<T, zet::String_T<wchar_t>> || std::is_same_v<T, zet::Uuid> ||
                                  std::is_same_v<T, zet::uuid_node_t> || std::is_same_v<T, zet::Buffer>;

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

// Refuses words that contradict each other or the container. Every order is described once, so the describer asks.
template <class C, class... W>
constexpr void checkWords()
{
    constexpr unsigned flags = kFlagsOf<W...>;
    constexpr bool fillsSlots = flags & (kSizedFirst | kIntoExistingSlots);
    static_assert(!kIsMap<C> || (flags & kWordsOfKey),
                  "the list of a map needs KeyedBy, KeyedByPosition or Pairs: without a key all elements are one");
    static_assert(kIsMap<C> || !(flags & kWordsOfKey),
                  "KeyedBy, KeyedByPosition and Pairs are words for a map: the elements of another list have no key");
    static_assert(!(flags & kLastElementDecides) || !(kIsMap<C> || fillsSlots),
                  "LastElementDecides is for a list that elements are put behind: no map, SizedFirst or "
                  "IntoExistingSlots");
    static_assert(!(kIsMap<C> && fillsSlots), "SizedFirst and IntoExistingSlots are for a list with places: no map");
    static_assert(!((flags & kOnlyAboveZero) && (flags & kClearedFirst)),
                  "OnlyAboveZero leaves a list as it was, which ClearedFirst has emptied by then");
    static_assert(kWordsAbout<kWordsOfKey, W...> <= 1 && kWordsAbout<kWordsOfPlace, W...> <= 1 &&
                      kWordsAbout<kWordsOfReading, W...> <= 1 && kWordsAbout<kWordsOfWriting, W...> <= 1,
                  "the words of a list contradict each other: one at most for the key, for where elements go, for what "
                  "decides a reading, for what decides a writing");
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

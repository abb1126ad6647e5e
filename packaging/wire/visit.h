// What the writer, the reader and the describer share: what can be in an order, and the shape of containers and tables.
#pragma once

#include "packaging/wire/quirks.h"
#include "packaging/wire/schema.h"
#include "packaging/wire/value_form.h"

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

// A class with an order of its own.
template <class T>
concept Record = std::is_class_v<T> && requires
{
    T::Wire();
};

// An array of bytes is read in one piece: cut, it is not read at all.
template <class T>
inline constexpr bool kIsRawBytes = std::is_same_v<std::remove_extent_t<T>, unsigned char>&& std::is_array_v<T>;
// A packager as a member: the size and the bytes of what it holds.
template <class T>
inline constexpr bool kIsPackager = std::is_same_v<T, CCmdPackager> || std::is_same_v<T, CDataPackager>;
// Whether T is made from that template, std::vector or std::pair for instance.
template <template <class...> class Of, class T>
inline constexpr bool kIsA = false;
template <template <class...> class Of, class... Args>
inline constexpr bool kIsA<Of, Of<Args...>> = true;

// Refuses what is not a value, a record or made of these. What was refused is left out by the steps, here and below, so
// that nothing else is reported.
template <class T>
constexpr bool isField()
{
    constexpr bool is = kValueType<T>.name != nullptr || Record<T> || kIsPackager<T> || kIsA<std::pair, T>;
    static_assert(is, "an order holds packager values, records with Wire(), arrays and pairs of these; a container "
                      "needs LIST");
    return is;
}

// The value type of a vector or a map, the innermost type of an array.
template <class C>
struct ElementOf
{
    using Type = std::remove_all_extents_t<C>;
};
template <class T>
struct ElementOf<std::vector<T>>
{
    using Type = T;
};
template <class K, class T>
struct ElementOf<std::map<K, T>>
{
    using Type = T;
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
    else if constexpr (kIsA<std::pair, E>)
        return (smallest<typename E::first_type>() + smallest<typename E::second_type>()) * times;
    else if constexpr (std::is_same_v<E, zet::Buffer> || kIsPackager<E>)
        return kFixedSize<int> * times;
    else
        return times;
}

// Refuses a list that is not a container.
template <class C>
constexpr bool isContainer()
{
    static_assert(kIsA<std::map, C> || kIsA<std::vector, C>,
                  "LIST, COUNT_OF and ELEMENTS_OF take a std::vector or a std::map; other members go in FIELDS");
    return kIsA<std::map, C> || kIsA<std::vector, C>;
}

template <class T>
inline constexpr bool kNever = false;

// Refuses a list whose words do not fit it or each other, with one sentence at the list's own line.
// kIsApart: the list's count is a step of its own.
template <class C, auto kWords, bool kIsApart>
constexpr bool makesSense()
{
    constexpr Departures how = kWords;
    constexpr bool fillsSlots = how.into == Into::kSized || how.into == Into::kSlots;
    constexpr bool isForeignKey = how.key == Key::kMember && !requires(const typename ElementOf<C>::Type& element)
    {
        element.*kWords.member;
    };
    constexpr bool isClearedFirst = how.into == Into::kClearedBeforeCount;
    if constexpr (!isContainer<C>())
        return false;
    else if constexpr (how.isContradiction)
        static_assert(kNever<C>, "the words of a list contradict each other: one at most says what decides, one where "
                                 "elements go, one where the key comes from");
    else if constexpr (kIsA<std::map, C> && how.key == Key::kNone)
        static_assert(kNever<C>, "the list of a map needs KeyedBy, KeyedByPosition or Pairs: without a key all "
                                 "elements are one");
    else if constexpr (!kIsA<std::map, C> && how.key != Key::kNone)
        static_assert(kNever<C>, "KeyedBy, KeyedByPosition and Pairs are words for a map: the elements of another list "
                                 "have no key");
    else if constexpr (isForeignKey)
        static_assert(kNever<C>, "KeyedBy names a member of the map's element");
    else if constexpr (kIsA<std::map, C> && fillsSlots)
        static_assert(kNever<C>, "SizedFirst and IntoExistingSlots are for a list with places: a map has none");
    else if constexpr (how.reading == Decides::kLastElement && (kIsA<std::map, C> || fillsSlots))
        static_assert(kNever<C>,
                      "LastElementDecides is for a list that grows element by element: no map, SizedFirst or "
                      "IntoExistingSlots");
    else if constexpr (how.reading == Decides::kAboveZero && isClearedFirst)
        static_assert(kNever<C>, "OnlyAboveZero leaves a list as it was, which ClearedFirst has emptied by then");
    else if constexpr (how.reading == Decides::kNothing && isClearedFirst)
        static_assert(kNever<C>,
                      "ClearedFirst does nothing here: a list whose count does not decide is always emptied");
    else if constexpr (kIsApart && (how.reading == Decides::kNothing || how.writing == Decides::kNothing ||
                                    how.reading == Decides::kAboveZero || isClearedFirst))
        static_assert(kNever<C>,
                      "a word about the count does nothing at ELEMENTS_OF: COUNT_OF has read and tested it before");
    else
        return true;
    return false;
}

// Cells of an array, and those in each line of an array of arrays.
template <class T>
inline constexpr int kCells = static_cast<int>(sizeof(T) / sizeof(std::remove_all_extents_t<T>));
template <class T>
inline constexpr int kAcross = std::rank_v<T> == 2 ? static_cast<int>(std::extent_v<T, 1>) : 1;

// Whether a column belongs to a table of these rows.
template <class T>
constexpr bool isColumn(const Rows& rows)
{
    if (rows.says == Says::kCountBefore)
        return kIsA<std::vector, T>;
    if (rows.says == Says::kType)
        return std::is_array_v<T>;
    return std::rank_v<T> == (rows.across != 0 ? 2 : 1) && static_cast<int>(std::extent_v<T>) == rows.rows &&
           (rows.across == 0 || kAcross<T> <= rows.across);
}

// A cell of a column, or null beyond its end.
template <class T>
auto* cellOf(T& column, int64_t row, int64_t at)
{
    if constexpr (std::rank_v<T> == 2)
        return row < std::ssize(column) && at < kAcross<T> ? &column[row][at] : nullptr;
    else
        return row < std::ssize(column) ? std::data(column) + row : nullptr;
}

} // namespace wire

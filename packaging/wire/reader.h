// Reads a record by its order. No count from the wire decides memory or time: see boundedCount.
#pragma once

#include "packaging/wire/head_form.h"
#include "packaging/wire/visit.h"

#include <algorithm>

namespace wire
{

template <class P>
class Reader
{
public:
    explicit Reader(P& packager) : m_Packager(packager) {}

    // Fields in order, up to the first that fails; what was read by then stays.
    template <class... T>
    bool Fields(const char*, T&... values)
    {
        return fields(std::index_sequence_for<T...>(), values...);
    }
    // The first that fails skips those behind it and decides nothing.
    template <class... T>
    bool SkippedOnFailure(const char* names, T&... values)
    {
        Fields(names, values...);
        return true;
    }
    // Every field is tried, and none decides; one that fails keeps its value.
    template <class... T>
    bool UntestedFields(const char*, T&... values)
    {
        (everyElement(values), ...);
        return true;
    }
    // The same, each slot starting at 0.
    template <class... T>
    bool UntestedFromZero(const char*, T&... values)
    {
        (zero(values), ...);
        (everyElement(values), ...);
        return true;
    }
    bool Unlimited(const char*, zet::Buffer& buffer) { return readSizedBytes(m_Packager, &buffer); }
    template <class... T>
    bool NotSent(const char*, T&...)
    {
        return true;
    }
    template <class Steps>
    bool EitherWay(Steps steps)
    {
        steps();
        return true;
    }
    template <class Base>
    bool Head(Base& base)
    {
        if constexpr (kIsHead<Base>)
            return readHead(m_Packager, base);
        else
            return base.Base::Read(&m_Packager);
    }

    template <class C, class... W>
    bool List(const char*, C& list, W... words)
    {
        constexpr unsigned flags = kFlagsOf<W...>;
        if constexpr (flags & kClearedFirst)
            list.clear();
        int count = 0;
        if (!one(count) && !(flags & (kUntestedCount | kUntestedCountOnRead | kOnlyAboveZero)))
            return false;
        return elements<flags>(list, count, words...);
    }
    template <class C>
    bool CountOf(const char*, const C& list)
    {
        int count = 0;
        if (!one(count))
            return false;
        m_Counts.set(&list, count);
        return true;
    }
    template <class C, class... W>
    bool ElementsOf(const char*, C& list, W... words)
    {
        return elements<kFlagsOf<W...>>(list, m_Counts.get(&list), words...);
    }
    template <class First, class... C>
    bool ThroughOneLocal(const char*, First& first, C&... rest)
    {
        typename First::value_type local{};
        addThrough(local, first);
        (addThrough(local, rest), ...);
        return true;
    }
    // The bytes go straight from one packager into the other, behind what that holds. A size that no packager has
    // room for is told to the log; one that the payload does not have is refused without a word.
    template <class Inner>
    bool Payload(const char*, Inner& inner)
    {
        int size = 0;
        if (!one(size) || size < 0)
            return false;
        if (size > CCmdPackager::kMaxDataSize)
            return m_Packager.Alloc(size);
        const unsigned char* bytes = Access::next(m_Packager, size);
        if (!bytes)
            return false;
        Access::took(m_Packager, size);
        return inner.Write(bytes, size);
    }
    // Bytes beyond the array are taken from the payload and dropped. A byte that is missing keeps its value where
    // known says that it has one, and becomes 0 elsewhere: the array starts unset.
    template <size_t N>
    bool SizedBytes(const char*, int size, unsigned char (&bytes)[N], int known)
    {
        const int most = static_cast<int>(N);
        const int present = std::clamp(size, 0, Access::left(m_Packager));
        const int kept = std::min(present, most);
        if (kept > 0)
            std::memcpy(bytes, Access::next(m_Packager, kept), static_cast<size_t>(kept));
        Access::took(m_Packager, present);
        const int unset = std::max(kept, std::min(known, most));
        if (unset < std::min(size, most))
            std::memset(bytes + unset, 0, static_cast<size_t>(std::min(size, most) - unset));
        return true;
    }
    // All columns are emptied, sized to the rows, and filled row by row; no cell decides.
    template <class First, class... C>
    bool Columns(const char*, First& first, C&... rest)
    {
        const int64_t row =
            smallest<typename First::value_type>() + (int64_t(0) + ... + smallest<typename C::value_type>());
        const size_t rows = static_cast<size_t>(boundedCount(m_Counts.get(&first), Access::left(m_Packager), row));
        first.clear();
        first.resize(rows);
        (rest.clear(), ...);
        (rest.resize(rows), ...);
        for (size_t i = 0; i < rows; ++i)
        {
            one(first[i]);
            (one(rest[i]), ...);
        }
        return true;
    }
    // The count on the wire is ballast: the table's own size rules.
    template <class T>
    bool Ballast(const char*, int, T& table)
    {
        int ignored = 0;
        one(ignored);
        everyElement(table);
        return true;
    }
    // The wire bounds the loop, the tables bound what is kept: cells beyond them are read and dropped.
    template <size_t Rows, size_t Columns, class First, class... T>
    bool Interleaved(const char*, First& first, T&... rest)
    {
        using Cell = std::remove_all_extents_t<First>;
        int rows = 0;
        int columns = 0;
        one(rows);
        one(columns);
        if (rows <= 0 || columns <= 0)
            return true;
        // Columns beyond the narrow tables hold a cell of each full table only.
        constexpr int64_t full = ((std::extent_v<First, 1> == Columns) + ... + (std::extent_v<T, 1> == Columns));
        const int64_t cells = boundedCount(int64_t(rows) * columns, Access::left(m_Packager), smallest<Cell>() * full);
        for (int64_t cell = 0; cell < cells; ++cell)
        {
            tableCell<Columns>(first, cell / columns, cell % columns);
            (tableCell<Columns>(rest, cell / columns, cell % columns), ...);
        }
        return true;
    }
    // The count starts at the tables' own, for a payload that ends before it.
    template <size_t Rows, class Cell, class... T>
    bool InterleavedRows(const char*, Cell (&first)[Rows], T (&... rest)[Rows])
    {
        int count = static_cast<int>(Rows);
        one(count);
        const int64_t rows = boundedCount(count, Access::left(m_Packager), smallest<Cell>() * (1 + sizeof...(T)));
        for (int64_t row = 0; row < rows; ++row)
        {
            rowCell(first, row);
            (rowCell(rest, row), ...);
        }
        return true;
    }

    template <class T>
    bool one(T& value)
    {
        if constexpr (kIsRawBytes<T>)
        {
            return readScalar(m_Packager, &value);
        }
        else if constexpr (std::is_array_v<T>)
        {
            for (auto& element : value)
                if (!one(element))
                    return false;
            return true;
        }
        else if constexpr (kFixedSize<T> != 0)
        {
            return readScalar(m_Packager, &value);
        }
        else if constexpr (std::is_same_v<T, float>)
        {
            return readFloat(m_Packager, &value);
        }
        else if constexpr (std::is_same_v<T, zet::String_T<wchar_t>>)
        {
            return readText(m_Packager, &value);
        }
        else if constexpr (std::is_same_v<T, zet::Buffer>)
        {
            return readBuffer(m_Packager, &value);
        }
        else if constexpr (kIsPair<T>)
        {
            return one(value.first) && one(value.second);
        }
        else
        {
            static_assert(Record<T>, "an order holds packager values, records with Wire(), arrays and pairs of these; "
                                     "a container needs LIST");
            return value.Read(&m_Packager);
        }
    }

private:
    template <size_t... I, class... T>
    bool fields(std::index_sequence<I...>, T&... values)
    {
        [[maybe_unused]] static constexpr auto places = placesOf<T...>();
        [[maybe_unused]] const unsigned char* run = nullptr;
        return (field<places[I].runBytes, places[I].offset>(run, values) && ...);
    }
    template <int RunBytes, int Offset, class T>
    bool field(const unsigned char*& run, T& value)
    {
        if constexpr (Offset < 0)
        {
            return one(value);
        }
        else
        {
            if constexpr (RunBytes != 0)
            {
                run = Access::next(m_Packager, RunBytes);
                if (run)
                    Access::took(m_Packager, RunBytes);
            }
            if (!run)
                return one(value);
            load(run + Offset, value);
            return true;
        }
    }

    template <unsigned Flags, class C, class... W>
    bool elements(C& list, int count, W... words)
    {
        if constexpr (Flags & kOnlyAboveZero)
        {
            if (count < 1)
                return true;
        }
        using T = typename ElementOf<C>::Type;
        int64_t size = smallest<T>();
        if constexpr (Flags & kPairs)
            size += smallest<typename C::key_type>();
        const int64_t left = Access::left(m_Packager);
        const int64_t bound = boundedCount(count, left, size);

        if constexpr (Flags & kSizedFirst)
        {
            list.resize(static_cast<size_t>(bound));
            return intoSlots<Flags>(list, bound);
        }
        else if constexpr (Flags & kIntoExistingSlots)
        {
            return intoSlots<Flags>(list, bound);
        }
        else
        {
            if constexpr (!(Flags & (kAppends | kClearedFirst)))
                list.clear();
            if constexpr (kIsMap<C>)
            {
                return intoMap<Flags>(list, bound, words...);
            }
            else
            {
                // No more than the bytes that are there can fill.
                const int64_t present = left / (size > 0 ? size : 1);
                list.reserve(list.size() + static_cast<size_t>(bound < present ? bound : present));
                return ontoList<Flags>(list, bound);
            }
        }
    }

    static constexpr bool isTested(unsigned flags) { return !(flags & (kUntestedElements | kUntestedElementsOnRead)); }

    // Elements of one size are taken together, as many as are there; returns how many.
    template <class T>
    int64_t takeRun(std::vector<T>& list, int64_t bound)
    {
        constexpr int64_t size = kFixedSize<T>;
        const int64_t count = std::min(bound, Access::left(m_Packager) / size);
        const unsigned char* bytes = Access::next(m_Packager, static_cast<int>(count * size));
        list.resize(list.size() + static_cast<size_t>(count));
        for (auto element = list.end() - count; element != list.end(); ++element, bytes += size)
            load(bytes, *element);
        Access::took(m_Packager, static_cast<int>(count * size));
        return count;
    }
    // Doubles the room of a full list, as the list itself would, but never beyond the elements that may still come.
    template <class T>
    static void makeRoom(std::vector<T>& list, int64_t more)
    {
        if (list.size() == list.capacity())
            list.reserve(list.size() + std::min(static_cast<size_t>(more), std::max(list.size(), size_t{1})));
    }
    template <unsigned Flags, class C>
    bool ontoList(C& list, int64_t bound)
    {
        bool good = true;
        if constexpr (kFixedSize<typename C::value_type> != 0)
            bound -= takeRun(list, bound);
        for (int64_t i = 0; i < bound; ++i)
        {
            makeRoom(list, bound - i);
            list.emplace_back();
            good = one(list.back());
            if (!good && isTested(Flags))
            {
                list.pop_back();
                return false;
            }
        }
        return good || !(Flags & kLastElementDecides);
    }
    template <class T, class C>
    void addThrough(T& local, C& list)
    {
        int count = 0;
        one(count);
        const int64_t bound = boundedCount(count, Access::left(m_Packager), smallest<T>());
        for (int64_t i = 0; i < bound; ++i)
        {
            one(local);
            makeRoom(list, bound - i);
            list.push_back(local);
        }
    }
    template <unsigned Flags, class C>
    bool intoSlots(C& list, int64_t bound)
    {
        for (int64_t i = 0; i < bound; ++i)
        {
            typename C::value_type dropped{};
            const bool kept = static_cast<size_t>(i) < list.size();
            if (!one(kept ? list[static_cast<size_t>(i)] : dropped) && isTested(Flags))
                return false;
        }
        return true;
    }
    template <unsigned Flags, class K, class T, class... W>
    bool intoMap(std::map<K, T>& map, int64_t bound, W... words)
    {
        for (int64_t i = 0; i < bound; ++i)
        {
            T element{};
            K key{};
            bool good = true;
            if constexpr (Flags & kPairs)
                good = one(key) && isTested(Flags);
            if constexpr ((Flags & kPairs) && isTested(Flags))
                good = good && one(element);
            else
                good = one(element) && good;
            if (!good && isTested(Flags))
                return false;
            if constexpr (Flags & kKeyed)
                key = keyOf(element, words...);
            else if constexpr (Flags & kByPosition)
                key = static_cast<K>(i);
            // Keys mostly ascend on the wire, so the end is the place to try first.
            map.insert_or_assign(map.end(), key, std::move(element));
        }
        return true;
    }
    template <class T, class Base, class K, class... W>
    static const K& keyOf(const T& element, KeyWord<Base, K> word, W...)
    {
        return element.*word.m_Member;
    }
    template <class T, class Other, class... W>
    static const auto& keyOf(const T& element, Other, W... words)
    {
        return keyOf(element, words...);
    }

    template <size_t Widest, class T, size_t Rows, size_t Columns>
    void tableCell(T (&table)[Rows][Columns], int64_t row, int64_t column)
    {
        // A table narrower than the others has no cell on the wire beyond its own width.
        if (Columns < Widest && column >= static_cast<int64_t>(Columns))
            return;
        T dropped{};
        const bool kept = row < static_cast<int64_t>(Rows) && column < static_cast<int64_t>(Columns);
        one(kept ? table[row][column] : dropped);
    }
    template <class T, size_t Rows>
    void rowCell(T (&table)[Rows], int64_t row)
    {
        T dropped{};
        one(row < static_cast<int64_t>(Rows) ? table[row] : dropped);
    }
    template <class T>
    void everyElement(T& table)
    {
        if constexpr (std::is_array_v<T>)
            for (auto& element : table)
                everyElement(element);
        else
            one(table);
    }
    template <class T>
    static void zero(T& table)
    {
        if constexpr (std::is_array_v<T>)
            for (auto& element : table)
                zero(element);
        else
            table = T();
    }

    P& m_Packager;
    PendingCounts m_Counts;
};

} // namespace wire

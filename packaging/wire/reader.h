// Reads a record by its order. No count from the wire decides memory or time: see boundedCount.
#pragma once

#include "packaging/wire/codec.h"

#include <algorithm>
#include <cassert>

namespace wire
{

template <class P>
class Reader : public Codec<P>
{
public:
    using Codec<P>::Codec;
    using Codec<P>::one;

    template <auto kWords, class C>
    bool List(const char*, C& list)
    {
        if constexpr (makesSense<C, kWords, false>())
        {
            if constexpr (kWords.into == Into::kClearedBeforeCount)
                list.clear();
            constexpr bool tested = kWords.reading != Decides::kNothing && kWords.reading != Decides::kAboveZero;
            int count = 0;
            if (!one(count) && tested)
                return false;
            return elements<kWords>(list, count);
        }
        else
        {
            return false;
        }
    }
    template <class C>
    bool CountOf(const char*, const C& list)
    {
        int count = 0;
        if (!one(count))
            return false;
        assert(m_CountsUsed < kMostCounts && "an order has more counts before their elements than there is space for");
        if (m_CountsUsed < kMostCounts)
            m_Counts[m_CountsUsed++] = {&list, count};
        return true;
    }
    template <auto kWords, class C>
    bool ElementsOf(const char*, C& list)
    {
        if constexpr (makesSense<C, kWords, true>())
            return elements<kWords>(list, countOf(&list));
        else
            return false;
    }
    template <class First, class... C>
    bool ThroughOneLocal(const char*, First& first, C&... rest)
    {
        typename First::value_type local{};
        addThrough(local, first);
        (addThrough(local, rest), ...);
        return true;
    }
    // Vectors are emptied and sized to the rows. Cells beyond arrays are read and dropped. No cell decides.
    template <Rows kRows, class First, class... T>
    bool Table(const char*, First& first, T&... rest)
    {
        int64_t cells = 0;
        int64_t across = kAcross<First>;
        if constexpr (kRows.says == Says::kCountBefore)
        {
            cells = countOf(&first);
        }
        else
        {
            // A single count starts at the table's own, for a payload that ends before it; of two, each starts at 0.
            int said = kRows.across != 0 ? 0 : kRows.rows;
            one(said);
            cells = kRows.says == Says::kType ? kCells<First> : said;
            if constexpr (kRows.across != 0)
            {
                int columns = 0;
                one(columns);
                if (said <= 0 || columns <= 0)
                    return true;
                cells *= columns;
                across = columns;
            }
        }
        if constexpr (kRows.says != Says::kType)
        {
            const int64_t row = rowSize<kRows.across, First>() + (int64_t(0) + ... + rowSize<kRows.across, T>());
            cells = boundedCount(cells, Access::left(this->m_Packager), row);
        }
        sizeColumn(first, cells);
        (sizeColumn(rest, cells), ...);
        for (int64_t i = 0; i < cells; ++i)
        {
            cell<kRows.across>(first, i / across, i % across);
            (cell<kRows.across>(rest, i / across, i % across), ...);
        }
        return true;
    }

private:
    template <auto kWords, class C>
    bool elements(C& list, int count)
    {
        if constexpr (kWords.reading == Decides::kAboveZero)
        {
            if (count < 1)
                return true;
        }
        int64_t size = smallest<typename ElementOf<C>::Type>();
        if constexpr (kWords.key == Key::kTravels)
            size += smallest<typename C::key_type>();
        const int64_t left = Access::left(this->m_Packager);
        const int64_t bound = boundedCount(count, left, size);

        if constexpr (kWords.into == Into::kSized)
            list.resize(static_cast<size_t>(bound));
        else if constexpr (kWords.into == Into::kCleared)
            list.clear();

        if constexpr (kWords.into == Into::kSized || kWords.into == Into::kSlots)
        {
            return intoSlots<kWords>(list, bound);
        }
        else if constexpr (kWords.key == Key::kMember && kHasFastPaths)
        {
            return intoNodes<kWords>(list, bound);
        }
        else if constexpr (kIsA<std::map, C>)
        {
            return intoMap<kWords>(list, bound);
        }
        else
        {
            // For no more elements than the bytes that are there can fill.
            const int64_t present = left / (size > 0 ? size : 1);
            list.reserve(list.size() + static_cast<size_t>(bound < present ? bound : present));
            return ontoList<kWords>(list, bound);
        }
    }

    // Elements of one size are taken together, as many as are there; returns how many.
    template <class T>
    int64_t takeRun(std::vector<T>& list, int64_t bound)
    {
        constexpr int64_t size = kFixedSize<T>;
        const int64_t count = std::min(bound, Access::left(this->m_Packager) / size);
        const unsigned char* bytes = Access::next(this->m_Packager, static_cast<int>(count * size));
        list.resize(list.size() + static_cast<size_t>(count));
        for (auto element = list.end() - count; element != list.end(); ++element, bytes += size)
            load(bytes, *element);
        Access::took(this->m_Packager, static_cast<int>(count * size));
        return count;
    }
    // Doubles the space of a full list, as the list itself would, but never beyond the elements that may still come.
    template <class T>
    static void makeSpace(std::vector<T>& list, int64_t more)
    {
        if (list.size() == list.capacity())
            list.reserve(list.size() + std::min(static_cast<size_t>(more), std::max(list.size(), size_t{1})));
    }
    template <auto kWords, class C>
    bool ontoList(C& list, int64_t bound)
    {
        constexpr Decides decides = kWords.reading;
        bool good = true;
        if constexpr (kFixedSize<typename C::value_type> != 0 && kHasFastPaths)
            bound -= takeRun(list, bound);
        for (int64_t i = 0; i < bound; ++i)
        {
            makeSpace(list, bound - i);
            list.emplace_back();
            good = one(list.back());
            if (!good && decides == Decides::kAll)
            {
                list.pop_back();
                return false;
            }
        }
        return good || decides != Decides::kLastElement;
    }
    template <class T, class C>
    void addThrough(T& local, C& list)
    {
        int count = 0;
        one(count);
        const int64_t bound = boundedCount(count, Access::left(this->m_Packager), smallest<T>());
        for (int64_t i = 0; i < bound; ++i)
        {
            one(local);
            makeSpace(list, bound - i);
            list.push_back(local);
        }
    }
    template <auto kWords, class C>
    bool intoSlots(C& list, int64_t bound)
    {
        constexpr bool tested = kWords.reading == Decides::kAll;
        for (int64_t i = 0; i < bound; ++i)
        {
            typename C::value_type dropped{};
            const bool kept = static_cast<size_t>(i) < list.size();
            if (!one(kept ? list[static_cast<size_t>(i)] : dropped) && tested)
                return false;
        }
        return true;
    }
    template <auto kWords, class K, class T>
    bool intoMap(std::map<K, T>& map, int64_t bound)
    {
        constexpr Key from = kWords.key;
        constexpr bool tested = kWords.reading == Decides::kAll;
        for (int64_t i = 0; i < bound; ++i)
        {
            T element{};
            K key{};
            if constexpr (from == Key::kTravels)
                if (!one(key) && tested)
                    return false;
            if (!one(element) && tested)
                return false;
            if constexpr (from == Key::kPlace)
                key = static_cast<K>(i);
            if constexpr (from == Key::kMember)
            {
                // A constant of its own: see intoNodes().
                constexpr auto member = kWords.member;
                key = element.*member;
            }
            // Keys mostly ascend on the wire, so the end is the place to try first.
            map.insert_or_assign(map.end(), key, std::move(element));
        }
        return true;
    }

    // Records are read in their nodes, since moving one costs as much as reading it. The key follows from the record.
    template <auto kWords, class K, class T>
    bool intoNodes(std::map<K, T>& map, int64_t bound)
    {
        constexpr bool tested = kWords.reading == Decides::kAll;
        // A constant of its own: read where it is used, it is a wrong offset with Clang 14.
        constexpr auto member = kWords.member;
        std::map<K, T> spare;
        for (int64_t i = 0; i < bound; ++i)
        {
            const auto made = spare.try_emplace(K{}).first;
            if (!one(made->second) && tested)
                return false;
            auto node = spare.extract(made);
            node.key() = node.mapped().*member;
            // Keys mostly ascend on the wire, so the end is the place to try first. A node whose key the map has stays.
            const auto place = map.insert(map.end(), std::move(node));
            if (node) // NOLINT(bugprone-use-after-move)
                place->second = std::move(node.mapped());
        }
        return true;
    }

    // Bytes of a column's smallest cell. Beyond the narrow tables a line holds a cell of each full table only.
    template <int kWidest, class T>
    static int64_t rowSize()
    {
        return kWidest != 0 && kAcross<T> < kWidest ? 0 : smallest<typename ElementOf<T>::Type>();
    }
    template <class T>
    static void sizeColumn(T& column, int64_t cells)
    {
        if constexpr (kIsA<std::vector, T>)
        {
            column.clear();
            column.resize(static_cast<size_t>(cells));
        }
    }
    template <int kWidest, class T>
    void cell(T& column, int64_t row, int64_t at)
    {
        // A table narrower than the others has no cell on the wire beyond its own width.
        if (kAcross<T> < kWidest && at >= kAcross<T>)
            return;
        if constexpr (kIsA<std::vector, T>)
        {
            one(column[static_cast<size_t>(row)]);
        }
        else
        {
            typename ElementOf<T>::Type dropped{};
            auto* const kept = cellOf(column, row, at);
            one(kept ? *kept : dropped);
        }
    }

    // The counts that came before their elements.
    struct Count
    {
        const void* list;
        int count;
    };
    int countOf(const void* list) const
    {
        for (int i = 0; i < m_CountsUsed; ++i)
            if (m_Counts[i].list == list)
                return m_Counts[i].count;
        return 0;
    }
    static constexpr int kMostCounts = 12;
    Count m_Counts[kMostCounts];
    int m_CountsUsed = 0;
};

} // namespace wire

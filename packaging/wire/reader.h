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
    // Every field is tried, and none decides; one that fails keeps its value.
    template <class... T>
    bool UntestedFields(const char*, T&... values)
    {
        (everyElement(values), ...);
        return true;
    }
    template <class... T>
    bool NotSent(const char*, T&...)
    {
        return true;
    }
    template <class Steps>
    bool Marked(const Word&, Steps steps)
    {
        return steps();
    }
    template <class Base>
    bool Head(Base& base)
    {
        if constexpr (kIsHead<Base>)
            return readHead(m_Packager, base);
        else
            return base.Base::Read(&m_Packager);
    }

    template <auto Form, class C>
    bool List(const char*, C& list)
    {
        if constexpr (nonsenseOf<C>(Form, false) == Nonsense::kNone)
        {
            if constexpr (Form.parts.into == Into::kClearedBeforeCount)
                list.clear();
            int count = 0;
            const bool counted = one(count);
            if (!counted && Form.parts.reading != Decides::kNothing && Form.parts.reading != Decides::kAboveZero)
                return false;
            return elements<Form>(list, count);
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
        m_Counts.set(&list, count);
        return true;
    }
    template <auto Form, class C>
    bool ElementsOf(const char*, C& list)
    {
        if constexpr (nonsenseOf<C>(Form, true) == Nonsense::kNone)
            return elements<Form>(list, m_Counts.get(&list));
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
    // Vectors are emptied and sized to the rows. Cells beyond arrays are read and dropped. No cell decides.
    template <Rows kRows, class First, class... T>
    bool Table(const char*, First& first, T&... rest)
    {
        int64_t cells = 0;
        int64_t across = kAcross<First>;
        if constexpr (kRows.says == Says::kCountBefore)
        {
            cells = m_Counts.get(&first);
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
            cells = boundedCount(cells, Access::left(m_Packager), row);
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

    P& packager() { return m_Packager; }

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
        else if constexpr (Record<T>)
        {
            return value.Read(&m_Packager);
        }
        else
        {
            return false; // Refused by the describer.
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

    template <auto Form, class C>
    bool elements(C& list, int count)
    {
        constexpr Departures how = Form.parts;
        if constexpr (how.reading == Decides::kAboveZero)
        {
            if (count < 1)
                return true;
        }
        int64_t size = smallest<typename ElementOf<C>::Type>();
        if constexpr (how.key == Key::kTravels)
            size += smallest<typename C::key_type>();
        const int64_t left = Access::left(m_Packager);
        const int64_t bound = boundedCount(count, left, size);

        if constexpr (how.into == Into::kSized)
            list.resize(static_cast<size_t>(bound));
        else if constexpr (how.into == Into::kCleared)
            list.clear();

        if constexpr (how.into == Into::kSized || how.into == Into::kSlots)
        {
            return intoSlots<how>(list, bound);
        }
        else if constexpr (kIsMap<C>)
        {
            return intoMap<Form>(list, bound);
        }
        else
        {
            // No more than the bytes that are there can fill.
            const int64_t present = left / (size > 0 ? size : 1);
            list.reserve(list.size() + static_cast<size_t>(bound < present ? bound : present));
            return ontoList<how>(list, bound);
        }
    }

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
    template <Departures How, class C>
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
            if (!good && How.reading == Decides::kAll)
            {
                list.pop_back();
                return false;
            }
        }
        return good || How.reading != Decides::kLastElement;
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
    template <Departures How, class C>
    bool intoSlots(C& list, int64_t bound)
    {
        for (int64_t i = 0; i < bound; ++i)
        {
            typename C::value_type dropped{};
            const bool kept = static_cast<size_t>(i) < list.size();
            if (!one(kept ? list[static_cast<size_t>(i)] : dropped) && How.reading == Decides::kAll)
                return false;
        }
        return true;
    }
    template <auto Form, class K, class T>
    bool intoMap(std::map<K, T>& map, int64_t bound)
    {
        constexpr Key from = Form.parts.key;
        constexpr bool tested = Form.parts.reading == Decides::kAll;
        for (int64_t i = 0; i < bound; ++i)
        {
            T element{};
            K key{};
            if constexpr (from == Key::kTravels)
                if (!one(key) && tested)
                    return false;
            if (!one(element) && tested)
                return false;
            if constexpr (from == Key::kMember)
                key = element.*Form.member;
            else if constexpr (from == Key::kPlace)
                key = static_cast<K>(i);
            // Keys mostly ascend on the wire, so the end is the place to try first.
            map.insert_or_assign(map.end(), key, std::move(element));
        }
        return true;
    }

    // Bytes of a column's smallest cell. Beyond the narrow tables a line holds a cell of each full table only.
    template <int Across, class T>
    static int64_t rowSize()
    {
        return Across != 0 && kAcross<T> < Across ? 0 : smallest<typename CellOf<T>::Type>();
    }
    template <class T>
    static void sizeColumn(T& column, int64_t cells)
    {
        if constexpr (kIsVector<T>)
        {
            column.clear();
            column.resize(static_cast<size_t>(cells));
        }
    }
    template <int Widest, class T>
    void cell(T& column, int64_t row, int64_t at)
    {
        if constexpr (kIsVector<T>)
        {
            one(column[static_cast<size_t>(row)]);
        }
        else if constexpr (std::rank_v<T> == 2)
        {
            // A table narrower than the others has no cell on the wire beyond its own width.
            if (kAcross<T> < Widest && at >= kAcross<T>)
                return;
            typename CellOf<T>::Type dropped{};
            one(row < static_cast<int64_t>(std::extent_v<T>) && at < kAcross<T> ? column[row][at] : dropped);
        }
        else
        {
            typename CellOf<T>::Type dropped{};
            one(row < static_cast<int64_t>(std::extent_v<T>) ? column[row] : dropped);
        }
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

    P& m_Packager;
    PendingCounts m_Counts;
};

} // namespace wire

// Writes a record by its order.
#pragma once

#include "packaging/wire/head_form.h"
#include "packaging/wire/visit.h"

#include <algorithm>

namespace wire
{

template <class P>
class Writer
{
public:
    explicit Writer(P& packager) : m_Packager(packager), m_SizeBefore(packager.GetDataSize()) {}

    // Fields in order, up to the first that fails.
    template <class... T>
    bool Fields(const char*, const T&... values)
    {
        return fields(std::index_sequence_for<T...>(), values...);
    }
    // Every field is tried, and none decides.
    template <class... T>
    bool UntestedFields(const char*, const T&... values)
    {
        (one(values), ...);
        return true;
    }
    template <class... T>
    bool NotSent(const char*, const T&...)
    {
        return true;
    }
    template <class Steps>
    bool Marked(const Word&, Steps steps)
    {
        return steps();
    }
    template <class Base>
    bool Head(const Base& base)
    {
        if constexpr (kIsHead<Base>)
            return writeHead(m_Packager, base);
        else
            return base.Base::Write(&m_Packager);
    }

    template <auto Form, class C>
    bool List(const char*, const C& list)
    {
        if constexpr (nonsenseOf<C>(Form, false) == Nonsense::kNone)
            return (one(static_cast<int>(list.size())) || Form.parts.writing == Decides::kNothing) &&
                   elements<Form.parts>(list);
        else
            return false;
    }
    template <class C>
    bool CountOf(const char*, const C& list)
    {
        if constexpr (kIsMap<C> || kIsVector<C>)
            return one(static_cast<int>(list.size()));
        else
            return false;
    }
    template <auto Form, class C>
    bool ElementsOf(const char*, const C& list)
    {
        if constexpr (nonsenseOf<C>(Form, true) == Nonsense::kNone)
            return elements<Form.parts>(list);
        else
            return false;
    }
    template <class... C>
    bool ThroughOneLocal(const char* names, const C&... lists)
    {
        (List<formOf(Untested, Into::kThroughOneLocal)>(names, lists), ...);
        return true;
    }
    // All bytes that the inner packager holds, wherever its read pointer stands. A class that is written into its own
    // inner packager takes along what that held before.
    template <class Inner>
    bool Payload(const char*, const Inner& inner)
    {
        int size = inner.GetDataSize();
        if constexpr (std::is_same_v<Inner, P>)
            size = &inner == &m_Packager ? m_SizeBefore : size;
        return one(size) && writeBytes(m_Packager, inner.GetBuffer(), size);
    }
    // A column shorter than the first is filled with default values, and a narrow table has no cell beyond its width.
    template <Rows kRows, class First, class... T>
    bool Table(const char*, const First& first, const T&... rest)
    {
        int64_t cells = 0;
        if constexpr (kRows.says == Says::kCountBefore)
        {
            cells = static_cast<int64_t>(first.size());
        }
        else
        {
            cells = kRows.says == Says::kType ? kCells<First> : kRows.rows;
            one(static_cast<int>(cells));
            if (kRows.across != 0)
                one(kRows.across);
            cells *= std::max(kRows.across, 1);
        }
        constexpr int across = kRows.says == Says::kCount && kRows.across != 0 ? kRows.across : kAcross<First>;
        for (int64_t i = 0; i < cells; ++i)
        {
            cell<across>(first, i);
            (cell<across>(rest, i), ...);
        }
        return true;
    }

    P& packager() { return m_Packager; }

    template <class T>
    bool one(const T& value)
    {
        if constexpr (kIsRawBytes<T>)
        {
            return writeScalar(m_Packager, value);
        }
        else if constexpr (std::is_array_v<T>)
        {
            for (const auto& element : value)
                if (!one(element))
                    return false;
            return true;
        }
        else if constexpr (kFixedSize<T> != 0)
        {
            return writeScalar(m_Packager, value);
        }
        else if constexpr (std::is_same_v<T, float>)
        {
            return writeFloat(m_Packager, value);
        }
        else if constexpr (std::is_same_v<T, zet::String_T<wchar_t>>)
        {
            return writeText(m_Packager, value);
        }
        else if constexpr (std::is_same_v<T, zet::Buffer>)
        {
            return writeBuffer(m_Packager, value);
        }
        else if constexpr (kIsPair<T>)
        {
            return one(value.first) && one(value.second);
        }
        else if constexpr (Record<T>)
        {
            return value.Write(&m_Packager);
        }
        else
        {
            return false; // Refused by the describer.
        }
    }

private:
    template <size_t... I, class... T>
    bool fields(std::index_sequence<I...>, const T&... values)
    {
        [[maybe_unused]] static constexpr auto places = placesOf<T...>();
        [[maybe_unused]] unsigned char* run = nullptr;
        return (field<places[I].runBytes, places[I].offset>(run, values) && ...);
    }
    // The first of a run looks for the room of all; where it is not free, each field looks for itself.
    template <int RunBytes, int Offset, class T>
    bool field(unsigned char*& run, const T& value)
    {
        if constexpr (Offset < 0)
        {
            return one(value);
        }
        else
        {
            if constexpr (RunBytes != 0)
            {
                run = Access::freeRoom(m_Packager, RunBytes);
                if (run)
                    Access::wrote(m_Packager, RunBytes);
            }
            if (!run)
                return one(value);
            store(run + Offset, value);
            return true;
        }
    }

    template <Departures How, class C>
    bool elements(const C& list)
    {
        constexpr bool tested = How.writing == Decides::kAll;
        for (const auto& element : list)
        {
            bool good;
            if constexpr (!kIsMap<C>)
                good = one(element);
            else if constexpr (How.key == Key::kTravels && tested)
                good = one(element.first) && one(element.second);
            else if constexpr (How.key == Key::kTravels)
                good = (one(element.first), one(element.second));
            else
                good = one(element.second);
            if (tested && !good)
                return false;
        }
        return true;
    }
    template <int Across, class T>
    void cell(const T& column, int64_t i)
    {
        if constexpr (kIsVector<T>)
        {
            if (i < static_cast<int64_t>(column.size()))
                one(column[static_cast<size_t>(i)]);
            else
                one(typename T::value_type());
        }
        else if constexpr (std::rank_v<T> == 2)
        {
            if (i % Across < kAcross<T>)
                one(column[i / Across][i % Across]);
        }
        else
        {
            one(column[i]);
        }
    }

    P& m_Packager;
    const int m_SizeBefore;
};

} // namespace wire

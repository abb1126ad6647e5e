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
    template <class... T>
    bool SkippedOnFailure(const char* names, const T&... values)
    {
        return Fields(names, values...);
    }
    // Every field is tried, and none decides.
    template <class... T>
    bool UntestedFields(const char*, const T&... values)
    {
        (one(values), ...);
        return true;
    }
    template <class... T>
    bool UntestedFromZero(const char* names, const T&... values)
    {
        return UntestedFields(names, values...);
    }
    bool Unlimited(const char*, const zet::Buffer& buffer) { return writeSizedBytes(m_Packager, buffer); }
    template <class... T>
    bool NotSent(const char*, const T&...)
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
    bool Head(const Base& base)
    {
        if constexpr (kIsHead<Base>)
            return writeHead(m_Packager, base);
        else
            return base.Base::Write(&m_Packager);
    }

    template <class C, class... W>
    bool List(const char*, const C& list, W...)
    {
        constexpr bool tested = !(kFlagsOf<W...> & (kUntestedCount | kUntestedOnWrite));
        return (one(static_cast<int>(list.size())) || !tested) && elements<kFlagsOf<W...>>(list);
    }
    template <class C>
    bool CountOf(const char*, const C& list)
    {
        return one(static_cast<int>(list.size()));
    }
    template <class C, class... W>
    bool ElementsOf(const char*, const C& list, W...)
    {
        return elements<kFlagsOf<W...>>(list);
    }
    template <class... C>
    bool ThroughOneLocal(const char* names, const C&... lists)
    {
        (List(names, lists, Untested), ...);
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
    // No more than the array has.
    template <size_t N>
    bool SizedBytes(const char*, int size, const unsigned char (&bytes)[N], int)
    {
        return writeBytes(m_Packager, bytes, std::clamp(size, 0, static_cast<int>(N)));
    }
    // A column shorter than the first is filled with default values.
    template <class First, class... C>
    bool Columns(const char*, const First& first, const C&... rest)
    {
        for (size_t row = 0; row < first.size(); ++row)
        {
            one(first[row]);
            (cell(rest, row), ...);
        }
        return true;
    }
    template <class T>
    bool Ballast(const char*, int count, const T& table)
    {
        one(count);
        everyElement(table);
        return true;
    }
    template <size_t Rows, size_t Columns, class First, class... T>
    bool Interleaved(const char*, const First& first, const T&... rest)
    {
        one(static_cast<int>(Rows));
        one(static_cast<int>(Columns));
        for (size_t row = 0; row < Rows; ++row)
        {
            for (size_t column = 0; column < Columns; ++column)
            {
                tableCell(first, row, column);
                (tableCell(rest, row, column), ...);
            }
        }
        return true;
    }
    template <size_t Rows, class... T>
    bool InterleavedRows(const char*, const T (&... tables)[Rows])
    {
        one(static_cast<int>(Rows));
        for (size_t row = 0; row < Rows; ++row)
            (one(tables[row]), ...);
        return true;
    }

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
        else
        {
            static_assert(Record<T>, "an order holds packager values, records with Wire(), arrays and pairs of these; "
                                     "a container needs LIST");
            return value.Write(&m_Packager);
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

    template <unsigned Flags, class C>
    bool elements(const C& list)
    {
        constexpr bool tested = !(Flags & (kUntestedElements | kUntestedOnWrite));
        for (const auto& element : list)
        {
            bool good;
            if constexpr (!kIsMap<C>)
                good = one(element);
            else if constexpr ((Flags & kPairs) && tested)
                good = one(element.first) && one(element.second);
            else if constexpr (Flags & kPairs)
                good = (one(element.first), one(element.second));
            else
                good = one(element.second);
            if (tested && !good)
                return false;
        }
        return true;
    }
    template <class C>
    void cell(const C& column, size_t row)
    {
        if (row < column.size())
            one(column[row]);
        else
            one(typename C::value_type());
    }
    template <class T, size_t Rows, size_t Columns>
    void tableCell(const T (&table)[Rows][Columns], size_t row, size_t column)
    {
        if (column < Columns)
            one(table[row][column]);
    }
    template <class T>
    void everyElement(const T& table)
    {
        if constexpr (std::is_array_v<T>)
            for (const auto& element : table)
                everyElement(element);
        else
            one(table);
    }

    P& m_Packager;
    const int m_SizeBefore;
};

} // namespace wire

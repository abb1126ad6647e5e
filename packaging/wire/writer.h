// Writes a record by its order.
#pragma once

#include "packaging/wire/codec.h"

#include <algorithm>

namespace wire
{

template <class P>
class Writer : public Codec<P>
{
public:
    using Codec<P>::Codec;
    using Codec<P>::one;

    template <auto kWords, class C>
    bool List(const char*, const C& list)
    {
        if constexpr (makesSense<C, kWords, false>())
        {
            constexpr bool tested = kWords.writing != Decides::kNothing;
            return (number(list.size()) || !tested) && elements<kWords>(list);
        }
        else
        {
            return false;
        }
    }
    template <class C>
    bool CountOf(const char*, const C& list)
    {
        if constexpr (isContainer<C>())
            return number(list.size());
        else
            return false;
    }
    template <auto kWords, class C>
    bool ElementsOf(const char*, const C& list)
    {
        if constexpr (makesSense<C, kWords, true>())
            return elements<kWords>(list);
        else
            return false;
    }
    template <class... C>
    bool ThroughOneLocal(const char* names, const C&... lists)
    {
        (List<Untested>(names, lists), ...);
        return true;
    }
    // A column shorter than the first is filled with default values, and a narrow table has no cell beyond its width.
    template <Rows kRows, class First, class... T>
    bool Table(const char*, const First& first, const T&... rest)
    {
        int64_t rows = kRows.rows;
        if constexpr (kRows.says == Says::kCountBefore)
        {
            rows = std::ssize(first);
        }
        else
        {
            if constexpr (kRows.says == Says::kType)
                rows = kCells<First>;
            number(rows);
            if constexpr (kRows.across != 0)
                number(kRows.across);
        }
        constexpr int across = kRows.across != 0 ? kRows.across : kAcross<First>;
        const int64_t cells = rows * std::max(kRows.across, 1);
        for (int64_t i = 0; i < cells; ++i)
        {
            cell(first, i / across, i % across);
            (cell(rest, i / across, i % across), ...);
        }
        return true;
    }

private:
    template <class N>
    bool number(N value)
    {
        return writeScalar(this->m_Packager, static_cast<int>(value));
    }
    template <auto kWords, class C>
    bool elements(const C& list)
    {
        constexpr bool tested = kWords.writing == Decides::kAll;
        for (const auto& element : list)
        {
            bool good;
            if constexpr (!kIsA<std::map, C>)
                good = one(element);
            else if constexpr (kWords.key == Key::kTravels && tested)
                good = one(element.first) && one(element.second);
            else if constexpr (kWords.key == Key::kTravels)
                good = (one(element.first), one(element.second));
            else
                good = one(element.second);
            if (tested && !good)
                return false;
        }
        return true;
    }
    template <class T>
    void cell(const T& column, int64_t row, int64_t at)
    {
        if (const auto* kept = cellOf(column, row, at))
        {
            one(*kept);
        }
        else if constexpr (kIsA<std::vector, T>)
        {
            const typename T::value_type missing{};
            one(missing);
        }
    }
};

} // namespace wire

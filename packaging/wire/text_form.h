// The two written forms of text, over the unit of the host's wide character. A reader takes both.
//
//   two-byte units    count:30bit(n)     the n units as in memory
//   four-byte units   count:30bit(2n+2)  the text as UTF-16, then zero units up to the count
//
// A template over the unit, so that every build can test both.
#pragma once

#include "packaging/wire/access.h"
#include "packaging/wire/variable_form.h"

#include <cstdint>

namespace wire
{

// What a four-byte reader makes of a surrogate: each by itself, whatever the units beside it.
inline uint32_t widenUnit(uint32_t unit)
{
    const uint32_t lone = (((unit - 0xD800) & 0xFFFF) << 10 | ((unit - 0xDC00) & 0xFFFF)) + 0x10000;
    return (unit & 0xF800) == 0xD800 ? lone : unit;
}

// A four-byte writer sends this one pair for every value above 0xFFFF.
constexpr uint16_t kWideLead = 0xD840;
constexpr uint16_t kWideTrail = 0xDC00;

inline uint16_t loadUnit(const unsigned char* at)
{
    return static_cast<uint16_t>(at[0] | at[1] << 8);
}

inline void storeUnit(unsigned char* at, uint32_t unit)
{
    at[0] = static_cast<unsigned char>(unit);
    at[1] = static_cast<unsigned char>(unit >> 8);
}

// Units before the first zero unit; checks four at a time.
inline int unitsBeforeZero(const unsigned char* units, int count)
{
    int i = 0;
    for (; kHasFastPaths && i + 4 <= count; i += 4)
    {
        uint64_t four;
        std::memcpy(&four, units + 2 * i, 8);
        if ((four - 0x0001000100010001u) & ~four & 0x8000800080008000u)
            break;
    }
    while (i < count && loadUnit(units + 2 * i) != 0)
        ++i;
    return i;
}

// Narrows n four-byte units; returns the bytes written, at most 4n.
template <class Unit>
int narrowUnits(unsigned char* out, const Unit* text, int n)
{
    uint32_t above = 0;
    for (int i = 0; i < n; ++i)
    {
        const uint32_t unit = static_cast<uint32_t>(text[i]);
        above |= unit;
        storeUnit(out + 2 * i, unit);
    }
    if (kHasFastPaths && above <= 0xFFFF)
        return 2 * n;

    unsigned char* at = out;
    for (int i = 0; i < n; ++i)
    {
        const uint32_t unit = static_cast<uint32_t>(text[i]);
        storeUnit(at, unit <= 0xFFFF ? unit : kWideLead);
        at += 2;
        if (unit > 0xFFFF)
        {
            storeUnit(at, kWideTrail);
            at += 2;
        }
    }
    return static_cast<int>(at - out);
}

template <class P>
inline constexpr bool kLimitsText = std::is_same_v<P, CCmdPackager>;

// Writes a text. False if it does not fit; a count that was written by then stays.
template <class P, class Unit>
bool writeText(P& packager, const zet::String_T<Unit>& text)
{
    const int n = text.getLength();
    if (n <= 0)
        return write30(packager, 0);
    // Only the four-byte writer of commands has a limit: the two-byte one can write what no reader takes.
    if constexpr (sizeof(Unit) == 4 && kLimitsText<P>)
    {
        if (n > CCmdPackager::kMaxTextUnits)
            return false;
    }
    const int64_t count = sizeof(Unit) == 4 ? 2 * int64_t(n) + 2 : n;
    if (2 * count > INT32_MAX)
        return false;
    const int bytes = static_cast<int>(2 * count);

    if (!write30(packager, static_cast<uint32_t>(count)))
        return false;
    unsigned char* out = Access::space(packager, bytes);
    if (!out)
        return false;
    if constexpr (sizeof(Unit) == 4)
    {
        const int used = narrowUnits(out, text.getBuffer(), n);
        std::memset(out + used, 0, static_cast<size_t>(bytes - used));
    }
    else
    {
        std::memcpy(out, text.getBuffer(), static_cast<size_t>(bytes));
    }
    Access::wrote(packager, bytes);
    return true;
}

// Reads a text up to its first zero unit. False, with the target unchanged, if units are missing; a command's text with
// too many units leaves the target empty.
template <class P, class Unit>
bool readText(P& packager, zet::String_T<Unit>* text)
{
    uint32_t count = 0;
    if (!read30(packager, count))
        return false;
    if (count == 0)
    {
        text->clear();
        return true;
    }
    if (kLimitsText<P> && count > CCmdPackager::kMaxTextUnits)
    {
        text->clear();
        return false;
    }
    // 30 bits of units are below 2^31 bytes.
    const unsigned char* units = Access::next(packager, static_cast<int>(2 * count));
    if (!units)
        return false;
    Access::took(packager, static_cast<int>(2 * count));

    const int length = unitsBeforeZero(units, static_cast<int>(count));
    Unit* out = text->resizeForOverwrite(length);
    for (int i = 0; i < length; ++i)
    {
        const uint32_t unit = loadUnit(units + 2 * i);
        out[i] = static_cast<Unit>(sizeof(Unit) == 4 ? widenUnit(unit) : unit);
    }
    return true;
}

} // namespace wire

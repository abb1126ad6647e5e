// The counts of variable length: 15 bits in one or two bytes, 30 bits in one to four, most significant first.
#pragma once

#include "packaging/wire/access.h"

#include <cstdint>

namespace wire
{

constexpr uint32_t kMask15 = 0x7FFF;
constexpr uint32_t kMask30 = 0x3FFFFFFF;

// Encodes a masked 30-bit count; returns how many of the four bytes it takes.
inline int encode30(uint32_t value, unsigned char* out)
{
    const int more = value <= 0x3F ? 0 : value <= 0x3FFF ? 1 : value <= 0x3FFFFF ? 2 : 3;
    out[0] = static_cast<unsigned char>(value >> 8 * more | static_cast<uint32_t>(more) << 6);
    for (int i = 1; i <= more; ++i)
        out[i] = static_cast<unsigned char>(value >> 8 * (more - i));
    return more + 1;
}

template <class P>
bool write30(P& packager, uint32_t value)
{
    unsigned char bytes[4];
    const int size = encode30(value & kMask30, bytes);
    unsigned char* out = Access::space(packager, size);
    if (!out)
        return false;
    for (int i = 0; i < size; ++i)
        out[i] = bytes[i];
    Access::wrote(packager, size);
    return true;
}

// Takes a longer form than needed too. A cut count leaves the read pointer after the bytes that there were.
template <class P>
bool read30(P& packager, uint32_t& value)
{
    const unsigned char* at = Access::next(packager, 1);
    if (!at)
        return false;
    const int more = at[0] >> 6;
    uint32_t result = at[0] & 0x3F;
    Access::took(packager, 1);
    for (int i = 0; i < more; ++i)
    {
        at = Access::next(packager, 1);
        if (!at)
            return false;
        result = result << 8 | at[0];
        Access::took(packager, 1);
    }
    value = result;
    return true;
}

} // namespace wire

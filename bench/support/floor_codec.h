// The floor: a hand-written codec for the same bytes, on plain structures, with only the checks that the format needs.
// Floats use std::to_chars and std::from_chars, or, where a writer is asked to, integers alone.
#pragma once

#include "framework/platform/from_chars.h"

#include <algorithm>
#include <bit>
#include <charconv>
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

namespace bench
{

enum class Floats
{
    kByLibrary,
    kByIntegers
};

class FloorWriter
{
public:
    explicit FloorWriter(std::vector<unsigned char>& out, Floats floats = Floats::kByLibrary)
        : m_Out(out), m_At(out.data()), m_Floats(floats)
    {
    }

    void u8(unsigned value)
    {
        *need(1) = static_cast<unsigned char>(value);
        m_At += 1;
    }
    void u16(unsigned value)
    {
        unsigned char* at = need(2);
        at[0] = static_cast<unsigned char>(value >> 8);
        at[1] = static_cast<unsigned char>(value);
        m_At += 2;
    }
    void u32(uint32_t value)
    {
        unsigned char* at = need(4);
        at[0] = static_cast<unsigned char>(value >> 24);
        at[1] = static_cast<unsigned char>(value >> 16);
        at[2] = static_cast<unsigned char>(value >> 8);
        at[3] = static_cast<unsigned char>(value);
        m_At += 4;
    }
    void bytes(const void* data, size_t size)
    {
        std::memcpy(need(size), data, size);
        m_At += size;
    }
    void number(float value)
    {
        char* text = reinterpret_cast<char*>(need(64)) + 1;
        const char* const end = m_Floats == Floats::kByIntegers
                                    ? putByIntegers(text, value)
                                    : std::to_chars(text, text + 60, value, std::chars_format::fixed, 6).ptr;
        *m_At = static_cast<unsigned char>(end - text);
        m_At += 1 + (end - text);
    }
    void text(const std::wstring& value)
    {
        const size_t n = value.size();
        if (n == 0)
            return u8(0);
        const size_t count = 2 * n + 2;
        unsigned char* at = need(4 + 2 * count);
        if (count <= 0x3F)
        {
            *at++ = static_cast<unsigned char>(count);
        }
        else
        {
            *at++ = static_cast<unsigned char>(count >> 8 | 0x40);
            *at++ = static_cast<unsigned char>(count);
        }
        for (size_t i = 0; i < n; ++i)
        {
            at[2 * i] = static_cast<unsigned char>(value[i]);
            at[2 * i + 1] = static_cast<unsigned char>(value[i] >> 8);
        }
        std::memset(at + 2 * n, 0, 2 * (count - n));
        m_At = at + 2 * count;
    }
    size_t size() const { return static_cast<size_t>(m_At - m_Out.data()); }

private:
    // Six decimals, ties to even. For numbers below 2^40.
    static char* putByIntegers(char* text, float value)
    {
        constexpr uint64_t kUnit = 1000000;
        const auto bits = std::bit_cast<uint32_t>(value);
        const int exponent = static_cast<int>(bits >> 23 & 0xFF);
        const uint64_t mantissa = ((bits & 0x7FFFFF) | (exponent != 0 ? 0x800000U : 0U)) * kUnit;
        const int shift = 150 - std::max(exponent, 1);
        uint64_t scaled = shift <= 0 ? mantissa << -shift : shift < 64 ? mantissa >> shift : 0;
        if (shift > 0 && shift < 64)
        {
            const uint64_t rest = mantissa & ((uint64_t(1) << shift) - 1);
            const uint64_t half = uint64_t(1) << (shift - 1);
            scaled += rest > half || (rest == half && (scaled & 1) != 0) ? 1 : 0;
        }
        if (bits >> 31 != 0)
            *text++ = '-';
        text = std::to_chars(text, text + 20, scaled / kUnit).ptr;
        *text++ = '.';
        scaled %= kUnit;
        for (int i = 5; i >= 0; --i, scaled /= 10)
            text[i] = static_cast<char>('0' + scaled % 10);
        return text + 6;
    }

    unsigned char* need(size_t more)
    {
        const size_t used = size();
        if (m_Out.size() - used < more)
        {
            m_Out.resize(2 * m_Out.size() + more);
            m_At = m_Out.data() + used;
        }
        return m_At;
    }

    std::vector<unsigned char>& m_Out;
    unsigned char* m_At;
    Floats m_Floats;
};

class FloorReader
{
public:
    FloorReader(const unsigned char* data, size_t size) : m_At(data), m_End(data + size) {}

    bool good() const { return m_Good; }
    unsigned u8()
    {
        const unsigned char* at = take(1);
        return at ? at[0] : 0;
    }
    unsigned u16()
    {
        const unsigned char* at = take(2);
        return at ? static_cast<unsigned>(at[0] << 8 | at[1]) : 0;
    }
    uint32_t u32()
    {
        const unsigned char* at = take(4);
        return at ? static_cast<uint32_t>(at[0]) << 24 | static_cast<uint32_t>(at[1]) << 16 |
                        static_cast<uint32_t>(at[2]) << 8 | at[3]
                  : 0;
    }
    int i32() { return static_cast<int>(u32()); }
    void bytes(void* out, size_t size)
    {
        if (const unsigned char* at = take(size))
            std::memcpy(out, at, size);
    }
    float number()
    {
        const size_t length = u8();
        float value = 0;
        if (const unsigned char* at = take(length))
            zet::platform::fromChars(reinterpret_cast<const char*>(at), reinterpret_cast<const char*>(at) + length,
                                     value);
        return value;
    }
    void text(std::wstring& out)
    {
        size_t count = u8();
        for (size_t more = count >> 6, i = (count &= 0x3F, 0); i < more; ++i)
            count = count << 8 | u8();
        const unsigned char* at = take(2 * count);
        if (!at)
            return;
        size_t length = 0;
        while (length < count && (at[2 * length] | at[2 * length + 1]))
            ++length;
        out.resize(length);
        for (size_t i = 0; i < length; ++i)
            out[i] = static_cast<wchar_t>(at[2 * i] | at[2 * i + 1] << 8);
    }

private:
    const unsigned char* take(size_t size)
    {
        if (static_cast<size_t>(m_End - m_At) < size)
        {
            m_Good = false;
            return nullptr;
        }
        const unsigned char* at = m_At;
        m_At += size;
        return at;
    }

    const unsigned char* m_At;
    const unsigned char* m_End;
    bool m_Good = true;
};

} // namespace bench

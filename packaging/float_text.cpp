#include "packaging/float_text.h"

#include "framework/inner/fast_paths.h"
#include "framework/platform/from_chars.h"

#include <bit>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>

namespace wire
{

namespace
{

constexpr uint64_t kMillion = 1000000;

// Printing two digits at a time halves the divisions.
constexpr char kPairs[] = "00010203040506070809101112131415161718192021222324252627282930313233343536373839"
                          "40414243444546474849505152535455565758596061626364656667686970717273747576777879"
                          "8081828384858687888990919293949596979899";

char* printInteger(uint64_t value, char* out)
{
    char digits[20];
    char* at = digits + sizeof digits;
    while (value >= 100)
    {
        at -= 2;
        std::memcpy(at, kPairs + (value % 100) * 2, 2);
        value /= 100;
    }
    if (value >= 10)
    {
        at -= 2;
        std::memcpy(at, kPairs + value * 2, 2);
    }
    else
    {
        *--at = static_cast<char>('0' + value);
    }
    const size_t length = static_cast<size_t>(digits + sizeof digits - at);
    std::memcpy(out, at, length);
    return out + length;
}

char* printMillionths(uint32_t value, char* out)
{
    std::memcpy(out, kPairs + (value / 10000) * 2, 2);
    std::memcpy(out + 2, kPairs + (value / 100 % 100) * 2, 2);
    std::memcpy(out + 4, kPairs + (value % 100) * 2, 2);
    return out + 6;
}

// By the standard library, for values beyond the range of the integers.
int printByLibrary(float value, char* text)
{
    const std::to_chars_result end = std::to_chars(text, text + kFloatTextRoom, value, std::chars_format::fixed, 6);
    return static_cast<int>(end.ptr - text);
}

int printSpecial(uint32_t bits, char* text)
{
    char* out = text;
    if (bits >> 31)
        *out++ = '-';
    std::memcpy(out, (bits & 0x7FFFFF) ? "nan" : "inf", 3);
    return static_cast<int>(out + 3 - text);
}

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

bool isHexDigit(char c)
{
    return isDigit(c) || ((c | 0x20) >= 'a' && (c | 0x20) <= 'f');
}

bool startsWith(const char* text, const char* end, const char* word)
{
    for (; *word; ++word, ++text)
        if (text == end || (*text | 0x20) != *word)
            return false;
    return true;
}

// What a run of digits says about the size of its number.
struct Mantissa
{
    bool m_HasDigits = false;
    bool m_IsZero = true;
    // Digits from the first one that is not 0 to the point; 0 or less if that digit is after the point.
    long long m_Place = 0;
};

// Takes a run of digits with at most one point among them.
template <class IsDigit>
Mantissa takeMantissa(const char*& at, const char* end, IsDigit isDigitOf)
{
    Mantissa mantissa;
    bool point = false;
    for (; at != end; ++at)
    {
        if (isDigitOf(*at))
        {
            mantissa.m_HasDigits = true;
            const bool wasZero = mantissa.m_IsZero;
            mantissa.m_IsZero = wasZero && *at == '0';
            if (!point && !mantissa.m_IsZero)
                ++mantissa.m_Place;
            else if (point && wasZero && mantissa.m_IsZero)
                --mantissa.m_Place;
        }
        else if (*at == '.' && !point)
        {
            point = true;
        }
        else
        {
            break;
        }
    }
    return mantissa;
}

// Takes an exponent and returns it, limited to a size that no mantissa compensates. An exponent without digits is not
// taken and is 0.
long long takeExponent(const char*& at, const char* end, char letter)
{
    constexpr long long kMost = 1LL << 40;
    const char* next = at;
    if (next == end || (*next++ | 0x20) != letter)
        return 0;
    const bool minus = next != end && *next == '-';
    if (next != end && (*next == '+' || *next == '-'))
        ++next;
    if (next == end || !isDigit(*next))
        return 0;
    long long exponent = 0;
    for (; next != end && isDigit(*next); ++next)
        exponent = exponent < kMost ? exponent * 10 + (*next - '0') : kMost;
    at = next;
    return minus ? -exponent : exponent;
}

// Every form that "%f" takes: decimal, hexadecimal, infinity, not a number.
bool scanAny(const char* at, const char* end, float& value)
{
    while (at != end && (*at == ' ' || (*at >= '\t' && *at <= '\r')))
        ++at;
    bool negative = false;
    if (at != end && (*at == '+' || *at == '-'))
        negative = *at++ == '-';
    const float sign = negative ? -1.0f : 1.0f;

    if (startsWith(at, end, "inf"))
    {
        // After "infi" the scan needs all of "infinity", and fails without it.
        const char* const tail = at + 3;
        if (startsWith(tail, end, "i") && !startsWith(tail, end, "inity"))
            return false;
        value = sign * std::numeric_limits<float>::infinity();
        return true;
    }
    if (startsWith(at, end, "nan"))
    {
        value = std::copysign(std::numeric_limits<float>::quiet_NaN(), sign);
        return true;
    }

    const bool hex = startsWith(at, end, "0x");
    if (hex)
        at += 2;
    const char* const first = at;
    const Mantissa mantissa = hex ? takeMantissa(at, end, isHexDigit) : takeMantissa(at, end, isDigit);
    if (!mantissa.m_HasDigits)
        return false;
    const long long exponent = takeExponent(at, end, hex ? 'p' : 'e');

    float magnitude = 0.0f;
    const std::from_chars_result result =
        zet::platform::fromChars(first, at, magnitude, hex ? std::chars_format::hex : std::chars_format::general);
    // The nearest value is then infinity or 0; the place of the first digit decides which.
    if (result.ec == std::errc::result_out_of_range)
        magnitude = !mantissa.m_IsZero && mantissa.m_Place * (hex ? 4 : 1) + exponent > 0
                        ? std::numeric_limits<float>::infinity()
                        : 0.0f;
    else if (result.ec != std::errc())
        return false;
    value = sign * magnitude;
    return true;
}

} // namespace

int printFloat(float value, char* text)
{
    const uint32_t bits = std::bit_cast<uint32_t>(value);
    const int exponent = static_cast<int>(bits >> 23 & 0xFF);
    if (exponent == 0xFF)
        return printSpecial(bits, text);
    if constexpr (!zet::inner::kHasFastPaths)
        return printByLibrary(value, text);

    // value = mantissa * 2^shift, both whole.
    const uint64_t mantissa = (bits & 0x7FFFFF) | (exponent ? 0x800000u : 0u);
    const int shift = (exponent ? exponent : 1) - 150;
    char* out = text;
    if (shift > 40)
        return printByLibrary(value, text);
    if (bits >> 31)
        *out++ = '-';
    if (shift >= 0)
    {
        out = printInteger(mantissa << shift, out);
        std::memcpy(out, ".000000", 7);
        return static_cast<int>(out + 7 - text);
    }

    // The value in millionths, rounded half to even on the exact remainder, as printf does.
    const int down = -shift;
    uint64_t millionths = 0;
    if (down < 64)
    {
        const uint64_t scaled = mantissa * kMillion;
        const uint64_t half = uint64_t(1) << (down - 1);
        const uint64_t rest = scaled & ((half << 1) - 1);
        millionths = scaled >> down;
        if (rest > half || (rest == half && (millionths & 1)))
            ++millionths;
    }
    out = printInteger(millionths / kMillion, out);
    *out++ = '.';
    out = printMillionths(static_cast<uint32_t>(millionths % kMillion), out);
    return static_cast<int>(out - text);
}

bool scanFloat(const char* text, int length, float& value)
{
    const char* const end = text + length;
    const char* at = text;
    const bool negative = at != end && *at == '-';
    if (negative)
        ++at;

    // The form that printFloat writes, up to nine whole digits: an exact integer of millionths, divided once.
    const char* const first = at;
    uint64_t digits = 0;
    while (at != end && isDigit(*at) && at - first < 9)
        digits = digits * 10 + static_cast<uint64_t>(*at++ - '0');
    if (zet::inner::kHasFastPaths && at != first && end - at == 7 && *at == '.')
    {
        uint64_t decimals = 0;
        bool plain = true;
        for (int i = 1; i < 7; ++i)
        {
            plain = plain && isDigit(at[i]);
            decimals = decimals * 10 + static_cast<uint64_t>(at[i] - '0');
        }
        if (plain)
        {
            // Both operands are exact doubles, so the quotient is the nearest double. Rounding it again to a float
            // is wrong only from exactly half way between two floats, which is left to the slow form.
            const double quotient = static_cast<double>(digits * kMillion + decimals) / 1e6;
            if ((std::bit_cast<uint64_t>(quotient) & 0x1FFFFFFF) != 0x10000000)
            {
                const float magnitude = static_cast<float>(quotient);
                value = negative ? -magnitude : magnitude;
                return true;
            }
        }
    }

    const void* const zero = std::memchr(text, 0, static_cast<size_t>(length));
    return scanAny(text, zero ? static_cast<const char*>(zero) : end, value);
}

} // namespace wire

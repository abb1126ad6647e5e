#include "tools/json_text.h"

#include "tools/object_json.h"

#include <algorithm>
#include <array>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <cwchar>

namespace tools
{

namespace
{

// Bytes of the longest number, and of the longest escape.
constexpr size_t kNumber = 32;
constexpr size_t kEscape = 6;

constexpr char kDigits[] = "0123456789abcdef";

constexpr bool isPlain(uint32_t c)
{
    return c >= 0x20 && c < 0x80 && c != '"' && c != '\\';
}

char* putEscape(char* out, unsigned char c)
{
    static constexpr std::string_view kShort = "\"\\\b\f\n\r\t";
    static constexpr char kLetters[] = "\"\\bfnrt";
    *out++ = '\\';
    if (const size_t at = kShort.find(static_cast<char>(c)); at != std::string_view::npos)
    {
        *out++ = kLetters[at];
        return out;
    }
    std::memcpy(out, "u00", 3);
    out[3] = kDigits[c >> 4];
    out[4] = kDigits[c & 15];
    return out + 5;
}

char* putEscaped(char* out, std::string_view utf8)
{
    for (const char c : utf8)
    {
        const auto byte = static_cast<unsigned char>(c);
        if (byte >= 0x80 || isPlain(byte))
            *out++ = c;
        else
            out = putEscape(out, byte);
    }
    return out;
}

// The most decimals, by a float's binary exponent, with which different numbers are different floats.
constexpr int kLeastExponent = -9;
constexpr int kMostExponent = 22;
constexpr auto kDecimals = []
{
    std::array<int, kMostExponent - kLeastExponent + 1> all{};
    for (int exponent = kLeastExponent; exponent <= kMostExponent; ++exponent)
    {
        double step = 1;
        for (int i = exponent; i < 23; ++i)
            step /= 2;
        int decimals = 0;
        for (double unit = 0.1; unit > step * 1.0001; unit /= 10)
            ++decimals;
        all[static_cast<size_t>(exponent - kLeastExponent)] = decimals;
    }
    return all;
}();
constexpr std::array<double, 11> kPowers = {1, 1e1, 1e2, 1e3, 1e4, 1e5, 1e6, 1e7, 1e8, 1e9, 1e10};

// Prints a float that is the nearest to a number of few decimals, as those are that were sent as such a text; null for
// any other. No shorter number gives the same float. The JSON library prints the double nearest to that number; its
// algorithm finds the number unless it lies almost half way to the double's neighbour, which is left to the library.
char* putShortFloat(char* out, float value)
{
    const int exponent = static_cast<int>(std::bit_cast<uint32_t>(value) >> 23 & 0xFF) - 127;
    if (exponent < kLeastExponent || exponent > kMostExponent)
        return nullptr;
    const int decimals = kDecimals[static_cast<size_t>(exponent - kLeastExponent)];
    const double scale = kPowers[static_cast<size_t>(decimals)];
    const double size = std::fabs(static_cast<double>(value));
    // A wrong rounding is found below. NOLINTNEXTLINE(bugprone-incorrect-roundings)
    uint64_t number = static_cast<uint64_t>(size * scale + 0.5);
    const double near = static_cast<double>(number) / scale;
    if (static_cast<double>(static_cast<float>(near)) != size)
        return nullptr;
    const uint64_t bits = std::bit_cast<uint64_t>(near);
    constexpr uint64_t kFraction = (uint64_t(1) << 52) - 1;
    const double half =
        std::bit_cast<double>((bits & ~kFraction) - (uint64_t((bits & kFraction) == 0 ? 54 : 53) << 52));
    if (std::fabs(std::fma(-near, scale, static_cast<double>(number))) > 0.95 * half * scale)
        return nullptr;

    if (std::signbit(value))
        *out++ = '-';
    const auto power = static_cast<uint64_t>(scale);
    out = std::to_chars(out, out + 20, number / power).ptr;
    *out++ = '.';
    number %= power;
    int places = decimals;
    for (; places > 1 && number % 10 == 0; --places)
        number /= 10;
    for (int i = std::max(places, 1) - 1; i >= 0; --i, number /= 10)
        out[i] = static_cast<char>('0' + number % 10);
    return out + std::max(places, 1);
}

} // namespace

void JsonText::grow(size_t more)
{
    const size_t capacity = std::max(m_Size + more, std::max<size_t>(2 * m_Capacity, 1024));
    std::unique_ptr<char[]> bytes(new char[capacity]);
    if (m_Size > 0)
        std::memcpy(bytes.get(), m_Bytes.get(), m_Size);
    m_Bytes = std::move(bytes);
    m_Capacity = capacity;
}

void JsonText::put(std::string_view text)
{
    std::memcpy(need(text.size()), text.data(), text.size());
    m_Size += text.size();
}

void JsonText::addInteger(long long value)
{
    char* const at = need(kNumber);
    endAt(std::to_chars(at, at + kNumber, value).ptr);
}

void JsonText::addFloat(float value)
{
    if (const char* const end = putShortFloat(need(kNumber), value))
        endAt(end);
    else
        put(floatJson(value).dump());
}

void JsonText::addText(const wchar_t* text)
{
    const wchar_t* at = text;
    char* out = need(kEscape * std::wcslen(text) + 2);
    *out++ = '"';
    for (; *at; ++at)
    {
        const auto c = static_cast<uint32_t>(*at);
        if (isPlain(c))
        {
            *out++ = static_cast<char>(c);
        }
        else if (c < 0x80)
        {
            out = putEscape(out, static_cast<unsigned char>(c));
        }
        else if (c < 0x800)
        {
            *out++ = static_cast<char>(0xC0 | c >> 6);
            *out++ = static_cast<char>(0x80 | (c & 0x3F));
        }
        else if (c < 0xD800 || (c > 0xDFFF && c < 0x10000))
        {
            *out++ = static_cast<char>(0xE0 | c >> 12);
            *out++ = static_cast<char>(0x80 | (c >> 6 & 0x3F));
            *out++ = static_cast<char>(0x80 | (c & 0x3F));
        }
        else
        {
            break;
        }
    }
    // Surrogates, characters above U+FFFF and invalid ones are rare: the library joins and replaces them.
    if (*at)
    {
        const std::string rest = utf8Of(at);
        endAt(out);
        out = putEscaped(need(kEscape * rest.size() + 1), rest);
    }
    *out++ = '"';
    endAt(out);
}

void JsonText::addText(std::string_view utf8)
{
    char* out = need(kEscape * utf8.size() + 2);
    *out++ = '"';
    out = putEscaped(out, utf8);
    *out++ = '"';
    endAt(out);
}

void JsonText::addHex(const void* data, size_t size)
{
    const unsigned char* const bytes = static_cast<const unsigned char*>(data);
    char* out = need(2 * size + 2);
    *out++ = '"';
    for (size_t i = 0; i < size; ++i)
    {
        *out++ = kDigits[bytes[i] >> 4];
        *out++ = kDigits[bytes[i] & 15];
    }
    *out++ = '"';
    endAt(out);
}

} // namespace tools

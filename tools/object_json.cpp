#include "tools/object_json.h"

#include "framework/buffer.h"
#include "framework/platform/from_chars.h"
#include "framework/string_helper.h"
#include "tools/schema_walk.h"

#include <algorithm>
#include <charconv>
#include <cstring>

namespace tools
{

using nlohmann::ordered_json;
using wire::Field;

namespace
{

template <class T>
const T& as(uintptr_t at)
{
    return *reinterpret_cast<const T*>(at);
}

// Values of an object's memory.
struct Memory
{
    static constexpr bool kInMemory = true;

    ordered_json number(const Field& field, uintptr_t at, const std::string&)
    {
        // A little-endian machine, as the wire machinery tests.
        uint32_t bits = 0;
        std::memcpy(&bits, reinterpret_cast<const void*>(at), static_cast<size_t>(field.size));
        return numberJson(field, bits);
    }
    ordered_json real(const Field&, uintptr_t at, const std::string&) { return floatJson(as<float>(at)); }
    ordered_json text(const Field&, uintptr_t at, const std::string&)
    {
        return utf8Of(as<zet::String_T<wchar_t>>(at).getBuffer());
    }
    ordered_json raw(const Field&, uintptr_t at, int size, const std::string&)
    {
        return hexOf(reinterpret_cast<const void*>(at), static_cast<size_t>(size));
    }
    ordered_json block(const Field& field, uintptr_t at, const std::string&)
    {
        const auto [bytes, size] = field.bytes(reinterpret_cast<const void*>(at));
        return hexOf(bytes, static_cast<size_t>(size));
    }
    int count(const Field&, const std::string&) { return 0; }
    int literal(int own, const std::string&) { return own; }
    int sized(const Field& field, int said) { return std::clamp(said, 0, field.extent); }
};

} // namespace

ordered_json objectJson(const wire::Schema& schema, const void* object)
{
    Memory memory;
    return SchemaWalk<Memory>(memory).object(schema, reinterpret_cast<uintptr_t>(object), "");
}

ordered_json numberJson(const Field& field, uint32_t bits)
{
    return field.isBool ? ordered_json(bits != 0) : ordered_json(numberOf(field, bits));
}

int64_t numberOf(const Field& field, uint32_t bits)
{
    const int unused = 32 - 8 * field.size;
    return field.isSigned ? static_cast<int32_t>(bits << unused) >> unused : int64_t{bits};
}

// The shortest digits that give the same float, so that any reader gets it back.
ordered_json floatJson(float value)
{
    char text[32];
    const auto end = std::to_chars(text, text + sizeof text, value);
    double same = 0;
    zet::platform::fromChars(text, end.ptr, same);
    return same;
}

std::string utf8Of(const wchar_t* text)
{
    const zet::String_T<char> narrow = zet::StringHelper::wideToUtf8(text);
    return std::string(narrow.getBuffer(), static_cast<size_t>(narrow.getLength()));
}

std::string hexOf(const void* data, size_t size)
{
    static constexpr char digits[] = "0123456789abcdef";
    const unsigned char* const bytes = static_cast<const unsigned char*>(data);
    std::string hex;
    hex.reserve(size * 2);
    for (size_t i = 0; i < size; ++i)
    {
        hex += digits[bytes[i] >> 4];
        hex += digits[bytes[i] & 15];
    }
    return hex;
}

int hexDigit(char c)
{
    const char lower = static_cast<char>(c | 0x20);
    return c >= '0' && c <= '9' ? c - '0' : lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : -1;
}

bool isHexSpace(char c)
{
    return c == ' ' || (c >= '\t' && c <= '\r');
}

bool bytesOfHex(std::string_view hex, std::string& bytes)
{
    bytes.clear();
    int high = -1;
    for (const char c : hex)
    {
        if (isHexSpace(c))
            continue;
        const int digit = hexDigit(c);
        if (digit < 0)
            return false;
        if (high < 0)
        {
            high = digit;
        }
        else
        {
            bytes += static_cast<char>(high << 4 | digit);
            high = -1;
        }
    }
    return high < 0;
}

} // namespace tools

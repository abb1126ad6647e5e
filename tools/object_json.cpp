#include "tools/object_json.h"

#include "framework/buffer.h"
#include "framework/platform/from_chars.h"
#include "framework/string_helper.h"
#include "framework/uuid.h"

#include <algorithm>
#include <charconv>

namespace tools
{

using nlohmann::ordered_json;
using wire::Field;
using wire::Kind;

namespace
{

template <class T>
const T& as(const char* at)
{
    return *reinterpret_cast<const T*>(at);
}

ordered_json valueJson(const Field& field, const char* at, const char* object);

ordered_json listJson(const Field& field, const void* list)
{
    ordered_json array = ordered_json::array();
    field.walk(list,
               [&](const void* key, const void* value)
               {
                   const Field& element = field.parts.back();
                   ordered_json json = valueJson(element, static_cast<const char*>(value), nullptr);
                   if (field.parts.size() == 2)
                       array.push_back({valueJson(field.parts[0], static_cast<const char*>(key), nullptr), json});
                   else
                       array.push_back(std::move(json));
               });
    return array;
}

ordered_json arrayJson(const Field& element, const char* at, size_t stride, int count)
{
    ordered_json array = ordered_json::array();
    for (int i = 0; i < count; ++i)
        array.push_back(valueJson(element, at + static_cast<size_t>(i) * stride, nullptr));
    return array;
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

int sizeAt(const Field& field, const char* object)
{
    return std::clamp(as<int>(object + field.sizeOffset), 0, field.extent);
}

ordered_json valueJson(const Field& field, const char* at, const char* object)
{
    switch (field.kind)
    {
    case Kind::kBool:
        return as<bool>(at);
    case Kind::kChar:
        return static_cast<int>(static_cast<signed char>(as<char>(at)));
    case Kind::kByte:
        return as<unsigned char>(at);
    case Kind::kShort:
        return as<short>(at);
    case Kind::kWord:
        return as<unsigned short>(at);
    case Kind::kInt:
        return as<int>(at);
    case Kind::kLong:
        return static_cast<uint32_t>(as<unsigned long>(at));
    case Kind::kFloat:
        return floatJson(as<float>(at));
    case Kind::kText:
        return utf8Of(as<zet::String_T<wchar_t>>(at).getBuffer());
    case Kind::kUuid:
        return hexOf(at, sizeof(zet::Uuid));
    case Kind::kNode:
        return hexOf(at, sizeof(zet::uuid_node_t));
    case Kind::kBuffer:
        return hexOf(as<zet::Buffer>(at).getBuffer(), static_cast<size_t>(as<zet::Buffer>(at).getBufferSize()));
    case Kind::kBytes:
        return hexOf(at, static_cast<size_t>(field.extent));
    case Kind::kSizedBytes:
        return hexOf(at, static_cast<size_t>(sizeAt(field, object)));
    case Kind::kPayload:
    {
        const auto [bytes, size] = field.bytes(at);
        return hexOf(bytes, static_cast<size_t>(size));
    }
    case Kind::kRecord:
        return objectJson(*field.record, at);
    case Kind::kArray:
        return arrayJson(field.parts[0], at, field.stride, field.extent);
    case Kind::kSizedItems:
        return arrayJson(field.parts[0], at, field.stride, sizeAt(field, object));
    case Kind::kPair:
        return ordered_json::array({valueJson(field.parts[0], at + field.parts[0].offset, nullptr),
                                    valueJson(field.parts[1], at + field.parts[1].offset, nullptr)});
    case Kind::kList:
    case Kind::kElementsOf:
        return listJson(field, at);
    case Kind::kCountOf:
    case Kind::kColumns:
    case Kind::kInterleaved:
    case Kind::kLiteral:
    case Kind::kVersion:
        break;
    }
    return nullptr;
}

} // namespace

ordered_json objectJson(const wire::Schema& schema, const void* object)
{
    const char* const at = static_cast<const char*>(object);
    ordered_json json = ordered_json::object();
    for (const bool head : {true, false})
    {
        for (const Field& field : schema.fields)
        {
            if (field.head != head)
                continue;
            if (field.kind == Kind::kColumns || field.kind == Kind::kInterleaved)
                for (const Field& part : field.parts)
                    json[part.name] = valueJson(part, at + part.offset, at);
            else if (!field.name.empty() && field.kind != Kind::kCountOf)
                json[field.name] = valueJson(field, at + field.offset, at);
        }
    }
    return json;
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

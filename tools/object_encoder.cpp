#include "tools/object_encoder.h"

#include "framework/string.h"
#include "packaging/wire/text_form.h"
#include "packaging/wire/value_form.h"
#include "tools/class_table.h"
#include "tools/object_json.h"
#include "tools/schema_walk.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <memory>
#include <mutex>
#include <unordered_map>

namespace tools
{

using nlohmann::ordered_json;
using wire::Field;
using wire::Kind;
using wire::Schema;

namespace
{

struct Fault
{
    std::string m_What;
};

[[noreturn]] void fail(const std::string& path, const std::string& what)
{
    throw Fault{(path.empty() ? "fields" : path) + " " + what};
}

// A default-made object of the schema's class; null for a record that has no class of its own.
const ordered_json* defaultsOf(const Schema& schema)
{
    static std::mutex mutex;
    static std::unordered_map<const Schema*, std::unique_ptr<const ordered_json>> all;
    const std::lock_guard lock(mutex);
    const auto [place, isNew] = all.try_emplace(&schema);
    const ClassInfo* const info = isNew ? findClass(schema.name) : nullptr;
    if (info && &info->m_Wire() == &schema)
        place->second = std::make_unique<const ordered_json>(objectJson(schema, info->make().get()));
    return place->second.get();
}

bool isMember(const Schema& schema, const std::string& name)
{
    const auto isNamed = [&](const Field& field) { return !name.empty() && field.name == name; };
    return std::any_of(schema.fields.begin(), schema.fields.end(),
                       [&](const Field& field) {
                           return field.kind == Kind::kTable
                                      ? std::any_of(field.parts.begin(), field.parts.end(), isNamed)
                                      : isNamed(field);
                       });
}

// The characters of a text; JSON is valid UTF-8.
std::u32string charactersOf(const std::string& utf8)
{
    std::u32string text;
    for (size_t i = 0; i < utf8.size();)
    {
        const auto lead = static_cast<unsigned char>(utf8[i]);
        const size_t more = lead >= 0xF0 ? 3 : lead >= 0xE0 ? 2 : lead >= 0xC0 ? 1 : 0;
        char32_t c = more == 0 ? lead : lead & (0x3Fu >> more);
        for (size_t k = 1; k <= more && i + k < utf8.size(); ++k)
            c = c << 6 | (static_cast<unsigned char>(utf8[i + k]) & 0x3F);
        text += c;
        i += more + 1;
    }
    return text;
}

std::u16string unitsOf(const std::u32string& text)
{
    std::u16string units;
    for (const char32_t c : text)
    {
        if (c > 0xFFFF)
            units += static_cast<char16_t>(0xD800 + ((c - 0x10000) >> 10));
        units += static_cast<char16_t>(c > 0xFFFF ? 0xDC00 + ((c - 0x10000) & 0x3FF) : c);
    }
    return units;
}

// Values of JSON, written to a packager as the walk asks for them. A place is a JSON value.
template <class P>
class JsonSource
{
public:
    static constexpr bool kInMemory = false;
    static constexpr bool kHasPlaces = true;

    JsonSource(P& packager, TextWidth width) : m_Packager(packager), m_Width(width) {}

    uintptr_t enter(const Schema& schema, uintptr_t at, const std::string& path)
    {
        // The path of an object within an object ends with a point.
        const std::string name = path.empty() ? path : path.substr(0, path.size() - 1);
        if (at == 0)
            return placeOf(defaultsOf(schema));
        const ordered_json& json = jsonAt(at);
        if (!json.is_object())
            fail(name, "is not an object of " + schema.name);
        for (const auto& item : json.items())
            if (!isMember(schema, item.key()))
                fail(path + (item.key().empty() ? "\"\"" : item.key()), "is not a field of " + schema.name);
        return at;
    }
    uintptr_t member(const Schema& schema, uintptr_t object, const Field& field)
    {
        if (field.name.empty())
            return 0;
        const ordered_json* const defaults = defaultsOf(schema);
        for (const ordered_json* const json : {object ? &jsonAt(object) : nullptr, defaults})
            if (json)
                if (const auto place = json->find(field.name); place != json->end())
                    return placeOf(&*place);
        return 0;
    }
    uintptr_t element(uintptr_t at, int i)
    {
        const auto index = static_cast<size_t>(i);
        return at != 0 && jsonAt(at).is_array() && index < jsonAt(at).size() ? placeOf(&jsonAt(at)[index]) : 0;
    }
    void holds(uintptr_t at, int least, int most, const std::string& path)
    {
        if (at == 0)
            return;
        const ordered_json& json = arrayAt(at, path);
        const auto size = static_cast<int64_t>(json.size());
        if (size < least || size > most)
            fail(path, "has " + std::to_string(size) + " elements, not " + (least < most ? "at most " : "") +
                           std::to_string(most));
    }

    ordered_json number(const Field& field, uintptr_t at, const std::string& path)
    {
        if (at == 0)
            return putNumber(field.size, field.extent, path);
        const ordered_json& json = jsonAt(at);
        if (field.isBool != json.is_boolean())
            fail(path, std::string("is not ") + (field.isBool ? "true or false" : "a whole number"));
        if (field.isBool)
            return putNumber(field.size, json.get<bool>() ? 1 : 0, path);
        if (!json.is_number_integer())
            fail(path, "is not a whole number");
        const int bits = 8 * field.size;
        const int64_t least = field.isSigned ? -(int64_t{1} << (bits - 1)) : 0;
        const int64_t most = (int64_t{1} << (field.isSigned ? bits - 1 : bits)) - 1;
        const bool isHuge = json.is_number_unsigned() &&
                            json.get<uint64_t>() > static_cast<uint64_t>(std::numeric_limits<int64_t>::max());
        const int64_t value = isHuge ? most : json.get<int64_t>();
        if (isHuge || value < least || value > most)
            fail(path, "is " + json.dump() + ", out of the range from " + std::to_string(least) + " to " +
                           std::to_string(most));
        return putNumber(field.size, value, path);
    }
    // A float that JSON has no number for is null.
    ordered_json real(const Field&, uintptr_t at, const std::string& path)
    {
        float value = 0;
        if (at != 0 && jsonAt(at).is_null())
        {
            value = std::numeric_limits<float>::quiet_NaN();
        }
        else if (at != 0)
        {
            if (!jsonAt(at).is_number())
                fail(path, "is not a number");
            const double wide = jsonAt(at).get<double>();
            if (!(std::abs(wide) <= static_cast<double>(std::numeric_limits<float>::max())))
                fail(path, "is " + jsonAt(at).dump() + ", out of the range of a float");
            value = static_cast<float>(wide);
        }
        require(wire::writeFloat(m_Packager, value), path);
        return nullptr;
    }
    ordered_json text(const Field&, uintptr_t at, const std::string& path)
    {
        const std::u32string text = at == 0 ? std::u32string() : charactersOf(textAt(at, path));
        if (text.find(U'\0') != std::u32string::npos)
            fail(path, "has a zero character, which ends a text");
        if (m_Width == TextWidth::k16)
            putText(unitsOf(text), path);
        else
            putText(text, path);
        return nullptr;
    }
    ordered_json raw(const Field&, uintptr_t at, int size, const std::string& path)
    {
        const std::string bytes = at == 0 ? std::string(static_cast<size_t>(size), '\0') : bytesAt(at, path);
        if (bytes.size() != static_cast<size_t>(size))
            fail(path, "has " + std::to_string(bytes.size()) + " bytes, not " + std::to_string(size));
        putBytes(bytes, path);
        return nullptr;
    }
    ordered_json block(const Field& field, uintptr_t at, const std::string& path)
    {
        const std::string bytes = at == 0 ? std::string() : bytesAt(at, path);
        // Of a buffer there is less; what the class itself writes is marked.
        const bool isLimited = field.kind == Kind::kBuffer && field.words.empty();
        const int most = isLimited ? wire::kMaxBufferSize<P> : CCmdPackager::kMaxDataSize;
        if (bytes.size() > static_cast<size_t>(most))
            fail(path, "has " + std::to_string(bytes.size()) + " bytes; at most " + std::to_string(most) + " are sent");
        putNumber(4, static_cast<int64_t>(bytes.size()), path);
        putBytes(bytes, path);
        return nullptr;
    }
    int count(const Field&, uintptr_t at, const std::string& path)
    {
        const auto size = at == 0 ? 0 : static_cast<int64_t>(arrayAt(at, path.substr(0, path.rfind('('))).size());
        return putNumber(4, size, path);
    }
    int literal(int own, const std::string& path) { return putNumber(4, own, path); }
    // What the class's own Write sends, whatever the member says.
    int sized(const Field& field, int said) { return std::clamp(said, 0, field.extent); }

private:
    static const ordered_json& jsonAt(uintptr_t at) { return *reinterpret_cast<const ordered_json*>(at); }
    static uintptr_t placeOf(const ordered_json* json) { return reinterpret_cast<uintptr_t>(json); }

    static const ordered_json& arrayAt(uintptr_t at, const std::string& path)
    {
        if (!jsonAt(at).is_array())
            fail(path, "is not an array");
        return jsonAt(at);
    }
    static const std::string& textAt(uintptr_t at, const std::string& path)
    {
        if (!jsonAt(at).is_string())
            fail(path, "is not a text");
        return jsonAt(at).get_ref<const std::string&>();
    }
    static std::string bytesAt(uintptr_t at, const std::string& path)
    {
        std::string bytes;
        if (!jsonAt(at).is_string() || !bytesOfHex(jsonAt(at).get_ref<const std::string&>(), bytes))
            fail(path, "is not a text of hexadecimal digits");
        return bytes;
    }

    static void require(bool isWritten, const std::string& path)
    {
        if (!isWritten)
            fail(path, "does not fit");
    }
    int putNumber(int size, int64_t value, const std::string& path)
    {
        unsigned char bytes[4];
        for (int i = 0; i < size; ++i)
            bytes[i] = static_cast<unsigned char>(value >> 8 * (size - 1 - i));
        require(m_Packager.Write(bytes, size), path);
        return static_cast<int>(value);
    }
    void putBytes(const std::string& bytes, const std::string& path)
    {
        require(m_Packager.Write(bytes.data(), static_cast<int>(bytes.size())), path);
    }
    template <class Unit>
    void putText(const std::basic_string<Unit>& text, const std::string& path)
    {
        if (!wire::writeText(m_Packager, zet::String_T<Unit>(text.c_str(), static_cast<int>(text.size()))))
            fail(path, "has " + std::to_string(text.size()) + " characters, which do not fit");
    }

    P& m_Packager;
    TextWidth m_Width;
};

template <class P>
std::string encode(const Schema& schema, const ordered_json& fields, TextWidth width, P& packager)
{
    try
    {
        JsonSource<P> source(packager, width);
        SchemaWalk<JsonSource<P>>(source).object(schema, reinterpret_cast<uintptr_t>(&fields), "");
        return "";
    }
    catch (const Fault& fault)
    {
        return fault.m_What;
    }
}

} // namespace

std::string encodeObject(const Schema& schema, const ordered_json& fields, TextWidth width, CCmdPackager& packager)
{
    return encode(schema, fields, width, packager);
}

std::string encodeObject(const Schema& schema, const ordered_json& fields, TextWidth width, CDataPackager& packager)
{
    return encode(schema, fields, width, packager);
}

} // namespace tools

#include "tools/schema_reader.h"

#include "framework/platform/from_chars.h"
#include "framework/string.h"
#include "packaging/float_text.h"
#include "tools/object_json.h"

#include <charconv>
#include <map>

namespace tools
{

using nlohmann::ordered_json;
using wire::Field;
using wire::Kind;

namespace
{

struct Failed
{
};

class SchemaReader
{
public:
    SchemaReader(std::string_view bytes, Explanation& out) : m_Bytes(bytes), m_Out(out) {}

    ordered_json object(const wire::Schema& schema, const std::string& path)
    {
        Scope scope;
        ordered_json json = ordered_json::object();
        ordered_json body = ordered_json::object();
        for (const Field& field : schema.fields)
            member(field, path, scope, field.head ? json : body);
        json.update(body);
        return json;
    }
    size_t position() const { return m_At; }

private:
    // Values of an object's earlier fields that its later ones need, by offset.
    struct Scope
    {
        std::map<size_t, int> m_Ints;
        std::map<size_t, int> m_Counts;
    };

    void member(const Field& field, const std::string& path, Scope& scope, ordered_json& json)
    {
        const std::string name = path + field.name;
        switch (field.kind)
        {
        case Kind::kVersion:
            number(2, path + "(version)");
            return;
        case Kind::kLiteral:
            number(4, path + "(ignored count)");
            return;
        case Kind::kCountOf:
            scope.m_Counts[field.offset] = static_cast<int>(number(4, name + "(count)"));
            return;
        case Kind::kElementsOf:
            json[field.name] = elements(field, name, scope.m_Counts[field.offset]);
            return;
        case Kind::kColumns:
            columns(field, path, scope.m_Counts[field.parts[0].offset], json);
            return;
        case Kind::kInterleaved:
            interleaved(field, path, json);
            return;
        case Kind::kSizedBytes:
            json[field.name] = hexOf(take(scope.m_Ints[field.sizeOffset], name), scope.m_Ints[field.sizeOffset], name);
            return;
        case Kind::kSizedItems:
            json[field.name] = repeated(field.parts[0], name, scope.m_Ints[field.sizeOffset]);
            return;
        default:
            json[field.name] = value(field, name);
            if (field.kind == Kind::kInt)
                scope.m_Ints[field.offset] = json[field.name].get<int>();
            return;
        }
    }

    ordered_json value(const Field& field, const std::string& name)
    {
        switch (field.kind)
        {
        case Kind::kBool:
            return number(1, name) != 0;
        case Kind::kChar:
            return static_cast<signed char>(number(1, name));
        case Kind::kByte:
            return static_cast<unsigned char>(number(1, name));
        case Kind::kShort:
            return static_cast<short>(number(2, name));
        case Kind::kWord:
            return static_cast<unsigned short>(number(2, name));
        case Kind::kInt:
            return static_cast<int>(number(4, name));
        case Kind::kLong:
            return number(4, name);
        case Kind::kFloat:
            return floatValue(name);
        case Kind::kText:
            return textValue(name);
        case Kind::kUuid:
            return raw(16, name);
        case Kind::kNode:
            return raw(6, name);
        case Kind::kBytes:
            return raw(field.extent, name);
        case Kind::kBuffer:
        case Kind::kPayload:
            return raw(static_cast<int>(number(4, name + "(size)")), name);
        case Kind::kRecord:
            return object(*field.record, name + ".");
        case Kind::kArray:
            return repeated(field.parts[0], name, field.extent);
        case Kind::kPair:
            return ordered_json::array(
                {value(field.parts[0], name + ".first"), value(field.parts[1], name + ".second")});
        case Kind::kList:
            return elements(field, name, static_cast<int>(number(4, name + "(count)")));
        default:
            return nullptr;
        }
    }

    ordered_json repeated(const Field& element, const std::string& name, int count)
    {
        ordered_json array = ordered_json::array();
        for (int i = 0; i < count; ++i)
            array.push_back(value(element, name + "[" + std::to_string(i) + "]"));
        return array;
    }
    ordered_json elements(const Field& list, const std::string& name, int count)
    {
        if (list.parts.size() == 1)
            return repeated(list.parts[0], name, count);
        const bool travels = list.words.find("Pairs") != std::string::npos;
        ordered_json array = ordered_json::array();
        for (int i = 0; i < count; ++i)
        {
            const std::string place = name + "[" + std::to_string(i) + "]";
            ordered_json key = travels ? value(list.parts[0], place + ".key") : ordered_json(i);
            array.push_back({key, value(list.parts[1], place)});
        }
        return array;
    }
    void columns(const Field& field, const std::string& path, int rows, ordered_json& json)
    {
        for (const Field& column : field.parts)
            json[column.name] = ordered_json::array();
        for (int row = 0; row < rows; ++row)
            for (const Field& column : field.parts)
                json[column.name].push_back(
                    value(column.parts[0], path + column.name + "[" + std::to_string(row) + "]"));
    }
    void interleaved(const Field& field, const std::string& path, ordered_json& json)
    {
        const int rows = static_cast<int>(number(4, path + "(rows)"));
        const bool flat = field.literals.size() == 1;
        const int across = flat ? 1 : static_cast<int>(number(4, path + "(columns)"));
        for (const Field& table : field.parts)
            json[table.name] = ordered_json::array();
        if (rows <= 0 || across <= 0)
            return;
        const int widest = flat ? 1 : field.parts[0].parts[0].extent;
        for (int row = 0; row < rows; ++row)
        {
            std::vector<ordered_json> lines(field.parts.size(), ordered_json::array());
            for (int column = 0; column < across; ++column)
            {
                for (size_t i = 0; i < field.parts.size(); ++i)
                {
                    const Field& table = field.parts[i];
                    const Field& cell = flat ? table.parts[0] : table.parts[0].parts[0];
                    const int width = flat ? 1 : table.parts[0].extent;
                    if (width < widest && column >= width)
                        continue;
                    std::string place = path + table.name + "[" + std::to_string(row) + "]";
                    if (!flat)
                        place.append("[").append(std::to_string(column)).append("]");
                    ordered_json json_cell = value(cell, place);
                    if (row < table.extent && column < width)
                        lines[i].push_back(std::move(json_cell));
                }
            }
            for (size_t i = 0; i < field.parts.size(); ++i)
                if (row < field.parts[i].extent)
                    json[field.parts[i].name].push_back(flat ? lines[i][0] : lines[i]);
        }
    }

    const char* take(int size, const std::string& name)
    {
        const size_t left = m_Bytes.size() - m_At;
        if (size < 0 || static_cast<size_t>(size) > left)
        {
            m_Out.m_Failure = "needed " + std::to_string(size) + ", had " + std::to_string(left) + " at " + name;
            throw Failed();
        }
        const char* const at = m_Bytes.data() + m_At;
        m_At += static_cast<size_t>(size);
        return at;
    }
    void tell(size_t from, const std::string& name, const std::string& text)
    {
        m_Out.m_Values.push_back({from, m_At - from, name, text});
    }

    uint32_t bigEndian(int size, const std::string& name)
    {
        const char* const at = take(size, name);
        uint32_t bits = 0;
        for (int i = 0; i < size; ++i)
            bits = bits << 8 | static_cast<unsigned char>(at[i]);
        return bits;
    }
    uint32_t number(int size, const std::string& name)
    {
        const size_t from = m_At;
        const uint32_t bits = bigEndian(size, name);
        const int32_t value = size == 1   ? static_cast<int32_t>(bits)
                              : size == 2 ? static_cast<int16_t>(bits)
                                          : static_cast<int32_t>(bits);
        tell(from, name, std::to_string(value));
        return bits;
    }
    std::string hexOf(const char* bytes, int size, const std::string& name)
    {
        const std::string hex = tools::hexOf(bytes, static_cast<size_t>(size));
        tell(m_At - static_cast<size_t>(size), name, hex);
        return hex;
    }
    std::string raw(int size, const std::string& name) { return hexOf(take(size, name), size, name); }

    ordered_json floatValue(const std::string& name)
    {
        const size_t from = m_At;
        const int length = static_cast<int>(bigEndian(1, name));
        const char* const text = take(length, name);
        float value = 0;
        wire::scanFloat(text, length, value);
        tell(from, name, std::string(text, static_cast<size_t>(length)));
        char digits[32];
        const auto end = std::to_chars(digits, digits + sizeof digits, value);
        double same = 0;
        zet::platform::fromChars(digits, end.ptr, same);
        return same;
    }
    std::string textValue(const std::string& name)
    {
        const size_t from = m_At;
        uint32_t count = bigEndian(1, name);
        const uint32_t more = count >> 6;
        count &= 0x3F;
        for (uint32_t i = 0; i < more; ++i)
            count = count << 8 | bigEndian(1, name);
        const char* const units = take(static_cast<int>(count * 2), name);
        zet::String_T<wchar_t> text;
        bool ended = false;
        for (uint32_t i = 0; i < count; ++i)
        {
            const uint32_t unit = static_cast<unsigned char>(units[2 * i]) |
                                  static_cast<uint32_t>(static_cast<unsigned char>(units[2 * i + 1])) << 8;
            ended = ended || unit == 0;
            if (ended)
                continue;
            // A reader of 32-bit units makes one value of each surrogate, whatever its neighbours.
            const bool surrogate = sizeof(wchar_t) == 4 && unit >= 0xD800 && unit <= 0xDFFF;
            const uint32_t wide =
                surrogate ? ((((unit - 0xD800) & 0xFFFF) << 10) | ((unit - 0xDC00) & 0xFFFF)) + 0x10000 : unit;
            const wchar_t one[2] = {static_cast<wchar_t>(wide), 0};
            text += one;
        }
        const std::string utf8 = utf8Of(text.getBuffer());
        tell(from, name, ordered_json(utf8).dump());
        return utf8;
    }

    std::string_view m_Bytes;
    size_t m_At = 0;
    Explanation& m_Out;
};

} // namespace

Explanation explain(const wire::Schema& schema, std::string_view bytes)
{
    Explanation out;
    SchemaReader reader(bytes, out);
    try
    {
        out.m_Json = reader.object(schema, "");
    }
    catch (const Failed&)
    {
    }
    out.m_Consumed = reader.position();
    return out;
}

} // namespace tools

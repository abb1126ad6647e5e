#include "tools/schema_reader.h"

#include "framework/string.h"
#include "packaging/cmd_packager.h"
#include "packaging/float_text.h"
#include "tools/object_json.h"
#include "tools/schema_walk.h"

#include <algorithm>

namespace tools
{

using nlohmann::ordered_json;
using wire::Field;

namespace
{

struct Failed
{
};

// Reads values from bytes in order, and records each.
class SchemaReader
{
public:
    static constexpr bool kInMemory = false;

    SchemaReader(std::string_view bytes, Explanation& out, Limits limits) : m_Bytes(bytes), m_Out(out), m_Limits(limits)
    {
    }

    ordered_json number(const Field& field, uintptr_t, const std::string& name)
    {
        const size_t from = m_At;
        const uint32_t bits = number(field.size, name);
        // A number without a member is the version; those of a list or an array have no value of their own.
        if (hasLimits() && field.name.empty() && field.extent != 0 && bits != static_cast<uint32_t>(field.extent))
            fail(from, "version " + std::to_string(bits) + ", not " + std::to_string(field.extent), name);
        return numberJson(field, bits);
    }
    ordered_json raw(const Field&, uintptr_t, int size, const std::string& name) { return raw(size, name); }
    ordered_json block(const Field& field, uintptr_t, const std::string& name)
    {
        const size_t from = m_At;
        const int size = static_cast<int>(number(4, name + "(size)"));
        const bool isLimited = hasLimits() && field.kind == wire::Kind::kBuffer && field.words.empty();
        if (isLimited && size > CCmdPackager::kMaxBufferSize)
            fail(from, tooMany(size, "bytes", CCmdPackager::kMaxBufferSize), name);
        return raw(size, name);
    }
    int count(const Field&, const std::string& name) { return static_cast<int>(number(4, name)); }
    int literal(int, const std::string& name) { return static_cast<int>(number(4, name)); }
    // A negative number from the wire reads no elements.
    int sized(const Field&, int said) { return std::max(said, 0); }

    ordered_json real(const Field&, uintptr_t, const std::string& name)
    {
        const size_t from = m_At;
        const int length = static_cast<int>(bigEndian(1, name));
        const char* const text = take(length, name);
        float value = 0;
        wire::scanFloat(text, length, value);
        tell(from, name, std::string(text, static_cast<size_t>(length)));
        return floatJson(value);
    }
    ordered_json text(const Field&, uintptr_t, const std::string& name)
    {
        const size_t from = m_At;
        uint32_t count = bigEndian(1, name);
        const uint32_t more = count >> 6;
        count &= 0x3F;
        for (uint32_t i = 0; i < more; ++i)
            count = count << 8 | bigEndian(1, name);
        if (hasLimits() && count > static_cast<uint32_t>(CCmdPackager::kMaxTextUnits))
            fail(from, tooMany(count, "units", CCmdPackager::kMaxTextUnits), name);
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
            // A reader with four-byte units turns each surrogate into one value, whatever the unit beside it.
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

    size_t position() const { return m_At; }

private:
    bool hasLimits() const { return m_Limits == Limits::kOfCommands; }
    [[noreturn]] void fail(size_t offset, const std::string& what, const std::string& name)
    {
        m_Out.m_Failure = what + " at " + name;
        m_Out.m_FailureOffset = offset;
        throw Failed();
    }
    const char* take(int size, const std::string& name)
    {
        const size_t left = m_Bytes.size() - m_At;
        if (size < 0 || static_cast<size_t>(size) > left)
            fail(m_At, "needed " + std::to_string(size) + ", had " + std::to_string(left), name);
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
    std::string raw(int size, const std::string& name)
    {
        const std::string hex = hexOf(take(size, name), static_cast<size_t>(size));
        tell(m_At - static_cast<size_t>(size), name, hex);
        return hex;
    }

    std::string_view m_Bytes;
    size_t m_At = 0;
    Explanation& m_Out;
    Limits m_Limits;
};

} // namespace

Explanation explain(const wire::Schema& schema, std::string_view bytes, Limits limits)
{
    Explanation out;
    SchemaReader reader(bytes, out, limits);
    try
    {
        out.m_Json = SchemaWalk<SchemaReader>(reader).object(schema, 0, "");
    }
    catch (const Failed&)
    {
    }
    out.m_Consumed = reader.position();
    return out;
}

} // namespace tools

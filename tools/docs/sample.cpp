#include "tools/docs/sample.h"

#include "tools/reading.h"
#include "tools/schema_reader.h"
#include "tools/schema_text.h"
#include "tools/schema_walk.h"

#include <algorithm>
#include <cctype>
#include <map>

namespace tools
{

using nlohmann::ordered_json;
using wire::Field;

namespace
{

// A record of more values and an array of more elements are one piece.
constexpr size_t kMostOfRecord = 6;
constexpr size_t kMostOfArray = 12;
constexpr size_t kLongestPiece = 24;
constexpr size_t kLongestText = 8;
constexpr unsigned kClientIndex = 7;
// A command that a tunnel carries: CCmdHostnameRequest with the server type 3.
constexpr std::string_view kInnerFrame("\x00\x10\x14\x00\x00\x00\x00\x02\x00\x07\x03", 11);

// Encodes values in the order in which the walk requests them.
class SampleValues
{
public:
    static constexpr bool kInMemory = false;

    ordered_json number(const Field& field, uintptr_t, const std::string&)
    {
        if (field.most != 0)
        {
            put(field.size, 1);
            return 1;
        }
        const bool isIndex = field.head && !field.name.empty();
        const unsigned value = field.extent != 0 ? static_cast<unsigned>(field.extent)
                               : isIndex         ? kClientIndex
                               : field.isBool    ? 1
                                                 : ++m_Number;
        put(field.size, value);
        return nullptr;
    }
    ordered_json real(const Field&, uintptr_t, const std::string&)
    {
        const std::string text = std::to_string(++m_Number) + ".500000";
        put(1, static_cast<unsigned>(text.size()));
        m_Bytes += text;
        return nullptr;
    }
    // The name of the member, so that the example can be found in a dump.
    ordered_json text(const Field&, uintptr_t, const std::string& path)
    {
        const size_t begin = path.rfind("m_");
        std::string text = begin == std::string::npos ? "a" : path.substr(begin + 2, kLongestText);
        text.erase(std::find_if_not(text.begin(), text.end(), [](unsigned char c) { return std::isalnum(c); }),
                   text.end());
        text[0] = static_cast<char>(std::tolower(static_cast<unsigned char>(text[0])));
        put(1, static_cast<unsigned>(text.size()));
        for (const char c : text)
        {
            put(1, static_cast<unsigned char>(c));
            put(1, 0);
        }
        return nullptr;
    }
    ordered_json raw(const Field&, uintptr_t, int size, const std::string&)
    {
        for (int i = 0; i < size; ++i)
            put(1, static_cast<unsigned>(i));
        return nullptr;
    }
    ordered_json block(const Field& field, uintptr_t, const std::string&)
    {
        const bool isTunnel = field.kind == wire::Kind::kBuffer && !field.words.empty();
        const std::string_view bytes = isTunnel ? kInnerFrame : std::string_view("\x00\x00\x00\x03", 4);
        put(4, static_cast<unsigned>(bytes.size()));
        m_Bytes += bytes;
        return nullptr;
    }
    int count(const Field& list, const std::string&) { return counted(list.how.into == wire::Into::kSlots ? 0 : 1); }
    int literal(int, const std::string&) { return counted(1); }
    int sized(const Field&, int said) { return said; }

    std::string m_Bytes;

private:
    int counted(int value)
    {
        put(4, static_cast<unsigned>(value));
        return value;
    }
    void put(int size, unsigned bits)
    {
        for (int i = size - 1; i >= 0; --i)
            m_Bytes += static_cast<char>(bits >> 8 * i);
    }

    unsigned m_Number = 0;
};

std::string bytesOf(const ClassInfo& info)
{
    SampleValues values;
    SchemaWalk<SampleValues>(values).object(info.m_Wire(), 0, "");
    const Form form = hasForm(info, Form::kCmd) ? Form::kCmd : Form::kData;
    const Reading reading = readOnly(info, form, values.m_Bytes);
    if (reading.m_Read && reading.m_Consumed == reading.m_Size)
        return values.m_Bytes;
    bool write = false;
    return writeObject(info, form, reading.m_Object.get(), write);
}

// The longest beginning of a path whose values are one piece, or the whole path.
std::string pieceOf(const std::string& path, const std::map<std::string, size_t>& sizes)
{
    for (const char stop : {'[', '.'})
    {
        const std::string beginning = path.substr(0, path.find(stop));
        const auto size = sizes.find(beginning);
        if (beginning.size() < path.size() && size != sizes.end() &&
            size->second > (stop == '[' ? kMostOfArray : kMostOfRecord))
            return beginning;
    }
    return path;
}

const Field* fieldOf(const wire::Schema& schema, const std::string& path)
{
    const std::string name = path.substr(0, path.find_first_of(".[("));
    const auto field = std::ranges::find(schema.fields, name, &Field::name);
    return field == schema.fields.end() ? nullptr : &*field;
}

} // namespace

std::vector<SamplePiece> sampleOf(const ClassInfo& info)
{
    const wire::Schema& schema = info.m_Wire();
    const std::string bytes = bytesOf(info);
    const Explanation explanation = explain(schema, bytes);
    // How many values each beginning of a path has.
    std::map<std::string, size_t> sizes;
    for (const ExplainedValue& value : explanation.m_Values)
    {
        const size_t bracket = value.m_Field.find('[');
        const size_t dot = value.m_Field.find('.');
        if (bracket != std::string::npos)
            ++sizes[value.m_Field.substr(0, bracket)];
        if (dot != std::string::npos)
            ++sizes[value.m_Field.substr(0, dot)];
    }

    std::vector<SamplePiece> pieces;
    for (const ExplainedValue& value : explanation.m_Values)
    {
        const std::string name = pieceOf(value.m_Field, sizes);
        const Field* const field = fieldOf(schema, name);
        if (pieces.empty() || pieces.back().m_Name != name || name == value.m_Field)
        {
            SamplePiece piece;
            piece.m_Name = name;
            piece.m_IsHead = name == "(version)" || (field && field->head);
            piece.m_Value = name == value.m_Field
                                ? value.m_Value
                                : (field ? typeOf(*field) + ", " : "") + std::to_string(sizes[name]) + " values";
            pieces.push_back(std::move(piece));
        }
        SamplePiece& piece = pieces.back();
        if (piece.m_Bytes.size() < kLongestPiece)
            piece.m_Bytes += bytes.substr(value.m_Offset, std::min(value.m_Size, kLongestPiece - piece.m_Bytes.size()));
        piece.m_Size += value.m_Size;
        if (piece.m_Value.size() > 80)
            piece.m_Value = piece.m_Value.substr(0, 77) + "...";
    }
    return pieces;
}

} // namespace tools

#include "tools/docs/page_text.h"

#include "tools/class_table.h"
#include "tools/docs/comments.h"
#include "tools/docs/sample.h"
#include "tools/embedded_files.h"
#include "tools/object_json.h"
#include "tools/schema_document.h"
#include "tools/schema_text.h"

#include <algorithm>
#include <sstream>
#include <string_view>

namespace tools
{

using nlohmann::ordered_json;

namespace
{

std::string spaced(const std::string& bytes, bool isCut)
{
    std::string out;
    for (const char byte : bytes)
        out.append(out.empty() ? "" : " ").append(hexOf(&byte, 1));
    return isCut ? out + " …" : out;
}

ordered_json pieceJson(const std::string& bytes, size_t size, const std::string& name, const std::string& value,
                       const char* part)
{
    return {spaced(bytes, bytes.size() < size), size, name, value, part};
}

// For a command the whole stream frame.
ordered_json exampleJson(const ClassInfo& info)
{
    const std::vector<SamplePiece> pieces = sampleOf(info);
    ordered_json json = ordered_json::array();
    if (info.m_Family == Family::kCommand)
    {
        size_t size = 0;
        for (const SamplePiece& piece : pieces)
            size += piece.m_Size;
        std::string head;
        for (int i = 0; i < 2; ++i)
            head += static_cast<char>(info.m_Id >> 8 * i);
        for (int i = 0; i < 4; ++i)
            head += static_cast<char>(size << 2 >> 8 * i);
        json.push_back(pieceJson(head.substr(0, 2), 2, "id", idText(info), "frame"));
        json.push_back(pieceJson(head.substr(2), 4, "size word",
                                 std::to_string(size) + " bytes of payload, no addresses", "frame"));
    }
    for (const SamplePiece& piece : pieces)
        json.push_back(
            pieceJson(piece.m_Bytes, piece.m_Size, piece.m_Name, piece.m_Value, piece.m_IsHead ? "head" : "body"));
    return json;
}

void addWords(ordered_json& json, const wire::Field& field)
{
    std::istringstream words(wire::wordsOf(field));
    for (std::string word; words >> word;)
        json["words"].push_back(word);
}

// The class of a record within a field's type, if the table has it.
const wire::Schema* recordOf(const wire::Field& field)
{
    if (field.record)
        return field.record;
    return field.parts.empty() || field.kind == wire::Kind::kTable ? nullptr : recordOf(field.parts.back());
}

void addField(ordered_json& fields, const wire::Field& field, const ordered_json& defaults, bool isColumn)
{
    ordered_json json = {{"name", field.name}, {"type", typeOf(field)}};
    const wire::Schema* const record = recordOf(field);
    if (record && findClass(record->name))
        json["record"] = record->name;
    if (std::string value = defaultText(field, defaults); !value.empty())
        json["default"] = std::move(value);
    if (isColumn)
        json["isColumn"] = true;
    addWords(json, field);
    fields.push_back(std::move(json));
    if (field.kind == wire::Kind::kTable)
        for (const wire::Field& part : field.parts)
            addField(fields, part, defaults, true);
    // A record that one class alone has is shown with it.
    if (record && !findClass(record->name))
        for (const wire::Field& part : record->fields)
            addField(fields, part, ordered_json::object(), true);
}

// The comment of a member, in the class or in one of its bases.
std::string noteOf(const ClassInfo& info, const std::string& member)
{
    std::string note = commentOf(info.m_Name, member);
    const ClassInfo* const base = note.empty() && info.m_Family == Family::kCommand ? findClass(info.m_Base) : nullptr;
    return base ? noteOf(*base, member) : note;
}

// The class whose head a command has: the end of its row of bases.
std::string headOf(const ClassInfo& info)
{
    const ClassInfo* const base = findClass(info.m_Base);
    return base ? headOf(*base) : info.m_Base;
}

ordered_json fieldsJson(const ClassInfo& info)
{
    const wire::Schema& schema = info.m_Wire();
    const ordered_json defaults = objectJson(schema, info.make().get());
    ordered_json fields = ordered_json::array();
    for (size_t i = 0; i < schema.fields.size(); ++i)
    {
        if (!schema.fields[i].head)
        {
            const size_t first = fields.size();
            addField(fields, schema.fields[i], defaults, false);
            if (std::string note = noteOf(info, schema.fields[i].name); !note.empty())
                fields[first]["note"] = std::move(note);
            continue;
        }
        ordered_json head = {{"head", headOf(info)}};
        addWords(head, schema.fields[i]);
        fields.push_back(std::move(head));
        while (i + 1 < schema.fields.size() && schema.fields[i + 1].head)
            ++i;
    }
    return fields;
}

ordered_json classJson(const ClassInfo& info)
{
    ordered_json json = {{"name", info.m_Name}, {"family", familyName(info.m_Family)}};
    if (info.m_Family == Family::kCommand)
        json.update({{"id", idText(info)}, {"base", info.m_Base}});
    else
        json["forms"] = formsOf(info);
    if (info.m_Family == Family::kMessage)
        json["envelope"] = info.m_Base;
    if (*info.m_OtherEnvelope)
        json["orEnvelope"] = info.m_OtherEnvelope;
    for (const ClassInfo* const other :
         info.m_Family == Family::kCommand ? classesOfId(info.m_Id) : std::vector<const ClassInfo*>())
        if (other != &info)
            json["shares"].push_back(other->m_Name);
    if (std::string comment = commentOf(info.m_Name); !comment.empty())
        json["comment"] = std::move(comment);
    json["smallest"] = info.m_Wire().smallest;
    json["fields"] = fieldsJson(info);
    json["example"] = exampleJson(info);
    return json;
}

ordered_json allJson()
{
    ordered_json all = ordered_json::array();
    for (const ClassInfo& info : classTable())
        all.push_back(classJson(info));
    return all;
}

size_t numberOf(Family family)
{
    return static_cast<size_t>(std::ranges::count(classTable(), family, &ClassInfo::m_Family));
}

// Replaces each @name@ of the page, in the order of the page.
std::string filled(std::string_view page, const std::vector<std::pair<std::string, std::string>>& values)
{
    std::string out;
    while (!page.empty())
    {
        const auto next =
            std::ranges::min_element(values, {}, [&](const auto& value) { return page.find(value.first); });
        const size_t at = page.find(next->first);
        out += page.substr(0, at);
        if (at == std::string_view::npos)
            break;
        out += next->second;
        page.remove_prefix(at + next->first.size());
    }
    return out;
}

} // namespace

std::string pageText(const std::string& version)
{
    // Within a script, "</" would end it.
    const std::string json = allJson().dump(-1, ' ', false, ordered_json::error_handler_t::replace);
    std::string data;
    for (size_t i = 0; i < json.size(); ++i)
        data.append(json[i] == '<' && i + 1 < json.size() && json[i + 1] == '/' ? "\\u003c" : std::string(1, json[i]));
    return filled(embedded::docs_page_html, {{"@css@", embedded::docs_page_css},
                                             {"@js@", embedded::docs_page_js},
                                             {"@data@", data},
                                             {"@words@", schemaWords().dump()},
                                             {"@version@", version},
                                             {"@commands@", std::to_string(numberOf(Family::kCommand))},
                                             {"@records@", std::to_string(numberOf(Family::kRecord))},
                                             {"@messages@", std::to_string(numberOf(Family::kMessage))}});
}

} // namespace tools

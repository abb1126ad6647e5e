#include "tools/schema_text.h"

#include "tools/object_json.h"
#include "tools/reading.h"

#include <cstdio>

namespace tools
{

using nlohmann::ordered_json;

namespace
{

constexpr size_t kLongestDefault = 80;
// The only member whose default differs between processes.
constexpr char kMadeAtLoad[] = "m_VerifySeed";

void addField(std::string& out, const wire::Field& field, const ordered_json& defaults)
{
    out += "  " + (field.name.empty() ? "-" : field.name) + "  " + typeOf(field);
    if (const std::string value = defaultText(field, defaults); !value.empty())
        out += "  = " + value;
    const std::string words = wire::wordsOf(field);
    if (!words.empty())
        out += "  [" + words + "]";
    out += "\n";
    if (field.kind == wire::Kind::kTable)
        for (const wire::Field& part : field.parts)
            addField(out, part, defaults);
}

} // namespace

std::string typeOf(const wire::Field& field)
{
    const bool isSized = field.says == wire::Says::kMember;
    switch (field.kind)
    {
    case wire::Kind::kRecord:
        return field.record->name;
    case wire::Kind::kArray:
        return isSized ? "items of " + typeOf(field.parts[0])
                       : typeOf(field.parts[0]) + "[" + std::to_string(field.extent) + "]";
    case wire::Kind::kRaw:
        if (*field.type)
            return field.type;
        return isSized ? "sized bytes" : "unsigned char[" + std::to_string(field.extent) + "]";
    case wire::Kind::kPair:
        return "pair of " + typeOf(field.parts[0]);
    case wire::Kind::kList:
    {
        const std::string of = field.says == wire::Says::kCountBefore ? "elements of " : "list of ";
        return of + (field.parts.size() == 2 ? typeOf(field.parts[0]) + " to " : "") + typeOf(field.parts.back());
    }
    case wire::Kind::kTable:
        return field.says == wire::Says::kCountBefore ? "columns"
               : field.says == wire::Says::kCount     ? "interleaved"
                                                      : "int, always " + std::to_string(field.rows.rows);
    default:
        return field.type;
    }
}

std::string defaultText(const wire::Field& field, const ordered_json& defaults)
{
    if (field.name.empty() || field.kind == wire::Kind::kCount || !defaults.contains(field.name))
        return "";
    const std::string value = isMadeAtLoad(field) ? "(made at load)" : defaults[field.name].dump();
    return value.size() > kLongestDefault ? value.substr(0, kLongestDefault - 3) + "..." : value;
}

bool isMadeAtLoad(const wire::Field& field)
{
    return field.name == kMadeAtLoad;
}

std::string idText(const ClassInfo& info)
{
    char text[8];
    std::snprintf(text, sizeof text, "0x%04x", info.m_Id);
    return text;
}

std::string formsOf(const ClassInfo& info)
{
    std::string forms = hasForm(info, Form::kCmd) ? "cmd" : "";
    if (hasForm(info, Form::kData))
        forms += forms.empty() ? "data" : " data";
    return forms;
}

const char* familyName(Family family)
{
    return family == Family::kCommand ? "command" : family == Family::kRecord ? "record" : "message";
}

std::string schemaText(const ClassInfo& info)
{
    const wire::Schema& schema = info.m_Wire();
    const ordered_json defaults = objectJson(schema, info.make().get());
    std::string out = std::string(info.m_Name) + "  " + familyName(info.m_Family);
    if (info.m_Family == Family::kCommand)
        out.append(" ").append(idText(info)).append(" on ").append(info.m_Base);
    else
        out.append("  ").append(formsOf(info));
    out += "\n";
    for (const wire::Field& field : schema.fields)
        addField(out, field, defaults);
    return out + "  smallest " + std::to_string(schema.smallest) + " bytes\n";
}

} // namespace tools

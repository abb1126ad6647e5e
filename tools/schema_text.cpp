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

std::string typeOf(const wire::Field& field)
{
    switch (field.kind)
    {
    case wire::Kind::kRecord:
        return field.record->name;
    case wire::Kind::kArray:
        return typeOf(field.parts[0]) + "[" + std::to_string(field.extent) + "]";
    case wire::Kind::kBytes:
        return "unsigned char[" + std::to_string(field.extent) + "]";
    case wire::Kind::kPair:
        return "pair of " + typeOf(field.parts[0]);
    case wire::Kind::kList:
    case wire::Kind::kElementsOf:
    {
        const std::string element = typeOf(field.parts.back());
        const std::string what = field.kind == wire::Kind::kList ? "list" : "elements";
        return field.parts.size() == 2 ? what + " of " + typeOf(field.parts[0]) + " to " + element
                                       : what + " of " + element;
    }
    case wire::Kind::kSizedItems:
        return "items of " + typeOf(field.parts[0]);
    case wire::Kind::kLiteral:
        return "int, always " + std::to_string(field.extent);
    default:
        return wire::kindName(field.kind);
    }
}

void addField(std::string& out, const wire::Field& field, const ordered_json& defaults)
{
    out += "  " + (field.name.empty() ? "-" : field.name) + "  " + typeOf(field);
    if (!field.name.empty() && field.kind != wire::Kind::kCountOf && defaults.contains(field.name))
    {
        const bool isMadeAtLoad = field.name == kMadeAtLoad;
        const std::string value = isMadeAtLoad ? "(made at load)" : defaults[field.name].dump();
        out += "  = " + (value.size() > kLongestDefault ? value.substr(0, kLongestDefault - 3) + "..." : value);
    }
    if (!field.words.empty())
        out += "  [" + field.words + "]";
    out += "\n";
    if (field.kind == wire::Kind::kColumns || field.kind == wire::Kind::kInterleaved)
        for (const wire::Field& part : field.parts)
            addField(out, part, defaults);
}

} // namespace

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

#include "tools/codec/codec_members.h"

#include "tools/schema_fields.h"

#include <algorithm>
#include <functional>
#include <vector>

namespace tools
{

using nlohmann::ordered_json;

CodecMembers::CodecMembers(const ordered_json& document, bool isPython) : m_Document(document), m_IsPython(isPython)
{
    for (const ordered_json& each : document["classes"])
        m_Classes[textOf(each, "class")] = &each;
}

std::string CodecMembers::hintOf(const ordered_json& json) const
{
    const std::string type = textOf(json, "type");
    if (type == "record")
        return textOf(json, "record");
    if (type == "array" || type == "list")
        return m_IsPython ? "list[" + hintOf(json["of"]) + "]" : hintOf(json["of"]) + "[]";
    if (type == "pair")
        return m_IsPython ? "list[Any]" : "[" + hintOf(json["of"][0]) + ", " + hintOf(json["of"][1]) + "]";
    if (type == "map")
        return (m_IsPython ? "dict[" : "Map<") + keyHint(json) + ", " + hintOf(json["of"]) + (m_IsPython ? "]" : ">");
    const std::string kind = type == "bytes" ? "raw" : textOf(m_Document["types"][type], "kind");
    if (kind == "raw" || kind == "buffer")
        return m_IsPython ? "bytes" : "Uint8Array";
    if (m_IsPython)
        return kind == "bool" ? "bool" : kind == "number" ? "int" : kind == "float" ? "float" : "str";
    return kind == "bool" ? "boolean" : kind == "text" ? "string" : "number";
}

std::string CodecMembers::keyHint(const ordered_json& map) const
{
    ordered_json key = {{"type", "int"}};
    if (map.contains("key"))
        key = map["key"];
    else if (const std::string member = textOf(map, "key_member"); !member.empty())
        for (const ordered_json& field : (*m_Classes.at(textOf(map["of"], "record")))["fields"])
            if (textOf(field, "name") == member)
                key = field;
    const std::string hint = hintOf(key);
    return hint == "Uint8Array" ? "string" : hint;
}

std::string CodecMembers::valueOf(const ordered_json& json, const ordered_json* value, bool& isMade) const
{
    const std::string type = textOf(json, "type");
    if (type == "record")
    {
        isMade = true;
        return recordOf(textOf(json, "record"), value);
    }
    if (type == "list" || type == "map")
    {
        isMade = true;
        if (!value || value->empty())
            return type == "list" ? "[]" : m_IsPython ? "{}" : "new Map()";
        return type == "list" ? listOf(json["of"], *value) : mapOf(json, *value);
    }
    if (type == "array")
        return arrayOf(json, value, isMade);
    if (type == "pair")
    {
        isMade = true;
        return "[" + valueOf(json["of"][0], value ? &(*value)[0] : nullptr, isMade) + ", " +
               valueOf(json["of"][1], value ? &(*value)[1] : nullptr, isMade) + "]";
    }
    return scalarOf(json, value, isMade);
}

std::string CodecMembers::scalarOf(const ordered_json& json, const ordered_json* value, bool& isMade) const
{
    const std::string type = textOf(json, "type");
    const std::string kind = type == "bytes" ? "raw" : textOf(m_Document["types"][type], "kind");
    if (kind == "raw" || kind == "buffer")
    {
        isMade = isMade || !m_IsPython;
        const std::string digits = value ? value->get<std::string>() : "";
        if (digits.find_first_not_of('0') != std::string::npos)
            return m_IsPython ? "bytes.fromhex(\"" + digits + "\")" : "bytesOf(\"" + digits + "\")";
        const int size = kind == "buffer"          ? 0
                         : json.contains("length") ? json["length"].get<int>()
                         : type == "bytes"         ? 0
                                                   : m_Document["types"][type]["bytes"].get<int>();
        return (m_IsPython ? "bytes(" : "new Uint8Array(") + std::to_string(size) + ")";
    }
    if (kind == "bool")
        return m_IsPython ? (value && *value == true ? "True" : "False") : (value && *value == true ? "true" : "false");
    if (kind == "text")
        return value ? value->dump() : "\"\"";
    return value ? value->dump() : kind == "float" && m_IsPython ? "0.0" : "0";
}

std::string CodecMembers::listOf(const ordered_json& of, const ordered_json& values) const
{
    bool isMade = true;
    std::vector<std::string> all;
    for (const ordered_json& value : values)
        all.push_back(valueOf(of, &value, isMade));
    return "[" + joined(all, ", ") + "]";
}

std::string CodecMembers::mapOf(const ordered_json& json, const ordered_json& entries) const
{
    const std::string member = textOf(json, "key_member");
    bool isMade = true;
    std::vector<std::string> all;
    for (const ordered_json& entry : entries)
    {
        // Of a map whose keys are members, the elements alone.
        const std::string key = member.empty() ? entry[0].dump() : entry[member].dump();
        const std::string value = valueOf(json["of"], member.empty() ? &entry[1] : &entry, isMade);
        const std::string pair = std::string(key).append(m_IsPython ? ": " : ", ").append(value);
        all.push_back(m_IsPython ? pair : std::string("[").append(pair).append("]"));
    }
    return m_IsPython ? "{" + joined(all, ", ") + "}" : "new Map([" + joined(all, ", ") + "])";
}

std::string CodecMembers::arrayOf(const ordered_json& json, const ordered_json* value, bool& isMade) const
{
    isMade = true;
    if (json.contains("length_of") || (value && value->empty()))
        return "[]";
    if (value && std::adjacent_find(value->begin(), value->end(), std::not_equal_to<>()) != value->end())
        return listOf(json["of"], *value);
    bool isElementMade = false;
    const std::string element = valueOf(json["of"], value ? &(*value)[0] : nullptr, isElementMade);
    const std::string length = json["length"].dump();
    if (m_IsPython)
        return isElementMade ? "[" + element + " for _ in range(" + length + ")]" : "[" + element + "] * " + length;
    return isElementMade ? "Array.from({ length: " + length + " }, () => " + element + ")"
                         : "Array(" + length + ").fill(" + element + ")";
}

std::string CodecMembers::recordOf(const std::string& name, const ordered_json* value) const
{
    std::vector<std::string> members;
    for (const ordered_json& field : (*m_Classes.at(name))["fields"])
    {
        const std::string label = textOf(field, "name");
        if (!value || label.empty() || !value->contains(label))
            continue;
        bool isMade = true;
        const std::string own = valueOf(field, field.contains("default") ? &field["default"] : nullptr, isMade);
        const std::string now = valueOf(field, &(*value)[label], isMade);
        if (own != now)
            members.push_back(memberOf(label) + (m_IsPython ? "=" : ": ") + now);
    }
    const std::string all = joined(members, ", ");
    if (m_IsPython)
        return name + "(" + all + ")";
    return all.empty() ? "new " + name + "()" : "make(" + name + ", { " + all + " })";
}
} // namespace tools

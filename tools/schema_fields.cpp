#include "tools/schema_fields.h"

#include <algorithm>
#include <iterator>

namespace tools
{

using nlohmann::ordered_json;

std::string textOf(const ordered_json& json, const char* name)
{
    return json.value(name, std::string());
}

std::string typeText(const ordered_json& json)
{
    const std::string type = textOf(json, "type");
    if (type == "record")
        return textOf(json, "record");
    if (type == "array" || type == "bytes")
    {
        const std::string of = type == "bytes" ? "bytes" : typeText(json["of"]);
        return of + "[" + (json.contains("length") ? json["length"].dump() : textOf(json, "length_of")) + "]";
    }
    if (type == "list")
        return "list of " + typeText(json["of"]);
    if (type == "map")
        return "map of " + (json.contains("key") ? typeText(json["key"]) + " to " : "") + typeText(json["of"]);
    if (type == "pair")
        return "pair of " + typeText(json["of"][0]) + " and " + typeText(json["of"][1]);
    return type;
}

std::string labelOf(const ordered_json& field)
{
    if (field.contains("name"))
        return textOf(field, "name");
    if (field.contains("count_of"))
        return "the count of " + textOf(field, "count_of");
    if (!field.contains("columns"))
        return "the " + textOf(field, "type");
    std::string names;
    for (const ordered_json& column : field["columns"])
        names += (names.empty() ? "" : ", ") + textOf(column, "name");
    return "the table of " + names;
}

bool hasWord(const ordered_json& field, std::string_view word)
{
    if (field.contains("words"))
        for (const ordered_json& each : field["words"])
            if (each.get_ref<const std::string&>() == word)
                return true;
    return false;
}

bool mayBeMissing(const ordered_json& field)
{
    static constexpr std::string_view words[] = {"Untested",
                                                 "UntestedOnRead",
                                                 "OnlyAboveZero",
                                                 "ThroughOneLocal",
                                                 "EitherWay",
                                                 "TriedAnyway",
                                                 "FromZero",
                                                 "SaidRows",
                                                 "OwnRows",
                                                 "SkippedOnFailure",
                                                 "EndsWellBeforeItsBytes"};
    return std::any_of(std::begin(words), std::end(words), [&](std::string_view word) { return hasWord(field, word); });
}

} // namespace tools

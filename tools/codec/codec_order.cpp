#include "tools/codec/codec_order.h"

#include "tools/schema_fields.h"

#include <algorithm>

namespace tools
{

using nlohmann::ordered_json;

std::string joined(const std::vector<std::string>& parts, const std::string& between)
{
    std::string all;
    for (const std::string& part : parts)
        all += (all.empty() ? "" : between) + part;
    return all;
}

std::string memberOf(std::string name)
{
    name.erase(std::remove(name.begin(), name.end(), ']'), name.end());
    std::replace(name.begin(), name.end(), '[', '_');
    return name;
}

std::vector<std::string> CodecOrder::takeHeads(const ordered_json& each)
{
    std::vector<std::string> statements;
    for (const size_t size : {4u, 2u})
    {
        const std::string steps = headOf(each, size);
        if (steps.empty() || m_Heads.count(steps) != 0)
            continue;
        m_Heads[steps] = size == 4 ? "HEAD" : "SHORT_HEAD";
        statements.push_back(m_Heads[steps] + " = [" + steps + "]");
    }
    return statements;
}

std::string CodecOrder::made(const std::string& name, std::vector<std::string> arguments, const Options& options) const
{
    std::string all;
    for (const auto& [option, value] : options)
        all.append(all.empty() ? "" : ", ").append(option).append(m_IsPython ? "=" : ": ").append(value);
    if (!options.empty())
        arguments.push_back(m_IsPython ? all : "{ " + all + " }");
    return (m_IsPython ? "" : "new ") + name + "(" + joined(arguments, ", ") + ")";
}

std::string CodecOrder::constantOf(std::string type)
{
    for (char& c : type)
        c = c == ' ' ? '_' : static_cast<char>(c >= 'a' && c <= 'z' ? c - 'a' + 'A' : c);
    return type;
}
std::string CodecOrder::headOf(const ordered_json& each, size_t size) const
{
    const ordered_json& fields = each["fields"];
    if (fields.size() < size || textOf(fields[0], "type") != "version")
        return "";
    if ((size == 4) != (fields.size() >= 4 && textOf(fields[2], "name") == "m_ClientAddress"))
        return "";
    std::vector<std::string> steps;
    for (size_t i = 0; i < size; ++i)
        steps.push_back(stepOf(fields[i]));
    return joined(steps, ", ");
}
std::string CodecOrder::typeOf(const ordered_json& json) const
{
    const std::string type = textOf(json, "type");
    if (type == "record")
        return made(m_IsPython ? "Record" : "Rec", {(m_IsPython ? "lambda: " : "() => ") + textOf(json, "record")});
    if (type == "array")
        return made(m_IsPython ? "Array" : "Arr", {typeOf(json["of"]), json["length"].dump()});
    if (type == "bytes")
        return made("Raw", {json["length"].dump()});
    if (type == "pair")
        return made("Pair", {typeOf(json["of"][0]), typeOf(json["of"][1])});
    if (type == "payload")
        return made("Payload", {json["most"].dump()},
                    hasWord(json, "EndsWellBeforeItsBytes")
                        ? Options{{m_IsPython ? "may_be_negative" : "mayBeNegative", yes()}}
                        : Options());
    if (type == "buffer" && hasWord(json, "Unlimited"))
        return made("Buffer", {m_IsPython ? "False" : "false"});
    return constantOf(type);
}

std::string CodecOrder::stepOf(const ordered_json& field) const
{
    const std::string type = textOf(field, "type");
    const std::string name = quoted(textOf(field, "name"));
    if (type == "version")
        return made("Version", {field["value"].dump()});
    if (type == "count")
        return made("Count", {quoted(textOf(field, "count_of"))});
    if (type == "table")
        return tableOf(field);
    if (type == "list" || type == "map")
        return itemsOf(field);
    if (field.contains("length_of"))
    {
        const std::vector<std::string> last = {quoted(textOf(field, "length_of")), field["most"].dump()};
        return type == "bytes" ? made("SizedBytes", {name, last[0], last[1]})
                               : made("SizedArray", {name, typeOf(field["of"]), last[0], last[1]});
    }
    Options options;
    if (hasWord(field, "Untested") || hasWord(field, "UntestedOnRead"))
        options.emplace_back("untested", yes());
    if (hasWord(field, "FromZero"))
        options.emplace_back(m_IsPython ? "from_zero" : "fromZero", yes());
    return made("Field", {name, typeOf(field)}, options);
}

std::string CodecOrder::itemsOf(const ordered_json& field) const
{
    static constexpr std::pair<const char*, const char*> readings[] = {
        {"Untested", "nothing"},       {"ElementsUntested", "count"},  {"ElementsUntestedOnRead", "count"},
        {"UntestedOnRead", "nothing"}, {"LastElementDecides", "last"}, {"OnlyAboveZero", "above_zero"}};
    static constexpr std::pair<const char*, const char*> places[] = {{"ClearedFirst", "cleared_first"},
                                                                     {"Appends", "appended"},
                                                                     {"SizedFirst", "sized"},
                                                                     {"IntoExistingSlots", "slots"}};
    Options options;
    for (const auto& [word, reading] : readings)
        if (hasWord(field, word))
            options.emplace_back("reading", quoted(reading));
    for (const auto& [word, place] : places)
        if (hasWord(field, word) && !hasWord(field, "ThroughOneLocal"))
            options.emplace_back("into", quoted(place));
    if (textOf(field, "count") == "earlier")
        options.emplace_back("counted", yes());
    if (field.contains("key"))
        options.emplace_back("key", typeOf(field["key"]));
    else if (textOf(field, "type") == "map")
        options.emplace_back("key", quoted(textOf(field, "key_member")));
    return made("Items", {quoted(textOf(field, "name")), typeOf(field["of"])}, options);
}

std::string CodecOrder::tableOf(const ordered_json& field) const
{
    std::vector<std::string> columns;
    for (const ordered_json& column : field["columns"])
    {
        const bool isList = textOf(column, "type") == "list";
        const bool isGrid = !isList && textOf(column["of"], "type") == "array";
        std::vector<std::string> arguments = {quoted(textOf(column, "name")),
                                              typeOf(isGrid ? column["of"]["of"] : column["of"])};
        if (!isList)
            arguments.push_back(column["length"].dump());
        if (isGrid)
            arguments.push_back(column["of"]["length"].dump());
        columns.push_back(made("Column", arguments));
    }
    const std::string rows = hasWord(field, "CountedRows") ? "counted" : hasWord(field, "OwnRows") ? "own" : "said";
    Options options;
    if (field.contains("rows"))
        options.emplace_back("number", field["rows"].dump());
    if (field.contains("across"))
        options.emplace_back("across", field["across"].dump());
    const std::string all = joined(columns, ", ");
    return made("Table", {quoted(rows), m_IsPython ? all : "[" + all + "]"}, options);
}

std::vector<std::string> CodecOrder::orderOf(const ordered_json& each) const
{
    static constexpr const char* groups[] = {"EitherWay", "SkippedOnFailure", "EndsWellBeforeItsBytes",
                                             "ThroughOneLocal"};
    const ordered_json& fields = each["fields"];
    std::vector<std::string> order;
    for (size_t i = 0; i < fields.size();)
    {
        const auto group = std::find_if(std::begin(groups), std::end(groups),
                                        [&](const char* word) { return hasWord(fields[i], word); });
        const auto isIn = [&](size_t at)
        {
            // The bytes themselves are after what ends well.
            return at < fields.size() && group != std::end(groups) && hasWord(fields[at], *group) &&
                   textOf(fields[at], "type") != "payload";
        };
        if (!isIn(i))
        {
            order.push_back(stepOf(fields[i++]));
            continue;
        }
        std::vector<std::string> steps;
        while (isIn(i))
            steps.push_back(stepOf(fields[i++]));
        shortenHead(steps);
        order.push_back(made(*group == groups[2]   ? "EndsWell"
                             : *group == groups[3] ? "ThroughOneLocal"
                                                   : "EitherWay",
                             steps));
    }
    shortenHead(order);
    return order;
}

void CodecOrder::shortenHead(std::vector<std::string>& steps) const
{
    for (size_t i = 0; i < steps.size(); ++i)
        for (const size_t size : {4u, 2u})
        {
            if (i + size > steps.size())
                continue;
            const std::vector<std::string> part(steps.begin() + static_cast<ptrdiff_t>(i),
                                                steps.begin() + static_cast<ptrdiff_t>(i + size));
            const auto head = m_Heads.find(joined(part, ", "));
            if (head == m_Heads.end())
                continue;
            steps.erase(steps.begin() + static_cast<ptrdiff_t>(i), steps.begin() + static_cast<ptrdiff_t>(i + size));
            steps.insert(steps.begin() + static_cast<ptrdiff_t>(i), (m_IsPython ? "*" : "...") + head->second);
            return;
        }
}
} // namespace tools

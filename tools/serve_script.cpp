#include "tools/serve_script.h"

#include "tools/class_table.h"
#include "tools/object_json.h"

#include <algorithm>
#include <initializer_list>
#include <memory>

namespace tools
{

using nlohmann::ordered_json;

namespace
{

std::string quoted(const ordered_json& json)
{
    return json.dump(-1, ' ', false, ordered_json::error_handler_t::replace);
}

// The first member whose name is not among these; empty if all are.
std::string unknownMember(const ordered_json& json, std::initializer_list<const char*> names)
{
    for (const auto& item : json.items())
        if (std::none_of(names.begin(), names.end(), [&](const char* name) { return item.key() == name; }))
            return item.key();
    return "";
}

const ClassInfo* commandOf(const ordered_json& json)
{
    if (!json.contains("class") || !json["class"].is_string())
        return nullptr;
    const ClassInfo* const info = findClass(json["class"].get_ref<const std::string&>());
    return info && info->m_Family == Family::kCommand ? info : nullptr;
}

bool hasField(const ClassInfo& info, const std::string& name)
{
    return objectJson(info.m_Wire(), info.make().get()).contains(name);
}

} // namespace

std::string ServeScript::parseAnswer(const ordered_json& json, const std::string& asked, Answer& answer)
{
    const ClassInfo* const info = json.is_object() ? commandOf(json) : nullptr;
    if (!info)
        return "it has no class of a command";
    const std::string unknown = unknownMember(json, {"class", "fields", "from", "target", "echo"});
    if (!unknown.empty())
        return "it has no use for " + unknown;
    answer.m_Line = json;
    answer.m_Line.erase("echo");
    if (!answer.m_Line.contains("fields"))
        answer.m_Line["fields"] = ordered_json::object();
    const auto encoded = std::make_unique<EncodedLine>();
    if (std::string fault = encodeJson(answer.m_Line, kNativeWidth, *encoded); !fault.empty())
        return fault;
    if (!json.contains("echo"))
        return "";
    for (const auto& item : json["echo"].items())
    {
        if (!json["echo"].is_structured() || !item.value().is_string())
            return "echo is neither an array of names nor an object of names";
        const std::string from = item.value().get<std::string>();
        const std::string to = json["echo"].is_array() ? from : item.key();
        if (!hasField(*findClass(asked), from))
            return std::string(from).append(" is not a field of ").append(asked);
        if (!hasField(*info, to))
            return std::string(to).append(" is not a field of ").append(info->m_Name);
        answer.m_Echo.emplace_back(to, from);
    }
    return "";
}

std::string ServeScript::parseRule(const ordered_json& json, Rule& rule)
{
    if (!json.is_object() || !commandOf(json))
        return "it has no class of a command";
    rule.m_Class = json["class"].get<std::string>();
    const std::string unknown = unknownMember(json, {"class", "if", "answers"});
    if (!unknown.empty())
        return "it has no use for " + unknown;
    if (json.contains("if"))
    {
        if (!json["if"].is_array())
            return "if is not an array of tests";
        for (const ordered_json& text : json["if"])
        {
            const auto test = text.is_string() ? FieldTest::parse(text.get<std::string>()) : std::nullopt;
            if (!test)
                return quoted(text) + " is not a field, one of == != < <= > >= and a value";
            rule.m_Tests.push_back(*test);
        }
    }
    if (!json.contains("answers") || !json["answers"].is_array())
        return "it has no array of answers";
    for (const ordered_json& one : json["answers"])
    {
        if (std::string fault = parseAnswer(one, rule.m_Class, rule.m_Answers.emplace_back()); !fault.empty())
            return "answer " + std::to_string(rule.m_Answers.size()) + ": " + fault;
    }
    return "";
}

std::string ServeScript::parse(std::string_view text)
{
    const ordered_json json = ordered_json::parse(text, nullptr, false);
    if (json.is_discarded())
        return "it is not valid JSON";
    if (!json.is_array())
        return "it is not an array of rules";
    m_Rules.clear();
    for (const ordered_json& one : json)
        if (std::string fault = parseRule(one, m_Rules.emplace_back()); !fault.empty())
            return "rule " + std::to_string(m_Rules.size()) + ": " + fault;
    return "";
}

std::vector<ordered_json> ServeScript::answersTo(const ordered_json& line) const
{
    std::vector<ordered_json> lines;
    if (!line.contains("class") || line.contains("error"))
        return lines;
    const std::string& name = line["class"].get_ref<const std::string&>();
    const ordered_json& fields = line["fields"];
    const auto fits = [&](const Rule& rule)
    {
        return rule.m_Class == name && std::all_of(rule.m_Tests.begin(), rule.m_Tests.end(),
                                                   [&](const FieldTest& test) { return test.holds(fields); });
    };
    const auto rule = std::find_if(m_Rules.begin(), m_Rules.end(), fits);
    if (rule == m_Rules.end())
        return lines;
    for (const Answer& answer : rule->m_Answers)
    {
        ordered_json& made = lines.emplace_back(answer.m_Line);
        for (const auto& [to, from] : answer.m_Echo)
            made["fields"][to] = fields[from];
    }
    return lines;
}

} // namespace tools

#include "tools/pack_types.h"

#include "tools/class_table.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <limits>

namespace tools
{

namespace
{

using Json = nlohmann::json;

// The end of the JSON value that starts the text: its brackets are balanced outside of quotes. npos without an end.
size_t endOfValue(std::string_view text)
{
    int depth = 0;
    bool isQuoted = false;
    for (size_t i = 0; i < text.size(); ++i)
    {
        const char c = text[i];
        if (isQuoted)
        {
            if (c == '\\')
                ++i;
            else if (c == '"')
                isQuoted = false;
        }
        else if (c == '"')
            isQuoted = true;
        else if (c == '{' || c == '[')
            ++depth;
        else if ((c == '}' || c == ']') && --depth <= 0)
            return i + 1;
    }
    return std::string_view::npos;
}

bool isEnvelope(const ClassInfo& info)
{
    const auto& fields = info.m_Wire().fields;
    const auto has = [&](std::string_view name)
    { return std::any_of(fields.begin(), fields.end(), [&](const wire::Field& each) { return each.name == name; }); };
    return info.m_Family == Family::kCommand && has("m_PackType") && has("m_PackData");
}

} // namespace

std::string PackTypes::add(std::string_view text)
{
    constexpr std::string_view kSpace = " \t\r\n";
    const auto addRow = [this](const Json& row) -> std::string
    {
        if (!row.is_object() || !row.contains("number") || !row["number"].is_number_integer() ||
            !row.contains("message") || !row["message"].is_string() || !row.contains("envelopes") ||
            !row["envelopes"].is_array())
            return "an entry is not {\"number\":N,\"message\":CLASS,\"envelopes\":[CLASS,...]}";
        const int64_t number = row["number"];
        const std::string name = row["message"];
        const ClassInfo* const message = findClass(name);
        // A class template of the host: this tool has no layout for it.
        if (!message && name.find('<') != std::string::npos)
            return {};
        if (!message || message->m_Family == Family::kCommand)
            return "there is no message " + name;
        if (number < std::numeric_limits<int>::min() || number > std::numeric_limits<int>::max())
            return "the number of " + name + " is not one of a pack";
        for (const Json& each : row["envelopes"])
        {
            const ClassInfo* const envelope = each.is_string() ? findClass(each.get<std::string>()) : nullptr;
            if (!envelope || !isEnvelope(*envelope))
                return "an envelope of " + name + " is not a class of packs";
            const ClassInfo*& known = m_Messages[{envelope->m_Name, static_cast<int>(number)}];
            if (known && known != message)
                return name + " and " + known->m_Name + " have the same number in " + envelope->m_Name;
            known = message;
        }
        return "";
    };
    const auto addTable = [&](const Json& table) -> std::string
    {
        if (!table.is_object() || !table.contains("messages") || !table["messages"].is_array())
            return "a table has no \"messages\"";
        for (const Json& row : table["messages"])
            if (const std::string fault = addRow(row); !fault.empty())
                return fault;
        return "";
    };

    for (size_t at = text.find_first_not_of(kSpace); at < text.size(); at = text.find_first_not_of(kSpace))
    {
        text.remove_prefix(at);
        const size_t end = std::min(endOfValue(text), text.size());
        const Json json = Json::parse(text.substr(0, end), nullptr, false);
        text.remove_prefix(end);
        if (json.is_discarded())
            return "it is not JSON";
        std::string fault;
        if (!json.is_array())
            fault = addTable(json);
        else
            for (size_t i = 0; i < json.size() && fault.empty(); ++i)
                fault = addTable(json[i]);
        if (!fault.empty())
            return fault;
    }
    return "";
}

const ClassInfo* PackTypes::find(std::string_view envelope, int number) const
{
    const auto found = m_Messages.find(std::pair<std::string, int>(envelope, number));
    return found == m_Messages.end() ? nullptr : found->second;
}

} // namespace tools

#include "tools/line_filter.h"

#include "tools/capture/capture_decoder.h"

#include <algorithm>
#include <cstdlib>
#include <regex>

namespace tools
{

using nlohmann::ordered_json;

namespace
{

std::string trimmed(std::string_view text)
{
    const size_t from = text.find_first_not_of(" \t");
    return from == std::string_view::npos ? ""
                                          : std::string(text.substr(from, text.find_last_not_of(" \t") + 1 - from));
}

// The value at the path, or null. A name may contain dots itself, so every name that the path starts with is tried.
const ordered_json* valueAt(const ordered_json& json, std::string_view path)
{
    if (path.empty())
        return &json;
    if (json.is_array() && path[0] == '[')
    {
        const size_t end = path.find(']');
        const std::string digits(path.substr(1, end == std::string_view::npos ? 0 : end - 1));
        if (digits.empty() || digits.size() > 8 || digits.find_first_not_of("0123456789") != std::string::npos)
            return nullptr;
        const size_t index = std::stoul(digits);
        return index < json.size() ? valueAt(json[index], path.substr(end + 1)) : nullptr;
    }
    if (!json.is_object())
        return nullptr;
    if (path[0] == '.')
        path.remove_prefix(1);
    for (const auto& [name, value] : json.items())
    {
        if (!path.starts_with(name) ||
            (path.size() > name.size() && path[name.size()] != '.' && path[name.size()] != '['))
            continue;
        if (const ordered_json* const found = valueAt(value, path.substr(name.size())))
            return found;
    }
    return nullptr;
}

std::string textAt(const ordered_json& line, const char* key)
{
    const auto found = line.find(key);
    return found == line.end() || !found->is_string() ? "" : found->get<std::string>();
}

bool isOneOf(const std::vector<std::string>& wanted, const std::string& text)
{
    return wanted.empty() || std::find(wanted.begin(), wanted.end(), text) != wanted.end();
}

bool hasAddress(const ordered_json& line, const std::string& address)
{
    if (textAt(line, "from") == address || textAt(line, "target") == address)
        return true;
    const std::string connection = textAt(line, "connection");
    const size_t middle = connection.find('-');
    if (middle == std::string::npos)
        return false;
    for (const std::string& end : {connection.substr(0, middle), connection.substr(middle + 1)})
    {
        std::string host = end.substr(0, end.rfind(':'));
        if (host.starts_with("["))
            host = host.substr(1, host.size() - 2);
        if (end == address || host == address)
            return true;
    }
    return false;
}

} // namespace

std::optional<FieldTest> FieldTest::parse(std::string_view text)
{
    const size_t at = text.find_first_of("=!<>");
    if (at == std::string_view::npos)
        return std::nullopt;
    FieldTest test;
    test.m_Path = trimmed(text.substr(0, at));
    test.m_Comparison = text.substr(at, text.substr(at + 1).starts_with("=") ? 2 : 1);
    const std::string value = trimmed(text.substr(at + test.m_Comparison.size()));
    constexpr std::string_view kComparisons[] = {"==", "!=", "<", "<=", ">", ">="};
    const bool isKnown =
        std::find(std::begin(kComparisons), std::end(kComparisons), test.m_Comparison) != std::end(kComparisons);
    if (test.m_Path.empty() || value.empty() || !isKnown)
        return std::nullopt;
    test.m_Value = ordered_json::parse(value, nullptr, false);
    if (!test.m_Value.is_primitive() || test.m_Value.is_discarded())
        test.m_Value = value;
    return test;
}

bool FieldTest::holds(const ordered_json& fields) const
{
    const ordered_json* const value = valueAt(fields, m_Path);
    if (!value)
        return false;
    if (m_Comparison == "==")
        return *value == m_Value;
    if (m_Comparison == "!=")
        return *value != m_Value;
    const bool isSameKind = (value->is_number() && m_Value.is_number()) || (value->is_string() && m_Value.is_string());
    if (!isSameKind)
        return false;
    return m_Comparison == "<"    ? *value < m_Value
           : m_Comparison == "<=" ? *value <= m_Value
           : m_Comparison == ">"  ? *value > m_Value
                                  : *value >= m_Value;
}

std::optional<std::string> parseTime(const std::string& text)
{
    static const std::regex kDate("(\\d{4}-\\d\\d-\\d\\d(T\\d\\d(:\\d\\d(:\\d\\d(\\.\\d{1,6})?)?)?)?)Z?");
    static const std::regex kSeconds("(\\d{1,10})(\\.(\\d{1,6}))?");
    std::smatch parts;
    if (std::regex_match(text, parts, kDate))
        return parts[1].str();
    if (!std::regex_match(text, parts, kSeconds))
        return std::nullopt;
    std::string fraction = parts[3].str();
    fraction.resize(6, '0');
    std::string time = timeText(std::stoll(parts[1].str()) * 1'000'000 + std::stoll(fraction));
    time.pop_back();
    return time;
}

bool LineFilter::isEmpty() const
{
    return m_Ids.empty() && m_Classes.empty() && m_Directions.empty() && m_Addresses.empty() && m_Fields.empty() &&
           m_Since.empty() && m_Until.empty();
}

bool LineFilter::passes(std::string_view text) const
{
    const ordered_json line = ordered_json::parse(text);
    const std::string id = textAt(line, "id");
    if (id.empty())
        return true;
    const std::string time = textAt(line, "time");
    const auto fields = line.find("fields");
    // Times are of one length, so they compare as texts.
    return (m_Ids.empty() || std::find(m_Ids.begin(), m_Ids.end(), std::stoul(id, nullptr, 16)) != m_Ids.end()) &&
           isOneOf(m_Classes, textAt(line, "class")) && isOneOf(m_Directions, textAt(line, "direction")) &&
           (m_Addresses.empty() || std::any_of(m_Addresses.begin(), m_Addresses.end(),
                                               [&](const std::string& one) { return hasAddress(line, one); })) &&
           (m_Since.empty() || time >= m_Since) && (m_Until.empty() || (!time.empty() && time < m_Until)) &&
           std::all_of(m_Fields.begin(), m_Fields.end(),
                       [&](const FieldTest& test) { return fields != line.end() && test.holds(*fields); });
}

} // namespace tools

#include "tools/field_difference.h"

#include <algorithm>

namespace tools
{

using nlohmann::ordered_json;

namespace
{

class Comparison
{
public:
    void compare(const ordered_json& first, const ordered_json& second, const std::string& path)
    {
        if (first.is_object() && second.is_object())
            return compareObjects(first, second, path);
        if (first.is_array() && second.is_array())
            return compareArrays(first, second, path);
        if (first != second)
            m_All.push_back({path, first, second});
    }

    std::vector<FieldDifference> m_All;

private:
    void compareObjects(const ordered_json& first, const ordered_json& second, const std::string& path)
    {
        const std::string before = path.empty() ? path : path + ".";
        for (const auto& item : first.items())
        {
            const auto other = second.find(item.key());
            compare(item.value(), other == second.end() ? m_Nothing : *other, before + item.key());
        }
        for (const auto& item : second.items())
            if (!first.contains(item.key()))
                compare(m_Nothing, item.value(), before + item.key());
    }
    void compareArrays(const ordered_json& first, const ordered_json& second, const std::string& path)
    {
        for (size_t i = 0; i < std::max(first.size(), second.size()); ++i)
            compare(i < first.size() ? first[i] : m_Nothing, i < second.size() ? second[i] : m_Nothing,
                    path + "[" + std::to_string(i) + "]");
    }

    const ordered_json m_Nothing;
};

} // namespace

std::vector<FieldDifference> differencesOf(const ordered_json& first, const ordered_json& second)
{
    Comparison comparison;
    comparison.compare(first, second, "");
    return std::move(comparison.m_All);
}

bool isField(const std::string& path, const std::string& name)
{
    std::string plain;
    bool isIndex = false;
    for (const char c : path)
    {
        isIndex = isIndex || c == '[';
        if (!isIndex)
            plain += c;
        isIndex = isIndex && c != ']';
    }
    return path == name || plain == name || plain.substr(plain.rfind('.') + 1) == name;
}

} // namespace tools

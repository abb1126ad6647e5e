// In which fields two objects differ, as JSON.
#pragma once

#include <nlohmann/json.hpp>

#include <string>
#include <vector>

namespace tools
{

struct FieldDifference
{
    // Such as m_Items[2].m_Num.
    std::string m_Path;
    // Null on the side that does not have it.
    nlohmann::ordered_json m_First;
    nlohmann::ordered_json m_Second;
};

// The differing values in their order, those only one side has included. Objects and arrays are not compared as a
// whole, but value by value.
std::vector<FieldDifference> differencesOf(const nlohmann::ordered_json& first, const nlohmann::ordered_json& second);

// Whether the name is that of the field: its whole path, with or without indexes, or its last member.
bool isField(const std::string& path, const std::string& name);

} // namespace tools

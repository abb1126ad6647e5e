#include "tools/command_counts.h"

#include "tools/class_table.h"
#include "tools/schema_text.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace tools
{

namespace
{

constexpr size_t kIds = 0x10000;

std::string idOf(size_t id)
{
    char text[8];
    std::snprintf(text, sizeof text, "0x%04x", static_cast<unsigned>(id));
    return text;
}

// Without the fields it is not known which of two classes with one id a command has.
std::string classesOf(size_t id)
{
    std::string names;
    for (const ClassInfo* const info : classesOfId(static_cast<unsigned short>(id)))
        names.append(names.empty() ? "" : " or ").append(info->m_Name);
    return names;
}

void addNumbers(nlohmann::ordered_json& json, uint64_t commands, uint64_t bytes, double seconds)
{
    json["commands"] = commands;
    json["bytes"] = bytes;
    if (seconds <= 0)
        return;
    const auto perSecond = [&](uint64_t number)
    { return std::round(static_cast<double>(number) / seconds * 1000) / 1000; };
    json["commands_per_second"] = perSecond(commands);
    json["bytes_per_second"] = perSecond(bytes);
}

} // namespace

CommandCounts::CommandCounts() : m_Rows(kIds) {}

void CommandCounts::add(unsigned short id, uint64_t size, int64_t time)
{
    add(id, size);
    m_First = m_HasTime ? std::min(m_First, time) : time;
    m_Last = m_HasTime ? std::max(m_Last, time) : time;
    m_HasTime = true;
}

double CommandCounts::seconds() const
{
    return static_cast<double>(m_Last - m_First) / 1e6;
}

uint64_t CommandCounts::commands() const
{
    uint64_t all = 0;
    for (const Row& row : m_Rows)
        all += row.m_Commands;
    return all;
}

std::vector<std::string> CommandCounts::lines() const
{
    std::vector<size_t> ids;
    uint64_t bytes = 0;
    for (size_t id = 0; id < kIds; ++id)
    {
        bytes += m_Rows[id].m_Bytes;
        if (m_Rows[id].m_Commands > 0)
            ids.push_back(id);
    }
    std::stable_sort(ids.begin(), ids.end(),
                     [this](size_t one, size_t other) { return m_Rows[one].m_Bytes > m_Rows[other].m_Bytes; });
    std::vector<std::string> lines;
    for (const size_t id : ids)
    {
        nlohmann::ordered_json json = {{"id", idOf(id)}};
        if (const std::string names = classesOf(id); !names.empty())
            json["class"] = names;
        addNumbers(json, m_Rows[id].m_Commands, m_Rows[id].m_Bytes, seconds());
        lines.push_back(json.dump());
    }
    nlohmann::ordered_json all;
    addNumbers(all["all"], commands(), bytes, seconds());
    if (m_HasTime)
        all["all"]["seconds"] = seconds();
    all["all"]["errors"] = m_Errors;
    lines.push_back(all.dump());
    return lines;
}

} // namespace tools

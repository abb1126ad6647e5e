// Commands counted by their ids: number, bytes, rate. Their fields are not read.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace tools
{

class CommandCounts
{
public:
    CommandCounts();

    // A command with a payload of that many bytes.
    void add(unsigned short id, uint64_t size)
    {
        Row& row = m_Rows[id];
        ++row.m_Commands;
        row.m_Bytes += size;
    }
    // The same, at a time in microseconds since 1970.
    void add(unsigned short id, uint64_t size, int64_t time);
    // Something that is not a command.
    void addError() { ++m_Errors; }

    uint64_t commands() const;
    // A JSON object for each id, most bytes first, and one for all. Rates are per second between the first and the last
    // command with a time; they are absent if these are one moment.
    std::vector<std::string> lines() const;

private:
    struct Row
    {
        uint64_t m_Commands = 0;
        uint64_t m_Bytes = 0;
    };

    double seconds() const;

    // By id.
    std::vector<Row> m_Rows;
    uint64_t m_Errors = 0;
    bool m_HasTime = false;
    int64_t m_First = 0;
    int64_t m_Last = 0;
};

} // namespace tools

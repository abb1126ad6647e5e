// Reads the files that a host::Recording has written, without the code that wrote them.
#pragma once

#include "tools/capture/capture_decoder.h"

#include <nlohmann/json.hpp>

#include <filesystem>
#include <string>
#include <vector>

namespace test
{

// The blocks of a pcapng file, each checked: lengths, padding, order.
struct RecordedFile
{
    explicit RecordedFile(const std::filesystem::path& path);

    struct Packet
    {
        int64_t m_Time = 0;
        std::string m_Bytes;
        std::string m_Comment;
        // 1 inbound, 2 outbound.
        int m_Direction = 0;
    };

    std::vector<std::string> comments() const;

    // Empty if nothing is wrong.
    std::string m_Fault;
    std::vector<Packet> m_Packets;
    // Of the statistics at the end; -1 without them.
    long long m_Received = -1;
    long long m_Dropped = -1;
    size_t m_Size = 0;
};

// What wirelens decode makes of it.
struct RecordedLines
{
    explicit RecordedLines(const RecordedFile& file);

    // The fields of the lines in one direction, or in both.
    std::vector<nlohmann::ordered_json> fields(const std::string& direction = "") const;

    std::vector<nlohmann::ordered_json> m_Lines;
    std::vector<tools::Notice> m_Notices;
    tools::CaptureTotals m_Totals;
};

} // namespace test

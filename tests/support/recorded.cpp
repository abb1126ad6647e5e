#include "tests/support/recorded.h"

#include <fstream>
#include <iterator>
#include <string_view>

namespace test
{

namespace
{

uint64_t numberAt(std::string_view bytes, size_t at, size_t size)
{
    uint64_t number = 0;
    for (size_t i = 0; i < size && at + i < bytes.size(); ++i)
        number |= uint64_t{static_cast<unsigned char>(bytes[at + i])} << 8 * i;
    return number;
}

size_t padded(uint64_t size)
{
    return static_cast<size_t>((size + 3) / 4 * 4);
}

// Calls take(code, value) for each option. False if they do not end with the end of options and the block.
template <class Take>
bool readOptions(std::string_view options, Take take)
{
    while (options.size() >= 4)
    {
        const uint64_t code = numberAt(options, 0, 2);
        const auto size = static_cast<size_t>(numberAt(options, 2, 2));
        if (code == 0)
            return size == 0 && options.size() == 4;
        if (4 + padded(size) > options.size())
            return false;
        take(code, options.substr(4, size));
        options.remove_prefix(4 + padded(size));
    }
    return false;
}

constexpr uint64_t kSection = 0x0A0D0D0A;
constexpr uint64_t kInterface = 1;
constexpr uint64_t kStatistics = 5;
constexpr uint64_t kEnhancedPacket = 6;

} // namespace

RecordedFile::RecordedFile(const std::filesystem::path& path)
{
    std::ifstream file(path, std::ios::binary);
    const std::string content{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    m_Size = content.size();
    if (content.empty())
        m_Fault = "no file";
    std::string_view rest = content;
    for (int number = 0; !rest.empty() && m_Fault.empty(); ++number)
    {
        const uint64_t type = numberAt(rest, 0, 4);
        const auto size = static_cast<size_t>(numberAt(rest, 4, 4));
        if (size < 12 || size % 4 != 0 || size > rest.size() || numberAt(rest, size - 4, 4) != size)
        {
            m_Fault = "block " + std::to_string(number) + " has a wrong length";
            return;
        }
        const std::string_view body = rest.substr(8, size - 12);
        rest.remove_prefix(size);
        if ((type == kSection) != (number == 0) || (type == kInterface) != (number == 1) || m_Received >= 0)
            m_Fault = "block " + std::to_string(number) + " is out of place";
        else if (type == kSection && numberAt(body, 0, 4) != 0x1A2B3C4D)
            m_Fault = "another byte order";
        else if (type == kInterface && numberAt(body, 0, 2) != 101)
            m_Fault = "another link type";
        else if (type == kEnhancedPacket)
        {
            Packet packet;
            packet.m_Time = static_cast<int64_t>(numberAt(body, 4, 4) << 32 | numberAt(body, 8, 4));
            const auto length = static_cast<size_t>(numberAt(body, 12, 4));
            if (20 + padded(length) > body.size() || numberAt(body, 16, 4) != length)
            {
                m_Fault = "a packet has a wrong length";
                return;
            }
            packet.m_Bytes = body.substr(20, length);
            const auto take = [&packet](uint64_t code, std::string_view value)
            {
                if (code == 1)
                    packet.m_Comment = value;
                if (code == 2)
                    packet.m_Direction = static_cast<int>(numberAt(value, 0, 4));
            };
            if (!readOptions(body.substr(20 + padded(length)), take))
                m_Fault = "a packet has wrong options";
            m_Packets.push_back(std::move(packet));
        }
        else if (type == kStatistics)
        {
            const auto take = [this](uint64_t code, std::string_view value)
            {
                if (code == 4)
                    m_Received = static_cast<long long>(numberAt(value, 0, 8));
                if (code == 5)
                    m_Dropped = static_cast<long long>(numberAt(value, 0, 8));
            };
            if (!readOptions(body.substr(12), take))
                m_Fault = "the statistics have wrong options";
        }
    }
}

std::vector<std::string> RecordedFile::comments() const
{
    std::vector<std::string> all;
    for (const Packet& packet : m_Packets)
        if (!packet.m_Comment.empty())
            all.push_back(packet.m_Comment);
    return all;
}

RecordedLines::RecordedLines(const RecordedFile& file)
{
    tools::CaptureDecoder decoder([this](std::string_view line, bool)
                                  { m_Lines.push_back(nlohmann::ordered_json::parse(line)); },
                                  [this](const tools::Notice& notice) { m_Notices.push_back(notice); });
    for (const RecordedFile::Packet& packet : file.m_Packets)
        decoder.add({packet.m_Time, tools::Link::kRawIp, packet.m_Bytes});
    decoder.finish();
    m_Totals = decoder.totals();
}

std::vector<nlohmann::ordered_json> RecordedLines::fields(const std::string& direction) const
{
    std::vector<nlohmann::ordered_json> all;
    for (const auto& line : m_Lines)
        if (direction.empty() || line["direction"] == direction)
            all.push_back(line.contains("fields") ? line["fields"] : nlohmann::ordered_json());
    return all;
}

} // namespace test

// Capture files in the pcapng format, of a bounded size, with a bounded number of older ones.
#pragma once

#include "framework/string.h"

#include <cstdint>
#include <cstdio>
#include <string>
#include <string_view>

namespace host::inner
{

// One interface, whose packets start with an IP header; their times are in microseconds. When a file is full it becomes
// FILE.1, the one with that name FILE.2, and so on. Each file can be read alone. A packet is in the file once add()
// returns.
class PcapngFile
{
public:
    // The direction of a packet as the format numbers it.
    enum Direction : unsigned char
    {
        kInbound = 1,
        kOutbound = 2
    };

    // What the interface has seen, for the end of a file.
    struct Counts
    {
        uint64_t m_Received = 0;
        uint64_t m_Dropped = 0;
    };

    // files counts the present one.
    PcapngFile(const zet::String_T<wchar_t>& path, uint64_t fileSize, int files)
        : m_Path(path), m_FileSize(fileSize), m_Files(files)
    {
    }
    ~PcapngFile();
    PcapngFile(const PcapngFile&) = delete;
    PcapngFile& operator=(const PcapngFile&) = delete;

    // Renames the files of an earlier recording and writes the head of a new one. These return false after a failure,
    // for which error() has the reason; nothing more is written then.
    bool open();
    bool add(int64_t time, Direction direction, std::string_view packet, const std::string& comment);
    // Ends the present file and begins the next one.
    bool rotate(const Counts& counts);
    // Ends the file with the counts.
    bool close(const Counts& counts);

    // Whether this many bytes more exceed the size of a file that has packets.
    bool isFullWith(uint64_t more) const { return m_HasPackets && m_Size + more > m_FileSize; }
    // The bytes that a packet takes in the file besides its own and those of its comment, at most.
    static constexpr uint64_t kPacketCost = 64;
    const std::string& error() const { return m_Error; }

private:
    bool begin();
    bool write(const std::string& bytes);
    bool fail(const std::string& what);

    zet::String_T<wchar_t> m_Path;
    uint64_t m_FileSize;
    int m_Files;
    std::FILE* m_File = nullptr;
    uint64_t m_Size = 0;
    bool m_HasPackets = false;
    std::string m_Error;
};

// Microseconds since 1970, UTC.
int64_t getCaptureTime();

} // namespace host::inner

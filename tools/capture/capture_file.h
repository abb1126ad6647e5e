// Packets from a capture file, pcap or pcapng, as its bytes arrive. libpcap reads them; a build without it recognises
// captures only.
#pragma once

#include "tools/capture/packet.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

namespace tools
{

enum class Recognised
{
    kNo,
    kYes,
    kUndecided // more bytes decide
};

// Whether bytes from the beginning of a file are those of a capture. kMagicBytes decide, mostly fewer.
constexpr size_t kMagicBytes = 12;
Recognised recogniseCapture(std::string_view beginning);

// Stores at most size bytes and returns their number: at least one, unless the file ends.
using ByteSource = std::function<size_t(char* data, size_t size)>;

struct CapturedPacket
{
    // Microseconds since 1970, UTC, before the year 10000.
    int64_t m_Time = 0;
    Link m_Link = Link::kUnknown;
    // Valid until the next packet.
    std::string_view m_Bytes;
};

class CaptureFile
{
public:
    // Whether this build has libpcap.
    static bool isSupported();

    // The source is called by open() and next() only. Without libpcap open() fails.
    explicit CaptureFile(ByteSource source);
    ~CaptureFile();
    CaptureFile(const CaptureFile&) = delete;
    CaptureFile& operator=(const CaptureFile&) = delete;

    // Reads the head of the file. False with error().
    bool open();
    // False at the end, and with error() where the file is damaged.
    bool next(CapturedPacket& packet);
    // Empty if nothing is wrong.
    const std::string& error() const { return m_Error; }

private:
    struct Inner;
    std::unique_ptr<Inner> m_Inner;
    std::string m_Error;
};

} // namespace tools

#include "tools/capture/capture_file.h"

#include <pcap/pcap.h>

#include <algorithm>
#include <cstdio>

namespace tools
{

namespace
{

constexpr int64_t kMicroseconds = 1'000'000;
// The last second of the year 9999. A damaged capture may have later ones.
constexpr int64_t kLatest = 253'402'300'799;

int64_t timeOf(const timeval& time)
{
    return std::clamp<int64_t>(time.tv_sec, 0, kLatest) * kMicroseconds +
           std::clamp<int64_t>(time.tv_usec, 0, kMicroseconds - 1);
}

Link linkOf(int type)
{
    switch (type)
    {
    case DLT_EN10MB:
        return Link::kEthernet;
    case DLT_LINUX_SLL:
        return Link::kLinuxCooked;
    case DLT_LINUX_SLL2:
        return Link::kLinuxCooked2;
    case DLT_RAW:
    case DLT_IPV4:
    case DLT_IPV6:
        return Link::kRawIp;
    case DLT_NULL:
    case DLT_LOOP:
        return Link::kLoopback;
    default:
        return Link::kUnknown;
    }
}

ssize_t readSource(void* source, char* data, size_t size)
{
    return static_cast<ssize_t>((*static_cast<ByteSource*>(source))(data, size));
}

} // namespace

struct CaptureFile::Inner
{
    ByteSource m_Source;
    pcap_t* m_File = nullptr;
};

bool CaptureFile::isSupported()
{
    return true;
}

CaptureFile::CaptureFile(ByteSource source) : m_Inner(std::make_unique<Inner>())
{
    m_Inner->m_Source = std::move(source);
}

CaptureFile::~CaptureFile()
{
    if (m_Inner->m_File)
        pcap_close(m_Inner->m_File);
}

bool CaptureFile::open()
{
    // A stream of the C library over the source, since libpcap reads from one.
    cookie_io_functions_t calls{};
    calls.read = readSource;
    std::FILE* const stream = fopencookie(&m_Inner->m_Source, "rb", calls);
    if (!stream)
    {
        m_Error = "no memory for the capture";
        return false;
    }
    char error[PCAP_ERRBUF_SIZE] = "";
    m_Inner->m_File = pcap_fopen_offline(stream, error);
    if (m_Inner->m_File)
        return true;
    std::fclose(stream);
    m_Error = error;
    return false;
}

bool CaptureFile::next(CapturedPacket& packet)
{
    pcap_pkthdr* head = nullptr;
    const u_char* bytes = nullptr;
    const int result = pcap_next_ex(m_Inner->m_File, &head, &bytes);
    if (result == PCAP_ERROR)
        m_Error = pcap_geterr(m_Inner->m_File);
    if (result != 1)
        return false;
    packet.m_Time = timeOf(head->ts);
    packet.m_Link = linkOf(pcap_datalink(m_Inner->m_File));
    packet.m_Bytes = std::string_view(reinterpret_cast<const char*>(bytes), head->caplen);
    return true;
}

} // namespace tools

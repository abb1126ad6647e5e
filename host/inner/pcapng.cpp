#include "host/inner/pcapng.h"

#include "framework/format.h"
#include "framework/platform/platform.h"

#include <cerrno>
#include <chrono>
#include <system_error>

namespace host::inner
{

namespace
{

// Numbers are in the byte order of little-endian machines; the head of a file says so.
void put(std::string& out, uint64_t value, int size)
{
    for (int i = 0; i < size; ++i)
        out += static_cast<char>(value >> 8 * i);
}

void pad(std::string& out)
{
    out.append((4 - out.size() % 4) % 4, '\0');
}

void putOption(std::string& out, unsigned int code, std::string_view value)
{
    put(out, code, 2);
    put(out, value.size(), 2);
    out += value;
    pad(out);
}

void putCount(std::string& out, unsigned int code, uint64_t value)
{
    std::string bytes;
    put(bytes, value, 8);
    putOption(out, code, bytes);
}

constexpr unsigned int kEndOfOptions = 0;

std::string blockOf(unsigned int type, const std::string& body)
{
    const uint64_t size = body.size() + 12;
    std::string block;
    put(block, type, 4);
    put(block, size, 4);
    block += body;
    put(block, size, 4);
    return block;
}

std::string sectionHead()
{
    constexpr unsigned int kUserApplication = 4;
    std::string body;
    put(body, 0x1A2B3C4D, 4);
    put(body, 1, 2);
    put(body, 0, 2);
    // The length of the section is not known.
    put(body, ~uint64_t{0}, 8);
    putOption(body, kUserApplication, "commonground");
    putOption(body, kEndOfOptions, "");
    return blockOf(0x0A0D0D0A, body);
}

std::string interfaceHead()
{
    constexpr unsigned int kRawIp = 101;
    constexpr unsigned int kName = 2;
    std::string body;
    put(body, kRawIp, 2);
    put(body, 0, 2);
    // No packet is cut.
    put(body, 0, 4);
    putOption(body, kName, "sockets");
    putOption(body, kEndOfOptions, "");
    return blockOf(1, body);
}

void putTime(std::string& out, int64_t time)
{
    put(out, static_cast<uint64_t>(time) >> 32, 4);
    put(out, static_cast<uint64_t>(time) & 0xFFFFFFFF, 4);
}

std::string statistics(const PcapngFile::Counts& counts)
{
    constexpr unsigned int kReceived = 4;
    constexpr unsigned int kDropped = 5;
    std::string body;
    put(body, 0, 4);
    putTime(body, getCaptureTime());
    putCount(body, kReceived, counts.m_Received);
    putCount(body, kDropped, counts.m_Dropped);
    putOption(body, kEndOfOptions, "");
    return blockOf(5, body);
}

std::string textOf(int error)
{
    return std::generic_category().message(error);
}

zet::String_T<wchar_t> pathOf(const zet::String_T<wchar_t>& path, int number)
{
    return number > 0 ? zet::formatText(L"%s.%d", path, number) : path;
}

} // namespace

int64_t getCaptureTime()
{
    using namespace std::chrono;
    return duration_cast<microseconds>(system_clock::now().time_since_epoch()).count();
}

PcapngFile::~PcapngFile()
{
    if (m_File)
        std::fclose(m_File);
}

bool PcapngFile::fail(const std::string& what)
{
    if (m_Error.empty())
        m_Error = what;
    if (m_File)
        std::fclose(m_File);
    m_File = nullptr;
    return false;
}

bool PcapngFile::write(const std::string& bytes)
{
    if (!m_File)
        return false;
    // The file has no buffer of its own.
    errno = 0;
    if (std::fwrite(bytes.data(), 1, bytes.size(), m_File) != bytes.size())
        return fail(errno != 0 ? textOf(errno) : "the file takes no more bytes");
    m_Size += bytes.size();
    return true;
}

bool PcapngFile::begin()
{
    // Renamed where they exist.
    for (int number = m_Files - 1; number > 0; --number)
        if (const auto from = pathOf(m_Path, number - 1); zet::platform::isFile(from))
            zet::platform::renameFile(from, pathOf(m_Path, number));
    if (m_Files == 1 && zet::platform::isFile(m_Path))
        zet::platform::deleteFile(m_Path);
    // Continued, the file would have no bound.
    if (zet::platform::isFile(m_Path))
        return fail("the file of that name cannot be renamed");
    m_Size = 0;
    m_HasPackets = false;
    errno = 0;
    m_File = zet::platform::openLogFile(m_Path.getBuffer());
    if (!m_File)
        return fail(errno != 0 ? textOf(errno) : "it cannot be created");
    return write(sectionHead() + interfaceHead());
}

bool PcapngFile::open()
{
    m_Error.clear();
    return begin();
}

bool PcapngFile::add(int64_t time, Direction direction, std::string_view packet, const std::string& comment)
{
    constexpr unsigned int kComment = 1;
    constexpr unsigned int kFlags = 2;
    std::string body;
    body.reserve(packet.size() + comment.size() + kPacketCost);
    put(body, 0, 4);
    putTime(body, time);
    put(body, packet.size(), 4);
    put(body, packet.size(), 4);
    body += packet;
    pad(body);
    if (!comment.empty())
        putOption(body, kComment, comment);
    std::string flags;
    put(flags, direction, 4);
    putOption(body, kFlags, flags);
    putOption(body, kEndOfOptions, "");
    m_HasPackets = true;
    return write(blockOf(6, body));
}

bool PcapngFile::rotate(const Counts& counts)
{
    return close(counts) && begin();
}

bool PcapngFile::close(const Counts& counts)
{
    if (!write(statistics(counts)))
        return false;
    const bool isClosed = std::fclose(m_File) == 0;
    m_File = nullptr;
    return isClosed || fail(textOf(errno));
}

} // namespace host::inner

#include "tools/capture/packet_finder.h"

#include "framework/packet.h"
#include "tools/frame_reader.h"

#include <algorithm>

namespace tools
{

namespace
{

constexpr size_t kPacketHead = zet::PacketWriter::kHeadSize;
constexpr size_t kHead = kPacketHead + CCmdPackager::kMinHeaderSize;

// The length of the packet that starts here, with its length word; 0 if none can start here.
uint64_t packetSize(std::string_view bytes)
{
    uint64_t length = 0;
    for (size_t i = 0; i < kPacketHead; ++i)
        length |= uint64_t{static_cast<unsigned char>(bytes[i])} << 8 * i;
    if (length > PacketFinder::kMostPacket || length != streamFrameSize(bytes.substr(kPacketHead)))
        return 0;
    return kPacketHead + length;
}

std::string bytesText(uint64_t size)
{
    return std::to_string(size) + (size == 1 ? " byte" : " bytes");
}

} // namespace

void PacketFinder::start(const std::string& reason)
{
    m_Held.clear();
    m_At = 0;
    m_Begin = 0;
    m_ToPass = 0;
    m_Skipped = 0;
    m_IsSynchronised = reason.empty();
    m_Reason = reason;
}

void PacketFinder::compact()
{
    m_Begin += m_At;
    m_Held.erase(0, m_At);
    m_At = 0;
    // A large packet leaves no large block.
    if (m_Held.empty() && m_Held.capacity() > 0x10000)
        m_Held = std::string();
}

void PacketFinder::drop(size_t size)
{
    m_At += size;
    m_Skipped += size;
}

void PacketFinder::lose(const std::string& reason)
{
    m_IsSynchronised = false;
    m_Reason = reason;
    m_Skipped = 0;
}

void PacketFinder::give(std::string_view frame)
{
    CCmdPackager packager;
    if (receiveFrame(packager, frame))
        m_Sink.onFrame(packager, m_Begin + m_At + kPacketHead);
}

// One packet of a synchronised direction, or its absence. False if more bytes are needed.
bool PacketFinder::step()
{
    const std::string_view bytes = waiting();
    if (bytes.size() < kHead)
        return false;
    const uint64_t size = packetSize(bytes);
    if (size == 0)
    {
        lose("bytes that are not a packet");
        return true;
    }
    if (size > bytes.size())
        return false;
    give(bytes.substr(kPacketHead, size - kPacketHead));
    m_At += size;
    return true;
}

// Nothing follows what is held, if it is the end.
void PacketFinder::search(bool isEnd)
{
    while (!m_IsSynchronised)
    {
        const std::string_view bytes = waiting();
        if (bytes.size() < kHead)
            return;
        const uint64_t size = packetSize(bytes);
        if (size > bytes.size() && !isEnd && isKnownId(bytes.substr(kPacketHead)))
            return;
        CCmdPackager packager;
        if (size != 0 && size <= bytes.size() && isKnownId(bytes.substr(kPacketHead)) &&
            receiveFrame(packager, bytes.substr(kPacketHead, size - kPacketHead)) && isReadExactly(packager))
        {
            m_Sink.onNotice(m_Reason + ", resynchronised after " + bytesText(m_Skipped), m_Begin + m_At, m_Skipped);
            m_IsSynchronised = true;
            m_Skipped = 0;
            return;
        }
        drop(1);
    }
}

void PacketFinder::findAll(bool isEnd)
{
    do
        search(isEnd);
    while (m_IsSynchronised && step());
}

void PacketFinder::onBytes(std::string_view bytes)
{
    const auto passed = static_cast<size_t>(std::min<uint64_t>(m_ToPass, bytes.size()));
    m_ToPass -= passed;
    m_Begin += passed;
    bytes.remove_prefix(passed);
    m_Held.append(bytes);
    findAll(false);
    compact();
}

void PacketFinder::onGap(uint64_t size)
{
    m_Sink.onLoss(size);
    const std::string reason = "a gap of " + bytesText(size);
    findAll(true);
    const uint64_t held = waiting().size();
    // What the packet that has begun still needs. Within it, the start of the next one is known.
    uint64_t rest = m_ToPass;
    if (rest == 0 && m_IsSynchronised && held >= kHead)
    {
        rest = packetSize(waiting()) - held;
        if (rest >= size)
            m_Sink.onNotice(reason + " in a packet of " + bytesText(held + rest), m_Begin + m_At, held + rest - size);
    }
    m_ToPass = rest >= size ? rest - size : 0;
    if (m_IsSynchronised && rest < size)
    {
        lose(reason);
        m_Skipped = held;
    }
    else if (!m_IsSynchronised)
    {
        m_Skipped += held;
        if (m_Reason.find("gap") == std::string::npos)
            m_Reason += ", then gaps";
    }
    m_Begin += m_Held.size() + size;
    m_Held.clear();
    m_At = 0;
}

void PacketFinder::finish()
{
    findAll(true);
    const uint64_t left = waiting().size();
    if (!m_IsSynchronised && m_Skipped + left > 0)
        m_Sink.onNotice(m_Reason + ", no packet in " + bytesText(m_Skipped + left), m_Begin + m_At, m_Skipped + left);
    else if (!m_IsSynchronised && m_Begin > 0)
        m_Sink.onNotice(m_Reason + ", then the end", m_Begin, 0);
    else if (m_IsSynchronised && left > 0)
        m_Sink.onNotice("the end within a packet, of which " + bytesText(left) + " are there", m_Begin + m_At, left);
    start("");
}

} // namespace tools

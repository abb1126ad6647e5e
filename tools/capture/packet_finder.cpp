#include "tools/capture/packet_finder.h"

#include "framework/packet.h"
#include "net/session/inner/greeting.h"
#include "tools/frame_reader.h"

#include <algorithm>

namespace tools
{

namespace
{

constexpr size_t kPacketHead = zet::PacketWriter::kHeadSize;
constexpr size_t kHead = kPacketHead + CCmdPackager::kMinHeaderSize;

// A greeting with its length word.
constexpr size_t kGreetingPacket = kPacketHead + size_t{zet::inner::kGreetingSize};

uint64_t lengthAt(std::string_view bytes)
{
    uint64_t length = 0;
    for (size_t i = 0; i < kPacketHead; ++i)
        length |= uint64_t{static_cast<unsigned char>(bytes[i])} << 8 * i;
    return length;
}

// The length of the packet with a stream frame that starts here, with its length word; 0 if none can start here.
uint64_t framePacketSize(std::string_view bytes)
{
    const uint64_t length = lengthAt(bytes);
    if (length > PacketFinder::kMostPacket || length != streamFrameSize(bytes.substr(kPacketHead)))
        return 0;
    return kPacketHead + length;
}

// The same for a message: its class name has 1 to 127 characters. Empty packets are skipped by readers.
uint64_t messagePacketSize(std::string_view bytes)
{
    const uint64_t length = lengthAt(bytes);
    const auto name = static_cast<unsigned char>(bytes[kPacketHead]);
    if (length == 0)
        return kPacketHead;
    return length > PacketFinder::kMostPacket || name == 0 || name > 127 || name >= length ? 0 : kPacketHead + length;
}

bool startsWithGreeting(std::string_view bytes)
{
    return lengthAt(bytes) == zet::inner::kGreetingSize &&
           bytes.substr(kPacketHead).starts_with(zet::inner::kGreetingMark);
}

// Whether a message's bytes, of which there may be a few only, start as one with a command does: with the size of the
// class name and the name.
bool canBeNetCommand(std::string_view bytes)
{
    if (bytes.empty() || static_cast<unsigned char>(bytes[0]) != kNetCommandName.size())
        return bytes.empty();
    bytes = bytes.substr(1, kNetCommandName.size());
    return kNetCommandName.starts_with(bytes);
}

NetPacketView viewOf(std::string_view packet)
{
    return viewNetPacket({reinterpret_cast<const unsigned char*>(packet.data()), packet.size()});
}

std::string_view frameIn(const NetPacketView& view)
{
    return {reinterpret_cast<const char*>(view.m_Frame), view.m_FrameSize};
}

bool isPlausible(std::string_view frame)
{
    CCmdPackager packager;
    return !frame.empty() && streamFrameSize(frame) == frame.size() && isKnownId(frame) &&
           receiveFrame(packager, frame) && isReadExactly(packager);
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
    m_IsSession = false;
    m_IsAtStart = true;
    m_Reason = reason;
}

bool PacketFinder::isHeadCut(std::string_view bytes) const
{
    return bytes.size() < (m_IsSession ? kPacketHead + 1 : kHead);
}

uint64_t PacketFinder::sizeHere() const
{
    const std::string_view bytes = waiting();
    if (isHeadCut(bytes))
        return 0;
    if (m_IsAtStart && startsWithGreeting(bytes))
        return kGreetingPacket;
    return m_IsSession ? messagePacketSize(bytes) : framePacketSize(bytes);
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

void PacketFinder::give(std::string_view packet)
{
    const uint64_t offset = m_Begin + m_At + kPacketHead;
    CCmdPackager packager;
    if (!m_IsSession)
    {
        if (receiveFrame(packager, packet))
            m_Sink.onFrame(packager, offset, nullptr);
        return;
    }
    const NetPacketView view = viewOf(packet);
    const std::string_view frame = frameIn(view);
    if (view.m_Frame && streamFrameSize(frame) == frame.size() && receiveFrame(packager, frame))
        m_Sink.onFrame(packager, offset + static_cast<uint64_t>(frame.data() - packet.data()), &view);
    else
        m_Sink.onMessage(view.m_ClassName, offset, packet.size());
}

// One packet of a synchronised direction, or its absence. False if more bytes are needed.
bool PacketFinder::step()
{
    const std::string_view bytes = waiting();
    if (isHeadCut(bytes))
        return false;
    const uint64_t size = sizeHere();
    if (size == 0)
    {
        lose("bytes that are not a packet");
        return true;
    }
    if (size > bytes.size())
        return false;
    if (m_IsAtStart && startsWithGreeting(bytes))
        m_IsSession = true;
    else if (size > kPacketHead)
        give(bytes.substr(kPacketHead, size - kPacketHead));
    m_IsAtStart = false;
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
        const std::string_view begin = bytes.substr(kPacketHead);
        const bool isMessage = canBeNetCommand(begin);
        const uint64_t size = isMessage ? messagePacketSize(bytes) : framePacketSize(bytes);
        if (size > bytes.size() && !isEnd && (isMessage || isKnownId(begin)))
            return;
        const std::string_view packet =
            bytes.substr(kPacketHead, size <= bytes.size() && size > 0 ? size - kPacketHead : 0);
        if (!packet.empty() && isPlausible(isMessage ? frameIn(viewOf(packet)) : packet))
        {
            m_IsSession = isMessage;
            m_IsAtStart = false;
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
    if (rest == 0 && m_IsSynchronised && !isHeadCut(waiting()))
    {
        rest = sizeHere() - held;
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

#include "tools/frame_decoder.h"

#include "framework/packet.h"
#include "tools/frame_reader.h"
#include "tools/object_json.h"

#include <algorithm>

namespace tools
{

namespace
{

constexpr size_t kStreamHead = CCmdPackager::kMinHeaderSize;
constexpr uint64_t kLargestFrame = static_cast<uint64_t>(CCmdPackager::kMaxHeaderSize) + CCmdPackager::kMaxDataSize;
constexpr size_t kPacketHead = zet::PacketWriter::kHeadSize;

// The length before a frame of a stream over UDP.
constexpr size_t kUdpHead = 2;

constexpr char kNoFrameHead[] = "no whole frame head";

std::string tooShort(const char* what, uint64_t size, uint64_t there)
{
    return std::string(what) + " of " + std::to_string(size) + " bytes, had " + std::to_string(there);
}

// The number in the first four bytes, or in fewer if there are fewer.
uint64_t packetLength(std::string_view bytes)
{
    uint64_t length = 0;
    for (size_t i = 0; i < std::min(kPacketHead, bytes.size()); ++i)
        length |= static_cast<uint64_t>(static_cast<unsigned char>(bytes[i])) << 8 * i;
    return length;
}

// Bytes of the input that reading the datagram frame consumes or peeks at; 0 if its size word is incomplete.
size_t datagramReach(std::string_view bytes)
{
    constexpr size_t kId = 2;
    if (bytes.size() <= kId)
        return 0;
    const auto first = static_cast<unsigned char>(bytes[kId]);
    const size_t more = first >> 6;
    const size_t head = kId + 1 + more;
    if (bytes.size() < head)
        return 0;
    unsigned int word = first & 0x3F;
    for (size_t i = 0; i < more; ++i)
        word = word << 8 | static_cast<unsigned char>(bytes[kId + 1 + i]);
    // An address is peeked at, not consumed.
    const size_t address = (word & 3) != 0 ? sizeof(zet::Uuid) : 0;
    return head + std::max<size_t>(word >> 2, address);
}

} // namespace

void FrameDecoder::tellFailure(uint64_t offset, const std::string& what)
{
    m_Line.clear();
    m_Line.put("{\"offset\":");
    m_Line.addInteger(static_cast<long long>(offset));
    m_Line.put(",\"error\":");
    m_Line.addText(what);
    m_Line.put('}');
    m_Tell(m_Line.view(), true);
}

// Skips bytes, held or still to arrive.
void FrameDecoder::pass(uint64_t size)
{
    const auto here = static_cast<size_t>(std::min<uint64_t>(size, m_Held.size() - m_At));
    m_At += here;
    m_ToPass = size - here;
}

bool FrameDecoder::tellStreamFrame(std::string_view frame, uint64_t offset)
{
    // The head of a whole frame is enough to count it.
    if (m_Counts && streamPayloadSize(frame) <= CCmdPackager::kMaxDataSize)
    {
        m_Counts->add(streamId(frame), streamPayloadSize(frame));
        return true;
    }
    CCmdPackager packager;
    if (!receiveFrame(packager, frame))
    {
        tellFailure(offset, kNoFrameHead);
        return false;
    }
    tellFrame(packager, &offset);
    return true;
}

void FrameDecoder::tellFrame(const CCmdPackager& frame, const uint64_t* offset)
{
    if (m_Counts)
        return m_Counts->add(frame.GetCmdID(), static_cast<uint64_t>(frame.GetDataSize()));
    if (m_TakeFrame)
        m_TakeFrame(frame);
    m_Line.clear();
    m_Line.put('{');
    if (offset)
    {
        m_Line.put("\"offset\":");
        m_Line.addInteger(static_cast<long long>(*offset));
        m_Line.put(',');
    }
    const bool isGood = addCommand(m_Line, frame, true, m_PackTypes);
    m_Line.put('}');
    m_Tell(m_Line.view(), !isGood);
}

bool FrameDecoder::stepStream()
{
    const std::string_view bytes = waiting();
    if (bytes.size() < kStreamHead)
        return false;
    const uint64_t size = streamFrameSize(bytes);
    if (size > kLargestFrame)
    {
        tellFailure(offset(), "frame of " + std::to_string(size) + " bytes, more than a frame can have");
        m_IsOver = true;
        return false;
    }
    if (size > bytes.size())
        return false;
    m_IsOver = !tellStreamFrame(bytes.substr(0, size), offset());
    pass(size);
    return !m_IsOver;
}

bool FrameDecoder::stepPackets()
{
    std::string_view bytes = waiting();
    if (bytes.size() < kPacketHead)
        return false;
    const uint64_t length = packetLength(bytes);
    bytes.remove_prefix(kPacketHead);
    const uint64_t begin = offset() + kPacketHead;

    if (bytes.size() < std::min<uint64_t>(length, kStreamHead))
        return false;
    const uint64_t size = length < kStreamHead ? 0 : streamFrameSize(bytes);
    if (size == 0)
    {
        tellFailure(begin, kNoFrameHead);
    }
    else if (size > length || size > kLargestFrame)
    {
        tellFailure(begin, tooShort("frame", size, length));
    }
    else
    {
        if (size > bytes.size())
            return false;
        if (tellStreamFrame(bytes.substr(0, size), begin) && size < length)
            tellFailure(begin + size, std::to_string(length - size) + " bytes after the frame");
    }
    m_PacketOffset = begin;
    m_PacketLength = length;
    pass(kPacketHead + length);
    return true;
}

bool FrameDecoder::stepDatagram()
{
    const std::string_view bytes = waiting();
    const size_t reach = datagramReach(bytes);
    if (reach == 0 || reach > bytes.size())
        return false;
    CCmdPackager frame;
    const int used = frame.Unpack(bytes.data(), static_cast<int>(reach));
    if (used > 0)
    {
        tellFrame(frame, nullptr);
        m_DatagramEnd = static_cast<uint64_t>(used);
    }
    m_IsOver = true;
    return false;
}

bool FrameDecoder::stepUdpStream()
{
    const std::string_view bytes = waiting();
    if (bytes.size() < kUdpHead)
        return false;
    const auto length = static_cast<int16_t>(packetLength(bytes.substr(0, kUdpHead)));
    if (length <= 0)
    {
        tellFailure(offset(), "length " + std::to_string(length) + " of a frame");
        m_IsOver = true;
        return false;
    }
    const auto size = static_cast<size_t>(length);
    if (bytes.size() < kUdpHead + size)
        return false;
    CCmdPackager frame;
    const std::string_view whole = bytes.substr(kUdpHead, size);
    const size_t reach = datagramReach(whole);
    const uint64_t begin = offset() + kUdpHead;
    const int used = reach == 0 || reach > size ? 0 : frame.Unpack(whole.data(), static_cast<int>(size));
    if (used <= 0)
        tellFailure(begin, "no whole datagram frame");
    else
        tellFrame(frame, &begin);
    if (used > 0 && used < length)
        tellFailure(begin + static_cast<uint64_t>(used), std::to_string(length - used) + " bytes after the frame");
    pass(kUdpHead + size);
    return true;
}

bool FrameDecoder::step()
{
    switch (m_Framing)
    {
    case Framing::kPackets:
        return stepPackets();
    case Framing::kDatagram:
        return stepDatagram();
    case Framing::kUdpStream:
        return stepUdpStream();
    case Framing::kStream:
        break;
    }
    return stepStream();
}

void FrameDecoder::add(std::string_view bytes)
{
    m_Size += bytes.size();
    if (m_IsOver)
        return;
    const auto passed = static_cast<size_t>(std::min<uint64_t>(m_ToPass, bytes.size()));
    m_ToPass -= passed;
    bytes.remove_prefix(passed);
    m_Begin += passed;
    m_Held.append(bytes);
    while (step())
    {
    }
    m_Begin += m_At;
    m_Held.erase(0, m_IsOver ? m_Held.size() : m_At);
    m_At = 0;
}

void FrameDecoder::finishPackets()
{
    if (m_ToPass > 0)
        tellFailure(m_PacketOffset, tooShort("packet", m_PacketLength, m_PacketLength - m_ToPass));
    else if (m_Held.size() >= kPacketHead)
        tellFailure(m_Begin + kPacketHead, tooShort("packet", packetLength(m_Held), m_Held.size() - kPacketHead));
    else if (!m_Held.empty())
        tellFailure(m_Begin, "no whole packet length");
}

void FrameDecoder::finish()
{
    if (m_Framing == Framing::kDatagram)
    {
        if (m_DatagramEnd == 0)
            tellFailure(0, "no whole datagram frame");
        else if (m_Size > m_DatagramEnd)
            tellFailure(m_DatagramEnd, std::to_string(m_Size - m_DatagramEnd) + " bytes after the frame");
    }
    else if (m_Framing == Framing::kPackets)
    {
        finishPackets();
    }
    else if (m_Framing == Framing::kUdpStream)
    {
        const std::string_view left = m_Held;
        if (left.size() >= kUdpHead)
            tellFailure(m_Begin + kUdpHead,
                        tooShort("frame", packetLength(left.substr(0, kUdpHead)), left.size() - kUdpHead));
        else if (!left.empty())
            tellFailure(m_Begin, "no whole length of a frame");
    }
    else if (!m_Held.empty())
    {
        tellFailure(m_Begin, m_Held.size() < kStreamHead ? kNoFrameHead
                                                         : tooShort("frame", streamFrameSize(m_Held), m_Held.size()));
    }
}

void Recording::tellError(std::string_view what)
{
    JsonText line;
    line.put("{\"error\":");
    line.addText(what);
    line.put('}');
    m_Tell(line.view(), true);
}

void Recording::addText(std::string_view text)
{
    std::string bytes;
    bytes.reserve(text.size() / 2 + 1);
    for (const char c : text)
    {
        ++m_Characters;
        if (isHexSpace(c))
            continue;
        const int digit = hexDigit(c);
        if (digit < 0)
        {
            m_Decoder.add(bytes);
            tellError("character " + std::to_string(m_Characters) + " is no hexadecimal digit");
            m_IsOver = true;
            return;
        }
        if (m_High < 0)
        {
            m_High = digit;
            continue;
        }
        bytes += static_cast<char>(m_High << 4 | digit);
        m_High = -1;
    }
    m_Decoder.add(bytes);
}

void Recording::add(std::string_view content)
{
    if (m_IsOver)
        return;
    if (!m_IsDecided)
    {
        const size_t taken = std::min(kDecidingBytes - m_Undecided.size(), content.size());
        m_Undecided.append(content.substr(0, taken));
        content.remove_prefix(taken);
        m_IsText = std::all_of(m_Undecided.begin(), m_Undecided.end(),
                               [](char c) { return isHexSpace(c) || hexDigit(c) >= 0; });
        m_IsDecided = !m_IsText || m_Undecided.size() == kDecidingBytes;
        if (!m_IsDecided)
            return;
        const std::string first = std::move(m_Undecided);
        m_IsText ? addText(first) : m_Decoder.add(first);
    }
    m_IsText ? addText(content) : m_Decoder.add(content);
}

void Recording::finish()
{
    if (!m_IsDecided)
        addText(m_Undecided);
    if (m_IsOver)
        return;
    if (m_High >= 0)
        tellError("half a byte at the end");
    m_Decoder.finish();
}

} // namespace tools

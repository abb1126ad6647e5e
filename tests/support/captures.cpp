#include "tests/support/captures.h"

#include <algorithm>

namespace test::capture
{

namespace
{

std::string number(uint64_t value, int size, ByteOrder order = ByteOrder::kBig)
{
    std::string bytes;
    for (int i = 0; i < size; ++i)
        bytes += static_cast<char>(value >> 8 * i);
    if (order == ByteOrder::kBig)
        std::reverse(bytes.begin(), bytes.end());
    return bytes;
}

std::string padded(std::string bytes)
{
    bytes.resize((bytes.size() + 3) / 4 * 4);
    return bytes;
}

constexpr uint64_t kTime = 1'700'000'000;
constexpr uint64_t kLargestPacket = 262'144;

} // namespace

std::string tcp(const Ends& ends, uint32_t sequence, uint32_t acknowledged, unsigned flags, const std::string& payload)
{
    return number(ends.m_FromPort, 2) + number(ends.m_ToPort, 2) + number(sequence, 4) + number(acknowledged, 4) +
           number(0x5000 | flags, 2) + number(0xFFFF, 2) + number(0, 4) + payload;
}

std::string udp(const Ends& ends, const std::string& payload)
{
    return number(ends.m_FromPort, 2) + number(ends.m_ToPort, 2) + number(payload.size() + 8, 2) + number(0, 2) +
           payload;
}

std::string ip(const Ends& ends, int protocol, const std::string& transport)
{
    if (ends.m_From.size() == 16)
        return number(0x60000000, 4) + number(transport.size(), 2) + number(static_cast<uint64_t>(protocol), 1) +
               number(64, 1) + ends.m_From + ends.m_To + transport;
    return number(0x4500, 2) + number(transport.size() + 20, 2) + number(0, 4) + number(64, 1) +
           number(static_cast<uint64_t>(protocol), 1) + number(0, 2) + ends.m_From + ends.m_To + transport;
}

std::string tcpPacket(const Ends& ends, uint32_t sequence, uint32_t acknowledged, unsigned flags,
                      const std::string& payload)
{
    return ip(ends, 6, tcp(ends, sequence, acknowledged, flags, payload));
}

Conversation::Conversation(uint32_t clientIsn, uint32_t serverIsn) : m_Next{serverIsn, clientIsn} {}

void Conversation::add(bool toServer, unsigned flags, const std::string& payload)
{
    m_Packets.push_back(tcpPacket(toServer ? m_Ends : m_Ends.reversed(), m_Next[toServer],
                                  (flags & kAck) != 0 ? m_Next[!toServer] : 0, flags, payload));
    m_Next[toServer] += static_cast<uint32_t>(payload.size()) + ((flags & (kSyn | kFin)) != 0 ? 1 : 0);
}

void Conversation::open()
{
    add(true, kSyn, "");
    add(false, kSyn | kAck, "");
    add(true, kAck, "");
}

void Conversation::send(bool toServer, const std::string& bytes, size_t segmentSize)
{
    for (size_t at = 0; at < bytes.size(); at += segmentSize)
        add(toServer, kAck, bytes.substr(at, segmentSize));
    add(!toServer, kAck, "");
}

void Conversation::close()
{
    add(true, kFin | kAck, "");
    add(false, kFin | kAck, "");
    add(true, kAck, "");
}

std::string packetOf(const std::string& frame)
{
    return number(frame.size(), 4, ByteOrder::kLittle) + frame;
}

std::string command(int number)
{
    return packetOf(std::string("\x00\x10\x14\x00\x00\x00\x00\x02\x00\x07", 10) + static_cast<char>(number));
}

std::string commands(int first, int count)
{
    std::string all;
    for (int i = 0; i < count; ++i)
        all += command(first + i);
    return all;
}

std::string pcap(int linkType, const std::vector<std::string>& packets, ByteOrder order)
{
    std::string file = number(0xA1B2C3D4, 4, order) + number(2, 2, order) + number(4, 2, order) + number(0, 8, order) +
                       number(kLargestPacket, 4, order) + number(static_cast<uint64_t>(linkType), 4, order);
    for (size_t i = 0; i < packets.size(); ++i)
        file += number(kTime, 4, order) + number(i * 1000, 4, order) + number(packets[i].size(), 4, order) +
                number(packets[i].size(), 4, order) + packets[i];
    return file;
}

std::string pcapng(int linkType, const std::vector<std::string>& packets, ByteOrder order)
{
    const auto block = [&](uint64_t type, const std::string& body)
    {
        const std::string length = number(body.size() + 12, 4, order);
        return number(type, 4, order) + length + body + length;
    };
    std::string file = block(0x0A0D0D0A, number(0x1A2B3C4D, 4, order) + number(1, 2, order) + number(0, 2, order) +
                                             number(~uint64_t{0}, 8, order));
    file += block(1, number(static_cast<uint64_t>(linkType), 2, order) + number(0, 2, order) +
                         number(kLargestPacket, 4, order));
    for (size_t i = 0; i < packets.size(); ++i)
    {
        const uint64_t time = kTime * 1'000'000 + i * 1000;
        file += block(6, number(0, 4, order) + number(time >> 32, 4, order) + number(time & 0xFFFFFFFF, 4, order) +
                             number(packets[i].size(), 4, order) + number(packets[i].size(), 4, order) +
                             padded(packets[i]));
    }
    return file;
}

} // namespace test::capture

// Writes packets and capture files for tests: segments of TCP connections, datagrams, link layers, pcap and pcapng.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace test::capture
{

enum Flags : unsigned
{
    kFin = 1,
    kSyn = 2,
    kReset = 4,
    kAck = 16
};

struct Ends
{
    std::string m_From = std::string("\x0a\x00\x00\x01", 4);
    std::string m_To = std::string("\x0a\x00\x00\x02", 4);
    uint16_t m_FromPort = 40000;
    uint16_t m_ToPort = 7000;

    Ends reversed() const { return {m_To, m_From, m_ToPort, m_FromPort}; }
};

// The transport layer, and IP around it. Addresses of 4 bytes give IPv4, of 16 bytes IPv6.
std::string tcp(const Ends& ends, uint32_t sequence, uint32_t acknowledged, unsigned flags, const std::string& payload);
std::string udp(const Ends& ends, const std::string& payload);
std::string ip(const Ends& ends, int protocol, const std::string& transport);
std::string tcpPacket(const Ends& ends, uint32_t sequence, uint32_t acknowledged, unsigned flags,
                      const std::string& payload = "");

// One TCP connection as a list of IP packets, which a test may drop, repeat and move.
class Conversation
{
public:
    explicit Conversation(uint32_t clientIsn = 1000, uint32_t serverIsn = 0xFFFFFF00);

    void open();
    void send(bool toServer, const std::string& bytes, size_t segmentSize = 1400);
    void close();

    Ends m_Ends;
    std::vector<std::string> m_Packets;

private:
    void add(bool toServer, unsigned flags, const std::string& payload);

    uint32_t m_Next[2];
};

// A packet of commands around a stream frame.
std::string packetOf(const std::string& frame);
// A command with its fields from a number, as a packet: CCmdHostnameRequest with this m_ServerType.
std::string command(int number);
std::string commands(int first, int count);

enum class ByteOrder
{
    kLittle,
    kBig
};
// A capture file; linkType is the number in the file's head. Packet i has the time i milliseconds after 1,700,000,000.
std::string pcap(int linkType, const std::vector<std::string>& packets, ByteOrder order = ByteOrder::kLittle);
std::string pcapng(int linkType, const std::vector<std::string>& packets, ByteOrder order = ByteOrder::kLittle);
// Raw IP.
constexpr int kLinkTypeRaw = 101;

} // namespace test::capture

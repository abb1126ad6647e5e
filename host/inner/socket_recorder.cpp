#include "host/inner/socket_recorder.h"

#include "framework/inner/report.h"
#include "framework/log.h"
#include "framework/packet.h"
#include "framework/string_helper.h"
#include "framework/system.h"
#include "host/inner/made_packet.h"
#include "net/door/addresses.h"
#include "net/inner/reactor.h"
#include "net/quic/inner/udp_router.h"
#include "net/session/inner/link.h"
#include "transport/command_socket.h"
#include "transport/udp_client_socket.h"

namespace host::inner
{

namespace
{

using zet::EndCause;
using zet::inner::Endpoint;

// Of a packet that is longer.
constexpr size_t kSegment = 0x8000;
static_assert(kSegment <= kMostPacketPayload &&
              UdpClientSocket::kHeadSize + UdpClientSocket::kFrameLimit < static_cast<int>(kMostPacketPayload));

template <class Connection>
Endpoint peerOf(const Connection& connection)
{
    sockaddr_in6 address{};
    if (connection.getPeerAddressIPv6(address))
        return zet::inner::fromSystem(address);
    return Endpoint::ofV4(connection.getPeerAddress(), connection.getPeerPort());
}

std::string utf8Of(const zet::String_T<wchar_t>& text)
{
    return zet::StringHelper::wideToUtf8(text.getBuffer()).getBuffer();
}

std::string lengthBefore(size_t size, int bytes)
{
    std::string length;
    for (int i = 0; i < bytes; ++i)
        length += static_cast<char>(size >> 8 * i);
    return length;
}

} // namespace

// A connection, and what the files have of it.
struct SocketRecorder::Flow
{
    zet::TcpConnection* m_Tcp = nullptr;
    zet::UdpServer::UdpConnection* m_Udp = nullptr;
    Carried m_Carried = Carried::kStreamFrame;
    bool m_IsOpen = false;
    bool m_IsAccepted = false;
    Endpoint m_Own;
    Endpoint m_Peer;
    // The next sequence number of each direction.
    uint32_t m_Next[2] = {1, 1};
    // The file that has the beginning.
    unsigned int m_FileNumber = 0;
    std::string m_Life;
    // What was sent before the connection was established.
    std::vector<Held> m_Held;
    size_t m_HeldBytes = 0;

    bool isConnecting() const
    {
        return m_Tcp ? m_Tcp->getConnectionState() == zet::TcpConnection::kConnecting
                     : m_Udp->getConnectionState() == zet::UdpServer::UdpConnection::kConnecting;
    }
    // At the end the object may be in its destructor, so this is kept.
    void describe()
    {
        m_Life = std::string(m_IsAccepted ? "accepted from " : "connected to ") +
                 utf8Of(m_Tcp ? m_Tcp->getPeerName() : m_Udp->getPeerName());
        const auto* const secure = dynamic_cast<const zet::TcpSecureConnection*>(m_Tcp);
        if (secure && secure->isSecure())
            m_Life += ", " + utf8Of(secure->getTlsDescription());
        if (m_Udp)
            m_Life += ", over QUIC";
    }
};

template <class Call>
void SocketRecorder::guard(Call call) noexcept
{
    if (!m_IsOn)
        return;
    try
    {
        call();
        if (!m_File.error().empty())
            end(m_File.error());
    }
    catch (const std::exception& fault)
    {
        zet::inner::report([&] { end(fault.what()); });
    }
}

SocketRecorder::SocketRecorder(zet::System& system, const zet::String_T<wchar_t>& path, uint64_t fileSize, int files)
    : m_System(system), m_Path(path), m_FileSize(fileSize), m_File(path, fileSize, files)
{
}

SocketRecorder::~SocketRecorder()
{
    stop();
}

bool SocketRecorder::start()
{
    if (m_IsOn)
        return true;
    if (!startReports())
    {
        zet::Log::error(L"Recording to %s cannot start: this thread has one", m_Path);
        return false;
    }
    if (!m_File.open())
    {
        stopReports();
        zet::Log::error(L"Recording to %s cannot start: %s", m_Path,
                        zet::StringHelper::utf8ToWide(m_File.error().c_str()));
        return false;
    }
    m_IsOn = true;
    zet::Log::message(L"Recording to %s", m_Path);
    return true;
}

void SocketRecorder::end(const std::string& reason)
{
    m_IsOn = false;
    stopReports();
    for (const auto& [connection, flow] : m_Flows)
        unwatch(*connection);
    m_Flows.clear();
    if (reason.empty())
        zet::Log::message(L"Recording to %s ended: %llu packets, %llu of them dropped", m_Path, m_Counts.m_Received,
                          m_Counts.m_Dropped);
    else
        zet::Log::error(L"Recording to %s ended after %llu packets: %s", m_Path, m_Counts.m_Received,
                        zet::StringHelper::utf8ToWide(reason.c_str()));
}

void SocketRecorder::stop()
{
    guard(
        [this]
        {
            if (m_File.close(m_Counts))
                end("");
        });
}

SocketRecorder::Flow* SocketRecorder::flowOf(zet::ConnectionEvents& connection)
{
    const auto known = m_Flows.find(&connection);
    if (known != m_Flows.end())
        return known->second.get();
    auto flow = std::make_unique<Flow>();
    if (auto* const session = dynamic_cast<zet::inner::NetLink*>(&connection))
    {
        flow->m_Tcp = session;
        flow->m_Carried = Carried::kNetMessage;
    }
    else if (auto* const udp = dynamic_cast<UdpClientSocket*>(&connection))
    {
        flow->m_Udp = udp;
        flow->m_Carried = Carried::kDatagramFrame;
    }
    else if (auto* const tcp = dynamic_cast<CCommandSocket*>(&connection))
    {
        flow->m_Tcp = tcp;
    }
    else
    {
        return nullptr;
    }
    Flow* const made = m_Flows.emplace(&connection, std::move(flow)).first->second.get();
    watch(connection);
    return made;
}

void SocketRecorder::takeEnds(Flow& flow) const
{
    if (flow.m_Udp)
    {
        const auto* const link = zet::inner::UdpLink::of(*flow.m_Udp);
        flow.m_IsAccepted = link && link->isAccepted();
        flow.m_Peer = peerOf(*flow.m_Udp);
        // The port may have several addresses.
        const unsigned short port = link ? link->ownPort() : static_cast<unsigned short>(0);
        flow.m_Own = flow.m_Peer.isV4() ? Endpoint::ofV4(0, port) : Endpoint::ofV6(Endpoint().m_Bytes, port, 0);
        return;
    }
    flow.m_IsAccepted = flow.m_Tcp->getPortLimits() != nullptr;
    flow.m_Peer = peerOf(*flow.m_Tcp);
    const auto reactor = zet::inner::Reactor::of(&m_System);
    if (!reactor || flow.m_Tcp->isInvalid() || !reactor->door()->getOwnEndpoint(flow.m_Tcp->getHandle(), flow.m_Own))
        flow.m_Own = flow.m_Peer.isV4() ? Endpoint::ofV4(0, 0) : Endpoint();
}

void SocketRecorder::onEstablished(zet::ConnectionEvents& connection) noexcept
{
    guard(
        [&]
        {
            Flow* const flow = flowOf(connection);
            if (flow && !flow->m_IsOpen)
                open(*flow, "");
            else if (flow)
            {
                flow->describe();
                prepare(*flow, 0);
                addEvent(*flow, flow->m_Life);
            }
        });
}

void SocketRecorder::open(Flow& flow, const std::string& life)
{
    flow.m_IsOpen = true;
    takeEnds(flow);
    flow.describe();
    prepare(flow, 0);
    flow.m_FileNumber = m_FileNumber;
    addOpening(flow, life + flow.m_Life);
    const std::vector<Held> held = std::move(flow.m_Held);
    flow.m_HeldBytes = 0;
    for (const Held& each : held)
        addPacket(flow, each.m_Direction, each.m_Packet);
}

void SocketRecorder::onPacket(zet::ConnectionEvents& connection, Direction direction,
                              std::span<const unsigned char> packet) noexcept
{
    guard(
        [&]
        {
            Flow* const flow = flowOf(connection);
            if (!flow)
                return;
            ++m_Counts.m_Received;
            if (!flow->m_IsOpen && !flow->isConnecting())
                open(*flow, "open when the recording began: ");
            if (flow->m_IsOpen)
                return addPacket(*flow, direction, packet);
            if (flow->m_HeldBytes + packet.size() > kMostHeld)
            {
                ++m_Counts.m_Dropped;
                return;
            }
            flow->m_HeldBytes += packet.size();
            flow->m_Held.push_back({direction, {packet.begin(), packet.end()}});
        });
}

void SocketRecorder::addPacket(Flow& flow, Direction direction, std::span<const unsigned char> packet)
{
    std::vector<unsigned char> masked(packet.begin(), packet.end());
    const std::string comment = maskSecrets(flow.m_Carried, masked) ? "secrets are masked" : "";
    const std::string_view bytes(reinterpret_cast<const char*>(masked.data()), masked.size());
    if (flow.m_Udp)
    {
        const std::string whole = lengthBefore(bytes.size(), UdpClientSocket::kHeadSize).append(bytes);
        prepare(flow, whole.size());
        return addDatagram(flow, direction, whole, comment);
    }
    const std::string whole = lengthBefore(bytes.size(), zet::PacketWriter::kHeadSize).append(bytes);
    const uint64_t size = whole.size() + (whole.size() / kSegment + 1) * (PcapngFile::kPacketCost + kMostPacketHead);
    if (size > m_FileSize / 2)
    {
        // A reader sees a gap between two packets.
        ++m_Counts.m_Dropped;
        flow.m_Next[direction] += static_cast<uint32_t>(whole.size());
        return;
    }
    prepare(flow, size);
    for (size_t at = 0; at < whole.size(); at += kSegment)
        addSegment(flow, direction, kTcpAck | (at + kSegment < whole.size() ? 0 : kTcpPush),
                   std::string_view(whole).substr(at, kSegment), at == 0 ? comment : "");
}

void SocketRecorder::prepare(Flow& flow, uint64_t size)
{
    // The beginning of a connection, or an event, besides the bytes.
    constexpr uint64_t kOpening = 1024;
    if (m_File.isFullWith(size + kOpening) && m_File.rotate(m_Counts))
        ++m_FileNumber;
    if (flow.m_FileNumber != 0 && flow.m_FileNumber != m_FileNumber)
    {
        flow.m_FileNumber = m_FileNumber;
        addOpening(flow, "continues from an earlier file: " + flow.m_Life);
    }
}

void SocketRecorder::addOpening(Flow& flow, const std::string& comment)
{
    if (flow.m_Udp)
        return addEvent(flow, comment);
    const Direction client = flow.m_IsAccepted ? kReceived : kSent;
    const Direction server = flow.m_IsAccepted ? kSent : kReceived;
    // A SYN has the number before the first byte.
    --flow.m_Next[client];
    --flow.m_Next[server];
    addSegment(flow, client, kTcpSyn, "", comment);
    addSegment(flow, server, kTcpSyn | kTcpAck, "", "");
    addSegment(flow, client, kTcpAck, "", "");
}

void SocketRecorder::addEvent(Flow& flow, const std::string& comment)
{
    if (flow.m_Udp)
        addDatagram(flow, flow.m_IsAccepted ? kReceived : kSent, "", comment);
    else
        addSegment(flow, kSent, kTcpAck, "", comment);
}

void SocketRecorder::addSegment(Flow& flow, Direction direction, unsigned int flags, std::string_view payload,
                                const std::string& comment)
{
    const bool isSent = direction == kSent;
    uint32_t& next = flow.m_Next[direction];
    const uint32_t other = flow.m_Next[isSent ? kReceived : kSent];
    const TcpPlace place{next, (flags & kTcpAck) != 0 ? other : 0, flags};
    next += static_cast<uint32_t>(payload.size()) + ((flags & (kTcpSyn | kTcpFin)) != 0 ? 1 : 0);
    m_File.add(getCaptureTime(), isSent ? PcapngFile::kOutbound : PcapngFile::kInbound,
               tcpPacket(isSent ? flow.m_Own : flow.m_Peer, isSent ? flow.m_Peer : flow.m_Own, place, payload),
               comment);
}

void SocketRecorder::addDatagram(Flow& flow, Direction direction, std::string_view payload, const std::string& comment)
{
    const bool isSent = direction == kSent;
    m_File.add(getCaptureTime(), isSent ? PcapngFile::kOutbound : PcapngFile::kInbound,
               udpPacket(isSent ? flow.m_Own : flow.m_Peer, isSent ? flow.m_Peer : flow.m_Own, payload), comment);
}

void SocketRecorder::addEnd(Flow& flow, EndCause cause)
{
    const std::string reason = utf8Of(cause.getText());
    if (!flow.m_IsOpen)
    {
        m_Counts.m_Dropped += flow.m_Held.size();
        flow.m_Held.clear();
        open(flow, "not established: ");
    }
    prepare(flow, 0);
    const std::string comment = "ended: " + reason;
    if (flow.m_Udp)
        return addEvent(flow, comment);
    if (cause.m_Code == EndCause::kReset)
        return addSegment(flow, kReceived, kTcpReset | kTcpAck, "", comment);
    const Direction first = cause.m_Code == EndCause::kClosedByPeer ? kReceived : kSent;
    const Direction second = first == kSent ? kReceived : kSent;
    addSegment(flow, first, kTcpFin | kTcpAck, "", comment);
    addSegment(flow, second, kTcpFin | kTcpAck, "", "");
    addSegment(flow, first, kTcpAck, "", "");
}

void SocketRecorder::onWatchedEnd(const zet::ConnectionEvents& connection, EndCause cause) noexcept
{
    guard(
        [&]
        {
            const auto found = m_Flows.find(&connection);
            if (found == m_Flows.end())
                return;
            const std::unique_ptr<Flow> flow = std::move(found->second);
            m_Flows.erase(found);
            addEnd(*flow, cause);
        });
}

} // namespace host::inner

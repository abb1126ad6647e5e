#include "net/quic/inner/router.h"

#include "framework/time.h"
#include "net/door/addresses.h"

#include <gnutls/crypto.h>

#include <cstring>

namespace zet::inner
{

namespace
{

// The bits of a packet's first byte.
constexpr unsigned char kLongHead = 0x80;
constexpr unsigned char kFixedBit = 0x40;
constexpr unsigned char kTypeBits = 0x30;
constexpr unsigned char kInitial = 0x00;

// How long a token is valid.
constexpr QuicTime kTokenTime = 10 * NGTCP2_SECONDS;

// The header that all versions of QUIC share.
struct LongHead
{
    bool read(const unsigned char* data, size_t size)
    {
        if (size < 7)
            return false;
        m_Version = static_cast<uint32_t>(data[1]) << 24 | static_cast<uint32_t>(data[2]) << 16 |
                    static_cast<uint32_t>(data[3]) << 8 | data[4];
        m_TargetSize = data[5];
        m_Target = data + 6;
        if (size < 7 + m_TargetSize)
            return false;
        m_SourceSize = data[6 + m_TargetSize];
        m_Source = data + 7 + m_TargetSize;
        return size >= 7 + m_TargetSize + m_SourceSize;
    }

    uint32_t m_Version = 0;
    size_t m_TargetSize = 0;
    const unsigned char* m_Target = nullptr;
    size_t m_SourceSize = 0;
    const unsigned char* m_Source = nullptr;
};

} // namespace

void QuicRouter::receive()
{
    m_ReceiveBegin = getTimeTick();
    UdpPort::Datagram datagram;
    for (int total = 0; m_Server && total < UdpServer::kDatagramsPerTick &&
                        getTimeTick() - m_ReceiveBegin < UdpServer::kReceiveTime && m_Port->receive(datagram);
         ++total)
    {
        if (datagram.m_Size < 0)
            continue;
        if (!route(datagram))
        {
            m_Port->putBack();
            return;
        }
        count(datagram);
    }
}

void QuicRouter::deliver(const Endpoint& peer, const void* data, int size)
{
    if (!m_Server || size > UdpPort::kMostBytes)
        return;
    const UdpPort::Datagram datagram{&peer, Endpoint(), static_cast<const unsigned char*>(data), size};
    route(datagram);
    count(datagram);
}

void QuicRouter::count(const UdpPort::Datagram& datagram)
{
    ++m_Traffic.m_DatagramsIn;
    m_Traffic.m_BytesIn += static_cast<unsigned long long>(datagram.m_Size);
}

bool QuicRouter::route(const UdpPort::Datagram& datagram)
{
    const unsigned char* const data = datagram.m_Data;
    const int size = datagram.m_Size;
    if (size > 0 && (data[0] & kLongHead))
        return routeLong(datagram);
    QuicLink* const link = static_cast<size_t>(size) > QuicId::kSize ? find(data + 1) : nullptr;
    if (link)
        link->read(datagram);
    else
        giveUserData(datagram);
    return true;
}

bool QuicRouter::routeLong(const UdpPort::Datagram& datagram)
{
    const unsigned char* const data = datagram.m_Data;
    const int size = datagram.m_Size;
    LongHead head;
    const bool isHead = head.read(data, static_cast<size_t>(size));
    const bool isOurs = isHead && (head.m_Version == NGTCP2_PROTO_VER_V1 || head.m_Version == 0);
    QuicLink* const link = isOurs && head.m_TargetSize == QuicId::kSize ? find(head.m_Target) : nullptr;
    if (link)
    {
        link->read(datagram);
    }
    else if (!isHead || !(data[0] & kFixedBit))
    {
        giveUserData(datagram);
    }
    else if (isOurs)
    {
        if (head.m_Version != 0 && (data[0] & kTypeBits) == kInitial)
            return greet(datagram);
    }
    else if (size >= NGTCP2_MAX_UDP_PAYLOAD_SIZE)
    {
        sendVersions(datagram);
    }
    else
    {
        giveUserData(datagram);
    }
    return true;
}

void QuicRouter::sendVersions(const UdpPort::Datagram& datagram)
{
    LongHead head;
    head.read(datagram.m_Data, static_cast<size_t>(datagram.m_Size));
    unsigned char* const out = room();
    if (!out || ++m_VersionAnswers > UdpServer::kGreetingsPerTick)
        return;
    const uint32_t version = NGTCP2_PROTO_VER_V1;
    const auto written =
        ngtcp2_pkt_write_version_negotiation(out, UdpPort::kMostBytes, kFixedBit, head.m_Source, head.m_SourceSize,
                                             head.m_Target, head.m_TargetSize, &version, 1);
    if (written > 0)
        post(*datagram.m_Peer, static_cast<size_t>(written), datagram.m_Local);
}

bool QuicRouter::greet(const UdpPort::Datagram& datagram)
{
    const Endpoint& from = *datagram.m_Peer;
    const SystemAddress sender(from);
    ngtcp2_pkt_hd head;
    const int result = ngtcp2_accept(&head, datagram.m_Data, static_cast<size_t>(datagram.m_Size));
    if ((result != 0 && result != NGTCP2_ERR_RETRY) || settings().m_ConnectionLimit <= 0)
        return true;
    if (head.token.len == 0)
    {
        if (++m_Greetings <= UdpServer::kGreetingsPerTick)
            sendRetry(datagram, head);
        return true;
    }
    ngtcp2_cid origin;
    // A packet that does not prove its sender's address gets no reply.
    if (head.dcid.datalen != QuicId::kSize || ++m_TokenChecks > UdpServer::kGreetingsPerTick ||
        head.token.base[0] != NGTCP2_CRYPTO_TOKEN_MAGIC_RETRY ||
        ngtcp2_crypto_verify_retry_token(&origin, head.token.base, head.token.len, m_Secret, sizeof m_Secret,
                                         head.version, &sender.m_Plain, sender.m_Size, &head.dcid, kTokenTime,
                                         now()) != 0)
        return true;
    if (!mayAdmit())
        return false;
    ++m_Admissions;
    if (!hasRoomFor(from))
    {
        m_Server->noteRefused(from);
        refuse(datagram, head);
    }
    else
        admit(datagram, head, origin);
    return true;
}

void QuicRouter::sendRetry(const UdpPort::Datagram& datagram, const ngtcp2_pkt_hd& head)
{
    const SystemAddress to(*datagram.m_Peer);
    unsigned char* const out = room();
    if (!out)
        return;
    ngtcp2_cid self;
    self.datalen = QuicId::kSize;
    unsigned char token[NGTCP2_CRYPTO_MAX_RETRY_TOKENLEN];
    if (gnutls_rnd(GNUTLS_RND_RANDOM, self.data, self.datalen) < 0)
        return;
    const auto size = ngtcp2_crypto_generate_retry_token(token, m_Secret, sizeof m_Secret, head.version, &to.m_Plain,
                                                         to.m_Size, &self, &head.dcid, now());
    if (size < 0)
        return;
    const auto written = ngtcp2_crypto_write_retry(out, UdpPort::kMostBytes, head.version, &head.scid, &self,
                                                   &head.dcid, token, static_cast<size_t>(size));
    if (written > 0)
        post(*datagram.m_Peer, static_cast<size_t>(written), datagram.m_Local);
}

void QuicRouter::refuse(const UdpPort::Datagram& datagram, const ngtcp2_pkt_hd& head)
{
    unsigned char* const out = room();
    if (!out)
        return;
    const auto written = ngtcp2_crypto_write_connection_close(out, UdpPort::kMostBytes, head.version, &head.scid,
                                                              &head.dcid, NGTCP2_CONNECTION_REFUSED, nullptr, 0);
    if (written > 0)
        post(*datagram.m_Peer, static_cast<size_t>(written), datagram.m_Local);
}

void QuicRouter::admit(const UdpPort::Datagram& datagram, const ngtcp2_pkt_hd& head, const ngtcp2_cid& origin)
{
    const Endpoint from = *datagram.m_Peer;
    QuicLink& link = keep(std::make_unique<QuicLink>(*this));
    bool isCounted = false;
    const auto begin = [&]
    {
        m_Addresses.add(from);
        isCounted = true;
        return link.openServer(from, head, origin);
    };
    if (!open(link, begin))
    {
        if (isCounted)
            m_Addresses.remove(from);
        return;
    }
    ++m_Count;
    ++m_VisitorCount;
    link.read(datagram);
}

bool QuicRouter::mayAdmit() const
{
    if (m_Admissions == 0)
        return true;
    const int steps = limits().m_HandshakeSteps;
    const unsigned int time = limits().m_HandshakeTime;
    return m_Admissions < UdpServer::kAdmissionsPerTick && (steps <= 0 || m_Admissions < steps) &&
           (time == 0 || getTimeTick() - m_ReceiveBegin < time);
}

bool QuicRouter::hasRoomFor(const Endpoint& from) const
{
    return m_VisitorCount < settings().m_ConnectionLimit &&
           (limits().m_Connections <= 0 || m_VisitorCount < limits().m_Connections) &&
           m_Addresses.hasSpace(from, limits());
}

} // namespace zet::inner

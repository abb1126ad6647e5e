#include "net/quic/inner/link.h"

#include "net/door/addresses.h"
#include "net/quic/inner/router.h"

#include <algorithm>
#include <cstring>

namespace zet::inner
{

namespace
{

using Connection = UdpServer::UdpConnection;

// Packets per turn, so that other connections of the tick have their turn in between. Pacing counts from turn to turn.
constexpr int kPacketsPerTurn = 128;
constexpr size_t kPiecesPerPacket = 4;

} // namespace

void QuicLink::onConfirmed(size_t size)
{
    m_Output.consume(size, m_Router.pool());
    m_UnderWay -= size;
    if (m_UnderWay == 0)
        m_NextBlock = nullptr;
    m_HasConfirmed = true;
    wake(kTickOwner);
}

size_t QuicLink::gather(ngtcp2_vec* pieces, size_t most)
{
    size_t count = 0;
    Block* block = m_NextBlock ? m_NextBlock : m_Output.front();
    int from = m_NextBlock ? m_NextByte : block ? block->m_Begin : 0;
    for (; block && count < most; block = block->m_Next, from = block ? block->m_Begin : 0)
        if (from < block->m_End)
            pieces[count++] = {block->bytes() + from, static_cast<size_t>(block->m_End - from)};
    return count;
}

void QuicLink::advance(size_t size)
{
    if (size == 0)
        return;
    if (!m_NextBlock)
    {
        m_NextBlock = m_Output.front();
        m_NextByte = m_NextBlock->m_Begin;
    }
    m_UnderWay += size;
    while (size > 0)
    {
        if (m_NextByte == m_NextBlock->m_End)
        {
            m_NextBlock = m_NextBlock->m_Next;
            m_NextByte = m_NextBlock->m_Begin;
        }
        const size_t step = std::min(size, static_cast<size_t>(m_NextBlock->m_End - m_NextByte));
        m_NextByte += static_cast<int>(step);
        size -= step;
    }
}

Endpoint QuicLink::peerOf(const ngtcp2_path& path)
{
    const auto* const address = path.remote.addr;
    return address->sa_family == AF_INET6 ? fromSystem(*reinterpret_cast<const sockaddr_in6*>(address))
                                          : fromSystem(*reinterpret_cast<const sockaddr_in*>(address));
}

bool QuicLink::prepareStream()
{
    if (m_Stream < 0 && !m_IsServer && m_IsStanding &&
        ngtcp2_conn_open_bidi_stream(m_Connection, &m_Stream, nullptr) != 0)
        m_Stream = -1;
    return m_Stream >= 0 && !m_IsFull;
}

void QuicLink::write()
{
    if (m_Lookup && m_IsFound)
        openNamed();
    if (!m_Connection)
        return;
    const QuicTime now = m_Router.now();
    int packets = 0;
    for (; packets < kPacketsPerTurn; ++packets)
    {
        unsigned char* const room = m_Router.room();
        if (!room)
            break;
        ngtcp2_vec pieces[kPiecesPerPacket];
        const size_t count = prepareStream() ? gather(pieces, kPiecesPerPacket) : 0;
        ngtcp2_path_storage path;
        ngtcp2_path_storage_zero(&path);
        ngtcp2_pkt_info info{};
        ngtcp2_ssize taken = -1;
        const auto size =
            ngtcp2_conn_writev_stream(m_Connection, &path.path, &info, room, UdpPort::kMostBytes, &taken,
                                      NGTCP2_WRITE_STREAM_FLAG_NONE, count > 0 ? m_Stream : -1, pieces, count, now);
        if (taken > 0)
            advance(static_cast<size_t>(taken));
        if (size == NGTCP2_ERR_STREAM_DATA_BLOCKED)
        {
            m_IsFull = true;
            continue;
        }
        // The peer has stopped reading the stream; this result is the only report of it.
        if (size == NGTCP2_ERR_STREAM_SHUT_WR || size == NGTCP2_ERR_STREAM_NOT_FOUND)
        {
            finish(Connection::kBroken, kCutOff, {EndCause::kCutOff, 0});
            return;
        }
        if (size < 0)
        {
            endByFault(static_cast<int>(size));
            return;
        }
        if (size == 0)
        {
            endTurn(now);
            return;
        }
        m_Router.post(peerOf(path.path), static_cast<size_t>(size), m_Local);
    }
    endTurn(now);
    wake(kWrite);
}

void QuicLink::endTurn(QuicTime now)
{
    ngtcp2_conn_update_pkt_tx_time(m_Connection, now);
    // ngtcp2 sends up to this much ahead of its pacing, so a shorter pause holds nothing back. Its timer would end the
    // System's sleep after almost every packet. This drops it: nothing else is due.
    constexpr QuicTime kAhead = NGTCP2_MILLISECONDS;
    if (const QuicTime expiry = ngtcp2_conn_get_expiry(m_Connection); expiry > now && expiry <= now + kAhead)
        ngtcp2_conn_handle_expiry(m_Connection, now);
    m_Router.schedule(*this);
}

unsigned short QuicLink::ownPort() const
{
    return m_Router.getPort();
}

unsigned long long QuicLink::roundTripTime() const
{
    if (!m_Connection)
        return 0;
    ngtcp2_conn_stat figures;
    ngtcp2_conn_get_conn_stat(m_Connection, &figures);
    // Before the first sample it is an assumed time.
    constexpr ngtcp2_duration kMicrosecond = NGTCP2_MICROSECONDS;
    return figures.first_rtt_sample_ts == UINT64_MAX ? 0 : figures.smoothed_rtt / kMicrosecond;
}

unsigned long long QuicLink::lostPackets() const
{
    return m_Connection && m_Stream >= 0 ? ngtcp2_conn_get_stream_loss_count(m_Connection, m_Stream) : 0;
}

} // namespace zet::inner

#include "net/quic/inner/link.h"

#include "net/door/addresses.h"
#include "net/quic/inner/calls.h"
#include "net/quic/inner/router.h"

#include <gnutls/crypto.h>

#include <algorithm>
#include <cstring>

namespace zet::inner
{

namespace
{

using Connection = UdpServer::UdpConnection;

// Of this many late packets of a peer, the 1st, 2nd, 4th, 8th and so on get the close frame again.
constexpr unsigned int kMostLatePackets = 1024;
// Connection ids that a peer may provide in advance. A path that a moving peer has left keeps its id for a while; with
// a limit of two, the third move within a second would find none left.
constexpr uint64_t kPeerIds = 8;

// The form of a path that ngtcp2 takes.
struct Path : ngtcp2_path
{
    Path(const Endpoint& own, const Endpoint& peer) : ngtcp2_path{}, m_Own(own), m_Peer(peer)
    {
        local = {&m_Own.m_Plain, m_Own.m_Size};
        remote = {&m_Peer.m_Plain, m_Peer.m_Size};
    }
    Path(const Path&) = delete;
    Path& operator=(const Path&) = delete;

    SystemAddress m_Own;
    SystemAddress m_Peer;
};

QuicTime nanoseconds(unsigned int milliseconds)
{
    return milliseconds * NGTCP2_MILLISECONDS;
}

ngtcp2_settings settingsOf(const UdpServer::Settings& settings, QuicTime now)
{
    ngtcp2_settings chosen;
    ngtcp2_settings_default(&chosen);
    chosen.initial_ts = now;
    chosen.handshake_timeout = nanoseconds(settings.m_ConnectTimeout);
    // Packets of 1,200 bytes pass every path, so there is nothing to probe for. Path MTU discovery remains enabled:
    // ngtcp2 asserts that it is when a peer returns to an earlier path. It must also have nothing to find: ngtcp2
    // asserts then that none is running.
    chosen.max_tx_udp_payload_size = NGTCP2_MAX_UDP_PAYLOAD_SIZE;
    return chosen;
}

// The size of the packets with a long header at the start of a datagram; the whole size if ngtcp2 would not read on.
size_t longPackets(const unsigned char* data, size_t size)
{
    size_t at = 0;
    while (at < size && (data[at] & 0x80))
    {
        ngtcp2_pkt_hd head;
        const auto read = ngtcp2_pkt_decode_hd_long(&head, data + at, size - at);
        if (read < 0 || head.type == NGTCP2_PKT_RETRY || head.type == NGTCP2_PKT_VERSION_NEGOTIATION)
            return size;
        const size_t whole = static_cast<size_t>(read) + head.len;
        if (whole > size - at)
            return size;
        at += whole;
    }
    return at;
}

ngtcp2_transport_params paramsOf(const UdpServer::Settings& settings, bool isServer)
{
    ngtcp2_transport_params params;
    ngtcp2_transport_params_default(&params);
    const auto window = static_cast<uint64_t>(std::max(settings.m_InputLimit, 1024));
    params.initial_max_streams_bidi = isServer ? 1 : 0;
    params.initial_max_stream_data_bidi_local = window;
    params.initial_max_stream_data_bidi_remote = window;
    params.initial_max_data = window;
    params.max_idle_timeout = nanoseconds(settings.m_IdleTimeout);
    params.max_udp_payload_size = UdpPort::kMostBytes;
    params.active_connection_id_limit = kPeerIds;
    return params;
}

} // namespace

QuicLink::~QuicLink()
{
    dropSession();
    if (m_Connection)
        ngtcp2_conn_del(m_Connection);
}

bool QuicLink::open(gnutls_session_t session)
{
    m_Session = session;
    if (!session)
        return false;
    ngtcp2_conn_set_tls_native_handle(m_Connection, session);
    ngtcp2_conn_set_keep_alive_timeout(m_Connection, nanoseconds(m_Router.settings().m_KeepAlive));
    return true;
}

bool QuicLink::beginClient(const char* name, const Uuid& id)
{
    m_Name = name;
    m_Id = id;
    return m_Output.write(&id, sizeof id, m_Router.pool());
}

bool QuicLink::openClient(const Endpoint& peer)
{
    m_Peer = peer;
    ngtcp2_cid self, other;
    other.datalen = QuicId::kSize;
    if (!m_Router.makeId(*this, self) || gnutls_rnd(GNUTLS_RND_RANDOM, other.data, other.datalen) < 0)
        return false;
    const auto calls = QuicCalls::all();
    const auto settings = settingsOf(m_Router.settings(), m_Router.now());
    const auto params = paramsOf(m_Router.settings(), false);
    const Path path(m_Router.getAddress(), m_Peer);
    if (ngtcp2_conn_client_new(&m_Connection, &other, &self, &path, NGTCP2_PROTO_VER_V1, &calls, &settings, &params,
                               nullptr, this) != 0)
    {
        m_Connection = nullptr;
        return false;
    }
    m_Ref = {[](ngtcp2_crypto_conn_ref* ref) { return static_cast<QuicLink*>(ref->user_data)->m_Connection; }, this};
    return open(m_Router.tls().openClient(m_Ref, m_Credentials));
}

bool QuicLink::openServer(const Endpoint& peer, const ngtcp2_pkt_hd& head, const ngtcp2_cid& origin)
{
    m_Peer = peer;
    m_Origin = peer;
    m_IsServer = true;
    ngtcp2_cid self;
    if (!m_Router.makeId(*this, self))
        return false;
    // Until the peer knows that id, it uses the one of the Retry packet.
    m_Router.addId(*this, head.dcid);
    const auto calls = QuicCalls::all();
    auto settings = settingsOf(m_Router.settings(), m_Router.now());
    settings.token = head.token;
    auto params = paramsOf(m_Router.settings(), true);
    params.original_dcid = origin;
    params.retry_scid = head.dcid;
    params.retry_scid_present = 1;
    const Path path(m_Router.getAddress(), m_Peer);
    if (ngtcp2_conn_server_new(&m_Connection, &head.scid, &self, &path, head.version, &calls, &settings, &params,
                               nullptr, this) != 0)
    {
        m_Connection = nullptr;
        return false;
    }
    m_Ref = {[](ngtcp2_crypto_conn_ref* ref) { return static_cast<QuicLink*>(ref->user_data)->m_Connection; }, this};
    m_Deadline = m_Router.now() + nanoseconds(m_Router.settings().m_ConnectTimeout);
    return open(m_Router.tls().openServer(m_Ref, m_Credentials));
}

void QuicLink::wake(unsigned char pending)
{
    m_Router.wake(*this, pending);
}

void QuicLink::consume(int size)
{
    if (size <= 0)
        return;
    m_Input.consume(size);
    if (m_Input.size() == 0)
        m_Input.drop(&m_Router.pool());
    if (isOver())
        return;
    ngtcp2_conn_extend_max_stream_offset(m_Connection, m_Stream, static_cast<uint64_t>(size));
    ngtcp2_conn_extend_max_offset(m_Connection, static_cast<uint64_t>(size));
    wake(kWrite);
}

bool QuicLink::send(const void* data, int size)
{
    if (isOver() || m_IsLingering || !m_Output.write(data, size, m_Router.pool()))
        return false;
    wake(kWrite);
    return true;
}

void QuicLink::close()
{
    if (!m_Router.isOpen())
        return;
    m_Input.drop(&m_Router.pool());
    if (isOver())
    {
        m_Router.schedule(*this);
        return;
    }
    if (!m_IsStanding || m_Output.size() == 0)
    {
        finish(Connection::kDown, m_Output.size() == 0 ? kClosed : kCutOff, {EndCause::kClosedHere, 0});
        return;
    }
    m_IsLingering = true;
    m_Deadline = m_Router.now() + nanoseconds(m_Router.settings().m_LingerTime);
    wake(kWrite);
    m_Router.schedule(*this);
}

void QuicLink::onAccepted()
{
    m_Deadline = kNever;
    m_Router.schedule(*this);
}

void QuicLink::settle()
{
    m_Input.settle(m_Router.pool());
}

void QuicLink::read(const UdpPort::Datagram& datagram)
{
    if (isOver())
    {
        // The close frame was lost or has not arrived yet.
        if (!m_ClosePacket.empty() && m_LatePackets < kMostLatePackets && (m_LatePackets & (m_LatePackets + 1)) == 0)
            if (unsigned char* room = m_Router.room())
            {
                std::memcpy(room, m_ClosePacket.data(), m_ClosePacket.size());
                m_Router.post(m_Peer, m_ClosePacket.size(), m_Local);
            }
        ++m_LatePackets;
        return;
    }
    if (m_IsServer && !datagram.m_Local.isAny())
        m_Local = datagram.m_Local;
    const auto size = static_cast<size_t>(datagram.m_Size);
    if (m_IsServer || m_IsHandshakeSent)
    {
        feed(datagram, 0, size);
        return;
    }
    // A client's ngtcp2 cannot process packets after the handshake before it has sent its own part: they wait for that,
    // or are dropped if that is not due yet, and the peer repeats them.
    const size_t first = longPackets(datagram.m_Data, size);
    if (first > 0)
        feed(datagram, 0, first);
    if (first == size || isOver() || !m_IsStanding)
        return;
    write();
    if (m_IsHandshakeSent && !isOver())
        feed(datagram, first, size - first);
}

void QuicLink::feed(const UdpPort::Datagram& datagram, size_t from, size_t size)
{
    const bool stood = m_IsStanding;
    const Path path(m_Router.getAddress(), *datagram.m_Peer);
    const ngtcp2_pkt_info info{};
    // Any packet may raise the flow control limit of the stream or of the connection; ngtcp2 does not report the
    // latter.
    m_IsFull = false;
    const int result = [&]
    {
        const QuicCalls::Reading reading(*this);
        return ngtcp2_conn_read_pkt(m_Connection, &path, &info, datagram.m_Data + from, size, m_Router.now());
    }();
    if (m_IsStanding && !stood)
    {
        m_HasStood = true;
        if (m_IsServer && m_Router.isOpen())
            m_Router.countHandshake();
        dropSession();
        wake(kTickOwner);
    }
    endRead(result);
    // Even if nothing is to be sent, the next expiry may have changed.
    if (!isOver())
        wake(kWrite);
}

void QuicLink::dropSession()
{
    if (!m_Session)
        return;
    if (m_Connection)
        ngtcp2_conn_set_tls_native_handle(m_Connection, nullptr);
    gnutls_deinit(std::exchange(m_Session, nullptr));
    m_Credentials.reset();
}

QuicTime QuicLink::getExpiry() const
{
    if (!m_Connection)
        return m_Owner && !m_Lookup ? kNever : m_Deadline;
    return std::min(ngtcp2_conn_get_expiry(m_Connection), m_Deadline);
}

void QuicLink::onExpiry()
{
    if (isOver())
        return;
    const QuicTime now = m_Router.now();
    if (m_Deadline <= now)
    {
        // A lookup without a result, a peer that has not sent its id, a pending connection that was not accepted, or a
        // closed connection whose peer has not confirmed everything.
        const EndCause late{EndCause::kTimedOut, m_IsLingering ? EndCause::kLinger : EndCause::kAnswer};
        if (m_Lookup)
            finish(Connection::kConnectFailed, kCutOff, {EndCause::kNotResolved, 0});
        else
            finish(Connection::kBroken, kCutOff, late);
        return;
    }
    if (!m_Connection)
        return;
    const int result = ngtcp2_conn_handle_expiry(m_Connection, now);
    if (result != 0)
        endByFault(result);
    else
        wake(kWrite);
}

int QuicLink::onStreamData(const unsigned char* data, size_t size, bool isLast)
{
    m_IsPeerDone = m_IsPeerDone || isLast;
    // For an empty frame data is null.
    if (size == 0)
        return 0;
    if (m_IsServer && m_IdRead < sizeof m_Id)
    {
        const size_t count = std::min(size, sizeof m_Id - m_IdRead);
        std::memcpy(reinterpret_cast<unsigned char*>(&m_Id) + m_IdRead, data, count);
        m_IdRead += count;
        data += count;
        size -= count;
        ngtcp2_conn_extend_max_stream_offset(m_Connection, m_Stream, count);
        ngtcp2_conn_extend_max_offset(m_Connection, count);
        // The time limit until it is accepted keeps running.
        if (m_IdRead == sizeof m_Id)
            m_Router.announce(*this);
    }
    // A closed connection discards input; the peer's flow control window is soon used up.
    if (size == 0 || m_IsLingering)
        return 0;
    while (size > 0)
    {
        const int room = m_Input.prepare(m_Router.pool());
        if (room <= 0)
            return NGTCP2_ERR_CALLBACK_FAILURE;
        const size_t count = std::min(size, static_cast<size_t>(room));
        std::memcpy(m_Input.end(), data, count);
        m_Input.grow(static_cast<int>(count));
        data += count;
        size -= count;
    }
    m_HasReceived = true;
    wake(kTickOwner);
    return 0;
}

} // namespace zet::inner

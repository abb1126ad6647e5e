#include "net/quic/inner/link.h"

#include "net/inner/end_counts.h"
#include "net/quic/inner/router.h"

#include <algorithm>
#include <cstring>
#include <limits>

namespace zet::inner
{

namespace
{

using Connection = UdpServer::UdpConnection;

// Milliseconds that the close frame is kept for late packets.
constexpr unsigned int kShortestRest = 1000;
constexpr unsigned int kLongestRest = 30000;

// The transport error codes of a TLS alert are this one and the next 255.
constexpr uint64_t kAlerts = 0x100;
constexpr uint64_t kAlertCount = 0x100;

EndCause causeOfTransport(uint64_t code)
{
    return {EndCause::kQuic, static_cast<unsigned short>(std::min<uint64_t>(code, 0xFFFF))};
}

// The cause that a close frame of the peer gives.
EndCause causeOfClose(const ngtcp2_connection_close_error& reason)
{
    if (reason.type == NGTCP2_CONNECTION_CLOSE_ERROR_CODE_TYPE_APPLICATION)
        return {reason.error_code == QuicLink::kClosed ? EndCause::kClosedByPeer : EndCause::kCutOff, 0};
    if (reason.error_code == NGTCP2_CONNECTION_REFUSED)
        return {EndCause::kRefused, 0};
    if (reason.error_code >= kAlerts && reason.error_code < kAlerts + kAlertCount)
        return {EndCause::kTls, static_cast<unsigned short>(reason.error_code - kAlerts)};
    return causeOfTransport(reason.error_code);
}

} // namespace

void QuicLink::endRead(int result)
{
    const auto failed = m_IsStanding ? Connection::kBroken : Connection::kConnectFailed;
    if (result == NGTCP2_ERR_DRAINING)
    {
        ngtcp2_connection_close_error reason;
        ngtcp2_conn_get_connection_close_error(m_Connection, &reason);
        const EndCause cause = causeOfClose(reason);
        drop(cause.m_Code == EndCause::kClosedByPeer ? Connection::kClosedByPeer : failed, cause);
    }
    else if (result == NGTCP2_ERR_DROP_CONN || result == NGTCP2_ERR_RETRY)
    {
        drop(failed, causeOfTransport(NGTCP2_PROTOCOL_VIOLATION));
    }
    else if (result != 0)
    {
        endByFault(result);
    }
    else if (m_IsCut)
    {
        // The peer has reset the stream, so bytes are lost.
        finish(Connection::kBroken, kCutOff, {EndCause::kCutOff, 0});
    }
    else if (m_IsPeerDone)
    {
        // This library never ends the stream. A peer of another implementation that does has nothing more to send.
        finish(Connection::kClosedByPeer, kClosed, {EndCause::kClosedByPeer, 0});
    }
    else if (m_IsLingering && m_Output.size() == 0)
    {
        finish(Connection::kDown, kClosed, {EndCause::kClosedHere, 0});
    }
}

void QuicLink::endByFault(int fault)
{
    const auto state = m_IsStanding ? Connection::kBroken : Connection::kConnectFailed;
    if (fault == NGTCP2_ERR_IDLE_CLOSE || fault == NGTCP2_ERR_HANDSHAKE_TIMEOUT)
        return drop(state, {EndCause::kTimedOut, m_IsStanding ? EndCause::kInput : EndCause::kAnswer});
    if (ngtcp2_err_is_fatal(fault))
        return drop(state, {EndCause::kNoMemory, 0});
    ngtcp2_connection_close_error reason;
    ngtcp2_connection_close_error_default(&reason);
    const uint8_t alert = m_Alert != 0 ? m_Alert : ngtcp2_conn_get_tls_alert(m_Connection);
    if (fault == NGTCP2_ERR_CRYPTO && alert != 0)
        ngtcp2_connection_close_error_set_transport_error_tls_alert(&reason, alert, nullptr, 0);
    else
        ngtcp2_connection_close_error_set_transport_error_liberr(&reason, fault, nullptr, 0);
    keepClosePacket(reason);
    const bool isTls = fault == NGTCP2_ERR_CRYPTO;
    drop(state, isTls ? EndCause{EndCause::kTls, 0} : causeOfTransport(reason.error_code));
}

void QuicLink::finish(Connection::ConnectionState state, Code code, EndCause cause)
{
    if (isOver())
        return;
    if (!m_Connection)
        return drop(state, cause);
    ngtcp2_connection_close_error reason;
    ngtcp2_connection_close_error_default(&reason);
    ngtcp2_connection_close_error_set_application_error(&reason, code, nullptr, 0);
    keepClosePacket(reason);
    drop(state, cause);
}

void QuicLink::keepClosePacket(const ngtcp2_connection_close_error& reason)
{
    unsigned char packet[UdpPort::kMostBytes];
    ngtcp2_path_storage path;
    ngtcp2_path_storage_zero(&path);
    ngtcp2_pkt_info info{};
    const auto size = ngtcp2_conn_write_connection_close(m_Connection, &path.path, &info, packet, sizeof packet,
                                                         &reason, m_Router.now());
    if (size <= 0)
        return;
    try
    {
        m_ClosePacket.assign(packet, packet + size);
    }
    catch (const std::bad_alloc&)
    {
        // Then the close frame is sent once and not repeated.
    }
    if (path.path.remote.addrlen > 0)
        m_Peer = peerOf(path.path);
    if (unsigned char* room = m_Router.room())
    {
        std::memcpy(room, packet, static_cast<size_t>(size));
        m_Router.post(m_Peer, static_cast<size_t>(size), m_Local);
    }
}

void QuicLink::drop(Connection::ConnectionState state, EndCause cause)
{
    // The close frame may be lost; then the peer continues until its idle timeout. A peer that has closed itself does
    // not.
    const bool isKept = !m_ClosePacket.empty() && m_Router.hasSpaceForClosed();
    const unsigned int idle = m_Router.settings().m_IdleTimeout;
    const QuicTime probes = m_Connection ? 3 * ngtcp2_conn_get_pto(m_Connection) : 0;
    const QuicTime rest = isKept ? std::clamp(idle, kShortestRest, kLongestRest) * NGTCP2_MILLISECONDS : probes;
    m_End = state;
    noteCause(cause);
    m_Deadline = m_Router.now() + rest;
    dropSession();
    m_Lookup.reset();
    m_Router.addLost(lostPackets());
    if (m_Connection)
        ngtcp2_conn_del(std::exchange(m_Connection, nullptr));
    m_Output.drop(&m_Router.pool());
    m_NextBlock = nullptr;
    m_UnderWay = 0;
    if (!m_Owner)
        m_Input.drop(&m_Router.pool());
    m_Router.onOver(*this);
    wake(kTickOwner);
}

} // namespace zet::inner

#include "net/quic/inner/udp_router.h"

namespace zet::inner
{

void UdpLink::setOwner(UdpServer::UdpConnection& owner, UdpServer::UdpConnection::ConnectionState state, const Uuid& id,
                       const Endpoint& peer)
{
    m_Owner = &owner;
    owner.m_Link = this;
    owner.m_State = state;
    owner.m_IsEndTold = false;
    owner.m_HasBegun = true;
    if (state == UdpServer::UdpConnection::kConnecting)
        owner.beginAttempt();
    else
        owner.beginEvents();
    owner.m_ConnectionId = id;
    setPeer(peer);
}

void UdpLink::setPeer(const Endpoint& peer)
{
    if (!m_Owner)
        return;
    std::memcpy(m_Owner->m_PeerBytes, peer.m_Bytes, sizeof peer.m_Bytes);
    m_Owner->m_PeerScope = peer.m_Scope;
    m_Owner->m_PeerPort = peer.m_Port;
}

void UdpLink::leaveOwner(UdpServer::UdpConnection::ConnectionState state)
{
    if (!m_Owner)
        return;
    m_Owner->m_Link = nullptr;
    m_Owner->m_State = state;
    m_Owner->noteCause(m_Cause);
    if (m_IsEndLogged)
        m_Owner->setEndLogged();
    m_Owner = nullptr;
}

void UdpLink::breakOwner()
{
    if (!m_Owner)
        return;
    UdpServer::UdpConnection& owner = *m_Owner;
    leaveOwner(UdpServer::UdpConnection::kBroken);
    owner.reportEnd();
}

} // namespace zet::inner

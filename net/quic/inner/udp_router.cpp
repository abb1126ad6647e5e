#include "net/quic/inner/udp_router.h"

namespace zet::inner
{

void UdpLink::setOwner(UdpServer::UdpConnection& owner, UdpServer::UdpConnection::ConnectionState state, const Uuid& id,
                       unsigned int address, unsigned short port)
{
    m_Owner = &owner;
    owner.m_Link = this;
    owner.m_State = state;
    owner.m_IsEndTold = false;
    owner.m_HasBegun = true;
    owner.m_ConnectionId = id;
    setPeer(address, port);
}

void UdpLink::setPeer(unsigned int address, unsigned short port)
{
    if (!m_Owner)
        return;
    m_Owner->m_PeerAddress = address;
    m_Owner->m_PeerPort = port;
}

void UdpLink::leaveOwner(UdpServer::UdpConnection::ConnectionState state)
{
    if (!m_Owner)
        return;
    m_Owner->m_Link = nullptr;
    m_Owner->m_State = state;
    m_Owner = nullptr;
}

void UdpLink::breakOwner()
{
    if (!m_Owner)
        return;
    UdpServer::UdpConnection& told = *m_Owner;
    leaveOwner(UdpServer::UdpConnection::kBroken);
    if (!std::exchange(told.m_IsEndTold, true))
        told.onClose();
}

} // namespace zet::inner

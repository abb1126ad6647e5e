#include "net/quic/inner/link.h"

#include "net/door/addresses.h"
#include "net/quic/inner/router.h"

#include <new>

namespace zet::inner
{

namespace
{

using Connection = UdpServer::UdpConnection;

} // namespace

bool QuicLink::lookUp(Reactor& reactor, unsigned short port)
{
    m_Deadline = m_Router.now() + m_Router.settings().m_ConnectTimeout * NGTCP2_MILLISECONDS;
    m_Found = Endpoint();
    m_Found.m_Port = port;
    m_Lookup = reactor.resolve(m_Name, [this](const auto& found) { onFound(found); });
    m_Router.schedule(*this);
    return m_Lookup != nullptr;
}

void QuicLink::lookUpAgain(Reactor& reactor)
{
    if (m_Lookup && !m_IsFound && !lookUp(reactor, m_Found.m_Port))
        drop(Connection::kConnectFailed);
}

void QuicLink::onFound(const std::vector<Endpoint>& found)
{
    const unsigned short port = m_Found.m_Port;
    m_Found = found.empty() ? Endpoint() : found.front();
    m_Found.m_Port = port;
    m_IsFound = true;
    wake(kWrite);
}

void QuicLink::openNamed()
{
    bool isOpen = false;
    try
    {
        isOpen = m_Found.isV4() && openClient(toSystem(m_Found));
    }
    catch (const std::bad_alloc&)
    {
        // Ends like a name without an address.
    }
    if (!isOpen)
        return drop(Connection::kConnectFailed);
    m_Deadline = kNever;
    m_Lookup.reset();
    setPeer(m_Found.v4(), m_Found.m_Port);
}

} // namespace zet::inner

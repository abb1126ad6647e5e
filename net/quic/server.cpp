#include "net/quic/server.h"

#include "net/quic/inner/udp_router.h"

namespace zet
{

UdpServer::UdpServer() = default;

UdpServer::~UdpServer()
{
    UdpServer::close();
}

bool UdpServer::isAvailable()
{
    return inner::UdpRouter::isAvailable();
}

bool UdpServer::start(System* system)
{
    if (!Socket::start(system))
        return false;
    if (m_Router)
    {
        const auto reactor = inner::Reactor::of(system);
        if (!reactor || !m_Router->join(reactor))
            close();
        else
            m_Handle = m_Router->getHandle();
    }
    return true;
}

bool UdpServer::open(unsigned short port, unsigned int handle)
{
    if (m_Router || !isInvalid())
        return false;
    const auto reactor = inner::Reactor::of(getSystem());
    if (!reactor)
        return false;
    m_Router = inner::UdpRouter::make(*this, reactor, port, handle);
    if (!m_Router)
        return false;
    m_Handle = m_Router->getHandle();
    m_UdpPort = m_Router->getPort();
    return true;
}

bool UdpServer::listen(unsigned short port)
{
    return open(port, kNoHandle);
}

bool UdpServer::attach(unsigned int handle)
{
    return handle != kNoHandle && open(0, handle);
}

void UdpServer::forget()
{
    m_UdpPort = 0;
    m_Router.reset();
    Socket::close();
}

unsigned int UdpServer::detach()
{
    // The router stays until its connections have been told.
    const auto router = m_Router;
    forget();
    return router ? router->detach() : kNoHandle;
}

void UdpServer::close()
{
    const auto router = m_Router;
    forget();
    if (router)
        router->close();
}

void UdpServer::onTick(unsigned int)
{
    // A handler may close the server.
    if (const auto router = m_Router)
        router->tick();
}

bool UdpServer::accept(UdpConnection* connection)
{
    return m_Router && connection && m_Router->give(*connection);
}

bool UdpServer::connect(UdpConnection* connection, const wchar_t* ip, unsigned short port, const Uuid& id)
{
    return m_Router && connection && m_Router->connect(*connection, ip, port, id);
}

void UdpServer::onAccept() {}

void UdpServer::onUserData(const sockaddr_in&, const void*, int) {}

void UdpServer::onEnd(UdpConnection*) {}

bool UdpServer::sendUserData(const sockaddr_in& address, const void* data, int size)
{
    return m_Router && size > 0 && size <= kMostUserData && m_Router->sendUserData(address, data, size);
}

void UdpServer::deliver(const sockaddr_in& address, const void* data, int size)
{
    if (const auto router = m_Router; router && size >= 0)
        router->deliver(address, data, size);
}

Uuid UdpServer::getVisitorId() const
{
    return m_Router ? m_Router->getVisitorId() : Uuid();
}

bool UdpServer::getVisitorAddress(sockaddr_in& address) const
{
    if (!m_Router || !m_Router->hasVisitor())
        return false;
    m_Router->getVisitorAddress(address);
    return true;
}

int UdpServer::getConnectionCount() const
{
    return m_Router ? m_Router->getConnectionCount() : 0;
}

UdpServer::Traffic UdpServer::getTraffic() const
{
    return m_Router ? m_Router->getTraffic() : Traffic();
}

} // namespace zet

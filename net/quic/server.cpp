#include "net/quic/server.h"

#include "framework/log.h"
#include "framework/string_helper.h"
#include "net/door/addresses.h"
#include "net/inner/end_counts.h"
#include "net/inner/end_log.h"
#include "net/inner/peer_text.h"
#include "net/inner/secure_module.h"
#include "net/quic/connection.h"
#include "net/quic/inner/udp_router.h"

namespace zet
{

namespace
{

// Bytes that the operating system may hold of input and of output, as far as it allows: a tick may be late.
constexpr int kSocketBuffer = 4 * 1024 * 1024;

// A handle that stays the caller's unless it was taken over.
struct LentHandle : inner::DoorHandle
{
    using DoorHandle::DoorHandle;
    ~LentHandle() { release(); }
};

} // namespace

UdpServer::UdpServer() : m_Ends(std::make_unique<inner::EndCounts>()) {}

UdpServer::~UdpServer()
{
    UdpServer::close();
}

bool UdpServer::isAvailable()
{
    inner::SecureModule* const module = inner::SecureModule::get();
    return module && module->hasUdp();
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

EndCause UdpServer::open(inner::DoorHandle& handle)
{
    if (!isAvailable())
    {
        Log::error(L"This library has no connections over UDP");
        return {EndCause::kUnavailable, 0};
    }
    m_Router = inner::SecureModule::get()->makeRouter(*this, inner::Reactor::of(getSystem()), handle);
    // The log says why.
    if (!m_Router)
        return {EndCause::kTls, 0};
    m_Handle = m_Router->getHandle();
    m_UdpPort = m_Router->getPort();
    return {};
}

bool UdpServer::listen(unsigned short port)
{
    const EndCause cause = takePort(port);
    if (!cause)
        return true;
    m_Fault = cause;
    m_Ends->add(cause);
    inner::countEnd(cause);
    inner::Endpoint own = m_BindAddress ? *m_BindAddress : inner::Endpoint();
    own.m_Port = port;
    inner::logFailure(L"Listen over UDP on", inner::peerText(own), cause);
    return false;
}

void UdpServer::countEnd(EndCause cause)
{
    m_Ends->add(cause);
}

unsigned long long UdpServer::getEndCount(EndCause::Code code) const
{
    return m_Ends->get(code);
}

void UdpServer::noteRefused(const inner::Endpoint& peer)
{
    m_Fault = {EndCause::kTooMany, 0};
    m_Ends->add(m_Fault);
    inner::logEnd(
        inner::kRefusedLine, m_Fault,
        [](const void* refused) { return inner::peerText(*static_cast<const inner::Endpoint*>(refused)); }, &peer);
}

EndCause UdpServer::takePort(unsigned short port)
{
    if (m_Router || !isInvalid())
        return {EndCause::kHeld, 0};
    const auto reactor = inner::Reactor::of(getSystem());
    if (!reactor)
        return {EndCause::kNoHandle, 0};
    if (m_IsPortShared && !inner::canSharePort(*reactor->door(), port))
        return {EndCause::kUnavailable, 0};
    inner::Endpoint own = m_BindAddress ? *m_BindAddress : inner::Endpoint();
    own.m_Port = port;
    inner::Door::Fault fault;
    inner::DoorHandle handle = inner::openPort(reactor->door(), inner::Door::kDatagrams, own, fault, m_IsPortShared);
    if (fault)
        return inner::causeOf(fault);
    handle.door().setOption(handle.get(), inner::Door::kReceiveBuffer, kSocketBuffer);
    handle.door().setOption(handle.get(), inner::Door::kSendBuffer, kSocketBuffer);
    return open(handle);
}

bool UdpServer::attach(unsigned int handle)
{
    const auto fails = [this](EndCause cause)
    {
        m_Fault = cause;
        m_Ends->add(cause);
        return false;
    };
    if (handle == kNoHandle || m_Router || !isInvalid())
        return fails({handle == kNoHandle ? EndCause::kSystem : EndCause::kHeld, 0});
    const auto reactor = inner::Reactor::of(getSystem());
    if (!reactor)
        return fails({EndCause::kNoHandle, 0});
    if (const inner::Door::Fault fault = reactor->door()->unblock(handle))
        return fails(inner::causeOf(fault));
    LentHandle lent(reactor->door(), handle);
    const EndCause cause = open(lent);
    return !cause || fails(cause);
}

void UdpServer::forget()
{
    m_UdpPort = 0;
    m_Router.reset();
    Socket::close();
}

unsigned int UdpServer::detach()
{
    // The router stays until its connections have ended.
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
    if (!m_Router || !connection || !m_Router->give(*connection))
        return false;
    ++m_Accepts.m_Accepted;
    return true;
}

bool UdpServer::connect(UdpConnection* connection, const wchar_t* ip, unsigned short port, const Uuid& id)
{
    if (!connection)
        return false;
    const EndCause cause = m_Router ? m_Router->connect(*connection, ip, port, id) : EndCause{EndCause::kNotStarted, 0};
    return !cause || connection->failConnect(cause, ip, port);
}

void UdpServer::onAccept() {}

void UdpServer::onUserData(const sockaddr_in&, const void*, int) {}

void UdpServer::onUserDataIPv6(const sockaddr_in6&, const void*, int)
{
    if (m_Router)
        m_Router->noteDropped();
}

void UdpServer::onEnd(UdpConnection*) {}

bool UdpServer::sendUserData(const sockaddr_in& address, const void* data, int size)
{
    return m_Router && size > 0 && size <= kMostUserData &&
           m_Router->sendUserData(inner::fromSystem(address), data, size);
}

bool UdpServer::sendUserDataIPv6(const sockaddr_in6& address, const void* data, int size)
{
    return m_Router && size > 0 && size <= kMostUserData &&
           m_Router->sendUserData(inner::fromSystem(address), data, size);
}

void UdpServer::deliver(const sockaddr_in& address, const void* data, int size)
{
    if (const auto router = m_Router; router && size >= 0)
        router->deliver(inner::fromSystem(address), data, size);
}

void UdpServer::deliverIPv6(const sockaddr_in6& address, const void* data, int size)
{
    if (const auto router = m_Router; router && size >= 0)
        router->deliver(inner::fromSystem(address), data, size);
}

bool UdpServer::setBindAddress(const wchar_t* address)
{
    if (!address || !*address)
    {
        m_BindAddress.reset();
        return true;
    }
    inner::Endpoint parsed;
    if (!inner::Door::parse(StringHelper::wideToUtf8(address), 0, parsed))
        return false;
    m_BindAddress = std::make_unique<inner::Endpoint>(parsed);
    return true;
}

Uuid UdpServer::getVisitorId() const
{
    return m_Router ? m_Router->getVisitorId() : Uuid();
}

bool UdpServer::getVisitorAddress(sockaddr_in& address) const
{
    if (!m_Router || !m_Router->hasVisitor() || !m_Router->getVisitorAddress().isV4())
        return false;
    address = inner::toIPv4(m_Router->getVisitorAddress());
    return true;
}

bool UdpServer::getVisitorAddressIPv6(sockaddr_in6& address) const
{
    if (!m_Router || !m_Router->hasVisitor() || m_Router->getVisitorAddress().isV4())
        return false;
    address = inner::toIPv6(m_Router->getVisitorAddress());
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

unsigned long long UdpServer::getLostPackets() const
{
    return m_Router ? m_Router->getLostPackets() : 0;
}

} // namespace zet

#include "net/quic/inner/link.h"

#include "net/quic/inner/router.h"

#include <algorithm>
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
    m_Lookup = reactor.resolve(m_Name, [this](std::vector<Endpoint>&& found) { onFound(std::move(found)); });
    m_Router.schedule(*this);
    return m_Lookup != nullptr;
}

void QuicLink::lookUpAgain(Reactor& reactor)
{
    if (m_Lookup && !m_IsFound && !lookUp(reactor, m_Found.m_Port))
        drop(Connection::kConnectFailed, {EndCause::kNoMemory, 0});
}

void QuicLink::onFound(std::vector<Endpoint>&& found)
{
    const unsigned short port = m_Found.m_Port;
    // A connection over UDP learns late that an address does not answer, so an address of IPv4 counts where there is
    // one.
    const auto v4 = std::find_if(found.begin(), found.end(), [](const Endpoint& each) { return each.isV4(); });
    m_Found = found.empty() ? Endpoint() : v4 != found.end() ? *v4 : found.front();
    m_Found.m_Port = port;
    m_IsFound = true;
    wake(kWrite);
}

void QuicLink::openNamed()
{
    bool isOpen = false;
    try
    {
        isOpen = !m_Found.isAny() && openClient(m_Found);
    }
    catch (const std::bad_alloc&)
    {
        // Ends like a name without an address.
    }
    if (!isOpen)
        return drop(Connection::kConnectFailed,
                    EndCause{m_Found.isAny() ? EndCause::kNotResolved : EndCause::kNoMemory, 0});
    m_Deadline = kNever;
    m_Lookup.reset();
    setPeer(m_Found);
}

} // namespace zet::inner

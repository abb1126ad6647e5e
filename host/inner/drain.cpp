#include "host/inner/drain.h"

#include "framework/inner/moment.h"
#include "framework/log.h"
#include "host/questions.h"
#include "net/inner/guard.h"
#include "net/inner/reactor.h"
#include "transport/framework_server_socket.h"
#include "transport/udp_client_socket.h"
#include "transport/udp_server_socket.h"

namespace host::inner
{

namespace
{

// Closes the connections that are answered. A callable that throws leaves its connection open until the drain time is
// over.
class TcpWalk final : public CFrameworkServerSocket::ClientSockets::Walker
{
public:
    TcpWalk(const ServedTcp& served, bool isWaiting) : m_Served(served), m_IsWaiting(isWaiting) {}

    bool onEntry(CFrameworkClientSocket* const& key, zet::Unknown::Handle_T<CFrameworkClientSocket>&) override
    {
        zet::inner::guard(L"a drain", key,
                          [&]
                          {
                              if (isOver(*key))
                                  key->close();
                          });
        return true;
    }

private:
    bool isOver(CFrameworkClientSocket& socket) const
    {
        // Without a command yet.
        if (socket.getConnectionState() == zet::TcpConnection::kConnecting)
            return true;
        if (!socket.isQuiet() || socket.getOutputSize() > 0)
            return false;
        return m_Served.m_IsAnswered ? m_Served.m_IsAnswered(socket) : !m_IsWaiting;
    }

    const ServedTcp& m_Served;
    const bool m_IsWaiting;
};

class UdpWalk final : public UdpServerSocket::ClientSockets::Walker
{
public:
    UdpWalk(const ServedUdp& served, bool isWaiting) : m_Served(served), m_IsWaiting(isWaiting) {}

    bool onEntry(zet::UdpServer::UdpConnection* const& key,
                 zet::Unknown::Handle_T<zet::UdpServer::UdpConnection>&) override
    {
        zet::inner::guard(L"a drain", nullptr,
                          [&]
                          {
                              if (!isOver(*key))
                                  return;
                              key->close();
                              // The walk keeps the object until this call returns.
                              m_Served.m_Server->abandon(key);
                          });
        return true;
    }

private:
    bool isOver(zet::UdpServer::UdpConnection& connection) const
    {
        // The output counts until the peer has confirmed it.
        if (connection.available() > 0 || connection.getOutputSize() > 0)
            return false;
        auto* const socket = dynamic_cast<UdpClientSocket*>(&connection);
        return socket && m_Served.m_IsAnswered ? m_Served.m_IsAnswered(*socket) : !m_IsWaiting;
    }

    const ServedUdp& m_Served;
    const bool m_IsWaiting;
};

} // namespace

void Drain::begin(unsigned int now, unsigned int milliseconds)
{
    m_IsBegun = true;
    m_End = now + milliseconds;
}

void Drain::stopAccepting()
{
    for (const ServedTcp& served : m_Tcp)
        // Its own close() would close the connections, too.
        served.m_Server->zet::TcpServer::close();
    for (const ServedUdp& served : m_Udp)
    {
        auto settings = served.m_Server->getSettings();
        settings.m_ConnectionLimit = 0;
        served.m_Server->setSettings(settings);
    }
}

bool Drain::step(zet::System& system, unsigned int now)
{
    if (countOpen() == 0 && !isWaiting())
        return true;
    if (zet::inner::isReached(m_End, now))
    {
        zet::Log::warning(L"The drain time is over: %d connections are closed as they are", countOpen());
        closeAll();
        return true;
    }
    // What arrived since the tick is not answered yet.
    if (const auto reactor = zet::inner::Reactor::of(&system))
        reactor->poll();
    closeAnswered();
    if (countOpen() == 0)
        system.wake();
    return false;
}

int Drain::countOpen() const
{
    int count = 0;
    for (const ServedTcp& served : m_Tcp)
        count += served.m_Server->GetClientCount();
    for (const ServedUdp& served : m_Udp)
        count += served.m_Server->GetClientCount();
    return count;
}

bool Drain::isWaiting() const
{
    for (const Questions* const questions : m_Questions)
        if (questions->getOpenCount() > 0)
            return true;
    bool isBusy = false;
    for (const auto& each : m_Busy)
        zet::inner::guard(L"onBusy()", nullptr, [&] { isBusy = each() || isBusy; });
    return isBusy;
}

void Drain::closeAnswered()
{
    const bool waits = isWaiting();
    for (const ServedTcp& served : m_Tcp)
    {
        TcpWalk walk(served, waits);
        served.m_Server->GetAllClientSocket()->foreach(walk);
    }
    for (const ServedUdp& served : m_Udp)
    {
        UdpWalk walk(served, waits);
        served.m_Server->GetAllClientSocket()->foreach(walk);
    }
}

void Drain::closeAll()
{
    for (const ServedTcp& served : m_Tcp)
        zet::inner::guard(L"a drain", nullptr, [&] { served.m_Server->close(); });
    for (const ServedUdp& served : m_Udp)
        zet::inner::guard(L"a drain", nullptr, [&] { served.m_Server->close(); });
}

} // namespace host::inner

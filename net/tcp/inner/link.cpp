#include "net/tcp/inner/link.h"

#include "net/tcp/connection.h"

namespace zet::inner
{

void TcpLink::waitForInput(bool isCutShort)
{
    if (isCutShort && m_HasTail)
        poller().reportInputAgain(*this);
    else
        poller().want(*this, kReadyInput);
}

void TcpLink::waitForOutput()
{
    m_IsOutputWaited = true;
    poller().want(*this, kReadyOutput);
}

bool TcpLink::connect(const Endpoint& peer)
{
    m_Peer = peer;
    prepare();
    if (door().connect(getHandle(), peer))
        return false;
    // Not earlier: the poller reports a socket that is not connecting as broken.
    m_IsConnecting = true;
    return startWatch(kReadyInput | kReadyOutput);
}

bool TcpLink::connectByName(Reactor& reactor, const char* name, unsigned short port)
{
    m_Lookup = reactor.resolve(name,
                               [this, port](const std::vector<Endpoint>& found)
                               {
                                   m_Peer = found.empty() ? Endpoint() : found.front();
                                   m_Peer.m_Port = found.empty() ? static_cast<unsigned short>(0) : port;
                                   report(TcpConnection::kConnected);
                               });
    return m_Lookup != nullptr;
}

bool TcpLink::beginNamed()
{
    m_Lookup.reset();
    return m_Peer.m_Port != 0 && connect(m_Peer);
}

bool TcpLink::isConnected()
{
    return !door().endConnect(getHandle());
}

void TcpLink::onReady(unsigned char ready)
{
    unsigned int pending = 0;
    if ((ready & kReadyOutput) && m_IsConnecting)
    {
        m_IsConnecting = false;
        pending |= TcpConnection::kConnected;
    }
    if ((ready & kReadyOutput) && m_IsOutputWaited)
    {
        m_IsOutputWaited = false;
        pending |= TcpConnection::kWritable;
    }
    if (ready & kReadyInput)
        pending |= TcpConnection::kReadable;
    if (ready & kReadyTail)
        m_HasTail = true;
    report(pending);
}

void TcpLink::report(unsigned int pending)
{
    if (!m_Owner || pending == 0)
        return;
    m_Owner->setPending(pending);
    m_Owner->list();
}

void TcpLink::flushOwner()
{
    if (m_Owner && m_Owner->isPending(TcpConnection::kOutput))
        m_Owner->flush();
}

void TcpLink::failOwner()
{
    if (m_Owner)
        m_Owner->fail(TcpConnection::kBroken);
}

} // namespace zet::inner

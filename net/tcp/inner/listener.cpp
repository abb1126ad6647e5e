#include "net/tcp/inner/listener.h"

#include "net/tcp/server.h"

namespace zet::inner
{

bool TcpListener::watch()
{
    m_IsWatched = m_Poller.add(m_Handle.get(), *this, kReadyInput);
    return m_IsWatched;
}

void TcpListener::unwatch()
{
    if (m_IsWatched)
        m_Poller.remove(*this);
    m_IsWatched = false;
}

void TcpListener::waitForVisitor()
{
    m_Poller.want(*this, kReadyInput);
}

void TcpListener::onReady(unsigned char)
{
    m_Owner.m_IsReady = true;
}

} // namespace zet::inner

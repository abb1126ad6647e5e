#include "net/tcp/inner/listener.h"

#include "net/tcp/server.h"

namespace zet::inner
{

void TcpListener::onReady(unsigned char)
{
    m_Owner.m_IsReady = true;
}

} // namespace zet::inner

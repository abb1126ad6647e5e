#include "transport/net/inner/tcp_listener.h"

#include "transport/net/tcp_server.h"

namespace zet::inner
{

void TcpListener::waitForVisitor()
{
    if (m_IsWaited)
        return;
    m_IsWaited = true;
    m_Acceptor.async_wait(asio::socket_base::wait_read,
                          [self = Ref(this)](const asio::error_code& fault)
                          {
                              if (fault == asio::error::operation_aborted)
                                  return;
                              self->m_IsWaited = false;
                              if (self->m_Owner)
                                  self->m_Owner->m_IsReady = true;
                          });
}

} // namespace zet::inner

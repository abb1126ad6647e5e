#include "transport/net/tcp_secure_connection.h"

namespace zet
{

void TcpSecureConnection::onTick(unsigned int tick)
{
    TcpConnection::onTick(tick);
}

int TcpSecureConnection::receive(void* data, int size)
{
    return TcpConnection::receive(data, size);
}

void TcpSecureConnection::flush()
{
    TcpConnection::flush();
}

} // namespace zet

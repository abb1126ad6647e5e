#include "transport/net/inner/tcp_link.h"

#include "transport/net/inner/native_handle.h"
#include "transport/net/tcp_connection.h"

namespace zet::inner
{

bool TcpLink::startWatch(unsigned char ready)
{
    m_IsWatched = m_Poller.add(m_Socket.native_handle(), *this, ready);
    return m_IsWatched;
}

void TcpLink::unwatch()
{
    if (m_IsWatched)
        m_Poller.remove(*this);
    m_IsWatched = false;
}

void TcpLink::waitForInput(bool isCutShort)
{
    m_IsInputWaited = true;
    if (isCutShort && m_HasTail)
        m_Poller.tellInputAgain(*this);
    else
        m_Poller.want(*this, kReadyInput);
}

void TcpLink::waitForOutput()
{
    m_IsOutputWaited = true;
    m_Poller.want(*this, kReadyOutput);
}

bool TcpLink::connect(const asio::ip::tcp::endpoint& peer)
{
    if (!prepare() || !beginConnect(m_Socket.native_handle(), peer))
        return false;
    // Not before: a socket that nobody called counts as broken.
    m_IsConnecting = true;
    return startWatch(kReadyInput | kReadyOutput);
}

bool TcpLink::isConnected()
{
    int fault = 0;
    socklen_t size = sizeof fault;
    return ::getsockopt(m_Socket.native_handle(), SOL_SOCKET, SO_ERROR, reinterpret_cast<char*>(&fault), &size) == 0 &&
           fault == 0;
}

void TcpLink::onReady(unsigned char ready)
{
    unsigned char pending = 0;
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
    if ((ready & kReadyInput) && m_IsInputWaited)
    {
        m_IsInputWaited = false;
        pending |= TcpConnection::kReadable;
    }
    if (ready & kReadyTail)
        m_HasTail = true;
    if (!m_Owner || pending == 0)
        return;
    m_Owner->m_Pending |= pending;
    m_Owner->ring();
}

void TcpLink::flushOwner()
{
    if (m_Owner && (m_Owner->m_Pending & TcpConnection::kOutput))
        m_Owner->flush();
}

void TcpLink::failOwner()
{
    if (m_Owner)
        m_Owner->fail(TcpConnection::kBroken);
}

bool TcpLink::prepare()
{
    asio::error_code fault;
    m_Socket.non_blocking(true, fault);
    if (fault)
        return false;
    asio::error_code ignored;
    m_Socket.set_option(asio::ip::tcp::no_delay(true), ignored);
    return true;
}

} // namespace zet::inner

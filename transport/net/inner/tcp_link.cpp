#include "transport/net/inner/tcp_link.h"

#include "transport/net/inner/native_handle.h"
#include "transport/net/tcp_connection.h"

namespace zet::inner
{

void TcpLink::waitForInput()
{
    if (m_IsInputWaited)
        return;
    m_IsInputWaited = true;
    m_Socket.async_wait(asio::socket_base::wait_read,
                        [link = TcpLinkRef(this)](const asio::error_code& fault)
                        {
                            if (fault == asio::error::operation_aborted)
                                return;
                            // Any other fault shows again, and better, when the socket is read.
                            link->m_IsInputWaited = false;
                            link->tell(TcpConnection::kReadable);
                        });
}

void TcpLink::waitForOutput()
{
    if (m_IsOutputWaited)
        return;
    m_IsOutputWaited = true;
    m_Socket.async_wait(asio::socket_base::wait_write,
                        [link = TcpLinkRef(this)](const asio::error_code& fault)
                        {
                            if (fault == asio::error::operation_aborted)
                                return;
                            link->m_IsOutputWaited = false;
                            link->tell(TcpConnection::kWritable);
                        });
}

void TcpLink::connect(const asio::ip::tcp::endpoint& peer)
{
    m_Socket.async_connect(peer,
                           [link = TcpLinkRef(this)](const asio::error_code& fault)
                           {
                               link->m_ConnectResult = fault;
                               link->tell(TcpConnection::kConnected);
                           });
}

void TcpLink::tell(unsigned char pending)
{
    if (!m_Owner)
        return;
    m_Owner->m_Pending |= pending;
    m_Owner->ring();
}

void TcpLink::flushOwner()
{
    if (m_Owner && (m_Owner->m_Pending & TcpConnection::kOutput))
        m_Owner->flush();
}

bool TcpLink::watchAnew()
{
    asio::error_code fault;
    const auto handle = m_Socket.release(fault);
    if (fault)
        return false;
    m_Socket.assign(asio::ip::tcp::v4(), handle, fault);
    if (!fault)
        return true;
    closeHandle(handle);
    return false;
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

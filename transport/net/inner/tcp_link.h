// What stands behind an open TCP connection: the socket, its waits and its bytes.
#pragma once

#include "transport/net/inner/blocks.h"
#include "transport/net/inner/counted.h"
#include "transport/net/inner/reactor.h"

#include <asio/ip/tcp.hpp>

namespace zet
{
class TcpConnection;
}

namespace zet::inner
{

// A connection, the waits under way and the reactor's list of what to flush share a link by its count, which is
// touched by the reactor's thread only. Closing the socket ends the waits, which then find no owner.
struct TcpLink : Counted<TcpLink>
{
    using Socket = asio::basic_stream_socket<asio::ip::tcp, asio::io_context::executor_type>;

    explicit TcpLink(Reactor& reactor) : m_Socket(reactor.context().get_executor()) {}

    // Each sets a flag of the owner once the socket is ready. One wait of a kind at a time; more do nothing.
    void waitForInput();
    void waitForOutput();
    void connect(const asio::ip::tcp::endpoint& peer);
    // Forgets that room for output was ever waited for, which would show again with each wait for input. False,
    // where the system does not watch it again, leaves it closed.
    bool watchAnew();
    void flushOwner();
    void tell(unsigned char pending);
    // Options of every connection of ours. A socket that has no such option goes without it.
    bool prepare();
    // Whether a call found nothing to do, which is no fault.
    static bool isNothingYet(const asio::error_code& fault)
    {
        return fault == asio::error::would_block || fault == asio::error::try_again ||
               fault == asio::error::interrupted;
    }

    Socket m_Socket;
    TcpConnection* m_Owner = nullptr;
    InputBuffer m_Input;
    OutputQueue m_Output;
    // What of the output a secure layer has sealed; it leaves first.
    OutputQueue m_Sealed;
    asio::error_code m_ConnectResult;
    bool m_IsInputWaited = false;
    bool m_IsOutputWaited = false;
    bool m_IsListed = false;
};

using TcpLinkRef = Ref<TcpLink>;

} // namespace zet::inner

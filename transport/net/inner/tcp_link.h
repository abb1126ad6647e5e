// What stands behind an open TCP connection: the socket, its readiness and its bytes.
#pragma once

#include "transport/net/inner/blocks.h"
#include "transport/net/inner/counted.h"
#include "transport/net/inner/crowd.h"
#include "transport/net/inner/reactor.h"

#include <asio/ip/tcp.hpp>

namespace zet
{
class TcpConnection;
}

namespace zet::inner
{

// A connection and the reactor's list of what to flush share a link by its count, which is touched by the reactor's
// thread only.
struct TcpLink final : Counted<TcpLink>, Watch
{
    using Socket = asio::basic_stream_socket<asio::ip::tcp, asio::io_context::executor_type>;

    explicit TcpLink(Reactor& reactor) : m_Poller(reactor.poller()), m_Socket(reactor.context().get_executor()) {}
    ~TcpLink()
    {
        unwatch();
        leaveCrowd();
    }

    // From now on the owner is told when input comes. True where it is so already.
    bool watch() { return m_IsWatched || startWatch(kReadyInput); }
    // No more of it; before the socket is closed or given away.
    void unwatch();
    // The owner has found the socket empty, or full, and is told of the change. A read that was cut short has found it
    // empty only where nothing but bytes can follow.
    void waitForInput(bool isCutShort);
    void waitForOutput();
    // Begins a connection with an open socket; the owner is told when the answer is there. False where there is no way.
    bool connect(const asio::ip::tcp::endpoint& peer);
    // Once the answer is there, and only once: whether it was yes.
    bool isConnected();
    void onReady(unsigned char ready) override;
    void flushOwner();
    // The owner counts as broken.
    void failOwner();
    void leaveCrowd()
    {
        if (m_Seat)
            m_Seat->leave();
        m_Seat = Ref<Seat>();
    }
    // Options of every connection of ours. A socket that has no such option goes without it.
    bool prepare();
    // Whether a call found nothing to do, which is no fault.
    static bool isNothingYet(const asio::error_code& fault)
    {
        return fault == asio::error::would_block || fault == asio::error::try_again ||
               fault == asio::error::interrupted;
    }

    Poller& m_Poller;
    Socket m_Socket;
    TcpConnection* m_Owner = nullptr;
    // Of an accepted connection.
    Ref<Seat> m_Seat;
    InputBuffer m_Input;
    OutputQueue m_Output;
    // What of the output a secure layer has sealed; it leaves first.
    OutputQueue m_Sealed;
    // Nothing was told since the socket was found empty, or full. A new socket counts as empty.
    bool m_IsInputWaited = true;
    bool m_IsOutputWaited = false;
    // In the reactor's list of what to flush.
    bool m_IsListed = false;
    TcpLink* m_NextUnflushed = nullptr;

private:
    bool startWatch(unsigned char ready);

    bool m_IsWatched = false;
    bool m_IsConnecting = false;
    // Behind the bytes that were read may be what no news tell of.
    bool m_HasTail = false;
};

using TcpLinkRef = Ref<TcpLink>;

} // namespace zet::inner

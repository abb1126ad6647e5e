// What each operating system does its own way with the handle of a socket.
#pragma once

#include <asio/ip/tcp.hpp>

namespace zet
{
struct NetLimits;
}

namespace zet::inner
{

using NativeHandle = asio::ip::tcp::socket::native_handle_type;

// New handles of IPv4, of SOCK_STREAM or SOCK_DGRAM and of the next connection to a listening one. No program that this
// process starts inherits them, not even one that another thread starts at that moment, where the system can do so.
NativeHandle makeHandle(int type, asio::error_code& fault);
NativeHandle acceptHandle(NativeHandle listener, asio::ip::tcp::endpoint& peer, asio::error_code& fault);
void closeHandle(NativeHandle handle);

// Puts a handle into a socket that has none, or closes it.
template <class Socket, class Protocol>
void assignHandle(Socket& socket, const Protocol& protocol, NativeHandle handle, asio::error_code& fault)
{
    socket.assign(protocol, handle, fault);
    if (fault)
        closeHandle(handle);
}

// What open() does, for handles as above.
template <class Socket, class Protocol>
void openSocket(Socket& socket, const Protocol& protocol, asio::error_code& fault)
{
    const NativeHandle handle = makeHandle(protocol.type(), fault);
    if (!fault)
        assignHandle(socket, protocol, handle, fault);
}

// Begins a connection with a socket that does not block, and waits for nothing. False where there is no way.
bool beginConnect(asio::ip::tcp::socket::native_handle_type handle, const asio::ip::tcp::endpoint& peer);

// Lets the operating system notice a peer that vanished, as the limits say. What it has no option for is left out.
void watchPeer(asio::ip::tcp::socket::native_handle_type handle, const NetLimits& limits);

} // namespace zet::inner

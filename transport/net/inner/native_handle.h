// What each operating system does its own way with the handle of a socket.
#pragma once

#include <asio/ip/tcp.hpp>

namespace zet::inner
{

// Begins a connection with a socket that does not block, and waits for nothing. False where there is no way.
bool beginConnect(asio::ip::tcp::socket::native_handle_type handle, const asio::ip::tcp::endpoint& peer);

} // namespace zet::inner

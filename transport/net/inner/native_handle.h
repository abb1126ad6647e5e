// What each operating system does its own way with the handle of a socket.
#pragma once

#include <asio/ip/tcp.hpp>

namespace zet::inner
{

// For a handle that no socket object holds.
void closeHandle(asio::ip::tcp::socket::native_handle_type handle);

} // namespace zet::inner

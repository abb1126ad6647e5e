#include "transport/net/inner/native_handle.h"

namespace zet::inner
{

bool beginConnect(asio::ip::tcp::socket::native_handle_type handle, const asio::ip::tcp::endpoint& peer)
{
    return ::connect(handle, peer.data(), static_cast<int>(peer.size())) == 0 || ::WSAGetLastError() == WSAEWOULDBLOCK;
}

} // namespace zet::inner

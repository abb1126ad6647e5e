#include "transport/net/inner/native_handle.h"

#include <cerrno>

namespace zet::inner
{

bool beginConnect(asio::ip::tcp::socket::native_handle_type handle, const asio::ip::tcp::endpoint& peer)
{
    // One that a signal has interrupted goes on by itself.
    return ::connect(handle, peer.data(), static_cast<socklen_t>(peer.size())) == 0 || errno == EINPROGRESS ||
           errno == EINTR;
}

} // namespace zet::inner

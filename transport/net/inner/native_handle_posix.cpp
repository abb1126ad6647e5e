#include "transport/net/inner/native_handle.h"

#include <cerrno>

#include <fcntl.h>
#include <sys/socket.h>
#include <unistd.h>

namespace zet::inner
{

NativeHandle makeHandle(int type, asio::error_code& fault)
{
    const int handle = ::socket(AF_INET, type | SOCK_CLOEXEC, 0);
    fault = asio::error_code(handle < 0 ? errno : 0, asio::error::get_system_category());
    return handle;
}

NativeHandle acceptHandle(NativeHandle listener, asio::ip::tcp::endpoint& peer, asio::error_code& fault)
{
    for (;;)
    {
        socklen_t size = static_cast<socklen_t>(peer.capacity());
        const int handle = ::accept4(listener, peer.data(), &size, SOCK_CLOEXEC);
        if (handle < 0 && errno == EINTR)
            continue;
        fault = asio::error_code(handle < 0 ? errno : 0, asio::error::get_system_category());
        if (handle >= 0)
            peer.resize(size);
        return handle;
    }
}

void closeHandle(NativeHandle handle)
{
    ::close(handle);
}

bool beginConnect(asio::ip::tcp::socket::native_handle_type handle, const asio::ip::tcp::endpoint& peer)
{
    // One that a signal has interrupted goes on by itself.
    return ::connect(handle, peer.data(), static_cast<socklen_t>(peer.size())) == 0 || errno == EINPROGRESS ||
           errno == EINTR;
}

} // namespace zet::inner

#include "transport/net/inner/native_handle.h"

#include "transport/net/net_limits.h"

#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>

namespace zet::inner
{

namespace
{

template <class Value>
void setOption(int handle, int level, int name, Value value)
{
    ::setsockopt(handle, level, name, &value, sizeof value);
}

} // namespace

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

void watchPeer(asio::ip::tcp::socket::native_handle_type handle, const NetLimits& limits)
{
    if (limits.m_ProbeAfter > 0 && limits.m_ProbeEvery > 0 && limits.m_Probes > 0)
    {
        setOption(handle, SOL_SOCKET, SO_KEEPALIVE, 1);
#ifdef TCP_KEEPIDLE
        setOption(handle, IPPROTO_TCP, TCP_KEEPIDLE, limits.m_ProbeAfter);
#endif
#ifdef TCP_KEEPINTVL
        setOption(handle, IPPROTO_TCP, TCP_KEEPINTVL, limits.m_ProbeEvery);
        setOption(handle, IPPROTO_TCP, TCP_KEEPCNT, limits.m_Probes);
#endif
    }
#ifdef TCP_USER_TIMEOUT
    if (limits.m_UnacknowledgedTime > 0)
        setOption(handle, IPPROTO_TCP, TCP_USER_TIMEOUT, limits.m_UnacknowledgedTime);
#endif
}

} // namespace zet::inner

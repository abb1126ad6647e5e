#include "transport/net/inner/native_handle.h"

#include "transport/net/net_limits.h"

#include <mstcpip.h>

namespace zet::inner
{

namespace
{

asio::error_code lastFault(NativeHandle handle)
{
    return asio::error_code(handle == INVALID_SOCKET ? ::WSAGetLastError() : 0, asio::error::get_system_category());
}

} // namespace

NativeHandle makeHandle(int type, asio::error_code& fault)
{
    const SOCKET handle = ::WSASocketW(AF_INET, type, 0, nullptr, 0, WSA_FLAG_OVERLAPPED | WSA_FLAG_NO_HANDLE_INHERIT);
    fault = lastFault(handle);
    return handle;
}

NativeHandle acceptHandle(NativeHandle listener, asio::ip::tcp::endpoint& peer, asio::error_code& fault)
{
    int size = static_cast<int>(peer.capacity());
    const SOCKET handle = ::accept(listener, peer.data(), &size);
    fault = lastFault(handle);
    if (fault)
        return handle;
    peer.resize(static_cast<std::size_t>(size));
    ::SetHandleInformation(reinterpret_cast<HANDLE>(handle), HANDLE_FLAG_INHERIT, 0);
    return handle;
}

void closeHandle(NativeHandle handle)
{
    ::closesocket(handle);
}

bool beginConnect(asio::ip::tcp::socket::native_handle_type handle, const asio::ip::tcp::endpoint& peer)
{
    return ::connect(handle, peer.data(), static_cast<int>(peer.size())) == 0 || ::WSAGetLastError() == WSAEWOULDBLOCK;
}

void watchPeer(asio::ip::tcp::socket::native_handle_type handle, const NetLimits& limits)
{
    // The number of probes is the system's own, and so is the time without an acknowledgement.
    if (limits.m_ProbeAfter <= 0 || limits.m_ProbeEvery <= 0 || limits.m_Probes <= 0)
        return;
    tcp_keepalive probes{};
    probes.onoff = 1;
    probes.keepalivetime = static_cast<unsigned long>(limits.m_ProbeAfter) * 1000;
    probes.keepaliveinterval = static_cast<unsigned long>(limits.m_ProbeEvery) * 1000;
    DWORD ignored = 0;
    ::WSAIoctl(handle, SIO_KEEPALIVE_VALS, &probes, sizeof probes, nullptr, 0, &ignored, nullptr, nullptr);
}

} // namespace zet::inner

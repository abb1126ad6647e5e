// The options of sockets.
#include "net/door/addresses.h"
#include "net/door/real_door.h"
#include "net/limits.h"

#include <netinet/tcp.h>
#include <netinet/udp.h>

namespace zet::inner
{

namespace
{

void setValue(Door::Handle handle, int level, int name, int value)
{
    ::setsockopt(static_cast<int>(handle), level, name, &value, sizeof value);
}

} // namespace

void RealDoor::setOption(Handle handle, Option option, int value)
{
    switch (option)
    {
    case kNoDelay:
        return setValue(handle, IPPROTO_TCP, TCP_NODELAY, value);
    case kKeepAlive:
        return setValue(handle, SOL_SOCKET, SO_KEEPALIVE, value);
    case kRebind:
        return setValue(handle, SOL_SOCKET, SO_REUSEADDR, value);
    case kSharedPort:
#ifdef __linux__
        setValue(handle, SOL_SOCKET, SO_REUSEPORT, value);
#endif
        return;
    case kReceiveBuffer:
        return setValue(handle, SOL_SOCKET, SO_RCVBUF, value);
    case kSendBuffer:
        return setValue(handle, SOL_SOCKET, SO_SNDBUF, value);
    case kLocalAddress:
        // A socket of both families needs both options; an IPv4 socket does not have the second one.
        setValue(handle, IPPROTO_IP, IP_PKTINFO, value);
        return setValue(handle, IPPROTO_IPV6, IPV6_RECVPKTINFO, value);
    case kCoalesce:
#ifdef UDP_GRO
        setValue(handle, IPPROTO_UDP, UDP_GRO, value);
#endif
        return;
    }
}

void RealDoor::watchPeer(Handle handle, const NetLimits& limits)
{
    if (limits.m_ProbeAfter > 0 && limits.m_ProbeEvery > 0 && limits.m_Probes > 0)
    {
        setValue(handle, SOL_SOCKET, SO_KEEPALIVE, 1);
#ifdef TCP_KEEPIDLE
        setValue(handle, IPPROTO_TCP, TCP_KEEPIDLE, limits.m_ProbeAfter);
#endif
#ifdef TCP_KEEPINTVL
        setValue(handle, IPPROTO_TCP, TCP_KEEPINTVL, limits.m_ProbeEvery);
        setValue(handle, IPPROTO_TCP, TCP_KEEPCNT, limits.m_Probes);
#endif
    }
#ifdef TCP_USER_TIMEOUT
    if (limits.m_UnacknowledgedTime > 0)
        setValue(handle, IPPROTO_TCP, TCP_USER_TIMEOUT, static_cast<int>(limits.m_UnacknowledgedTime));
#endif
}

#ifdef __linux__
bool RealDoor::prepareListener(Handle listener, const NetLimits& limits)
{
    // The new connection's socket is a copy of the listening one. Earlier limits may have set what these leave unset.
    setValue(listener, SOL_SOCKET, SO_KEEPALIVE, 0);
    setValue(listener, IPPROTO_TCP, TCP_USER_TIMEOUT, 0);
    setValue(listener, IPPROTO_TCP, TCP_NODELAY, 1);
    watchPeer(listener, limits);
    return true;
}
#endif

} // namespace zet::inner

#include "net/door/real_door.h"

#include "net/door/addresses.h"
#include "net/door/names.h"
#include "net/door/real_poller.h"
#include "net/limits.h"

#include <mstcpip.h>

#include <algorithm>
#include <limits>

namespace zet::inner
{

namespace
{

using Fault = Door::Fault;

Fault faultOf(int code)
{
    switch (code)
    {
    case 0:
        return {};
    case WSAEWOULDBLOCK:
        return {Fault::kNotNow, code};
    case WSAEMFILE:
    case WSAENOBUFS:
    case WSA_NOT_ENOUGH_MEMORY:
        return {Fault::kExhausted, code};
    case WSAEAFNOSUPPORT:
    case WSAEADDRNOTAVAIL:
        return {Fault::kNoAddress, code};
    case WSAECONNREFUSED:
        return {Fault::kRefused, code};
    case WSAECONNRESET:
    case WSAECONNABORTED:
    case WSAENETRESET:
        return {Fault::kReset, code};
    case WSAETIMEDOUT:
        return {Fault::kTimedOut, code};
    case WSAENETUNREACH:
    case WSAEHOSTUNREACH:
    case WSAENETDOWN:
        return {Fault::kUnreachable, code};
    case WSAEADDRINUSE:
        return {Fault::kInUse, code};
    case WSAEACCES:
        return {Fault::kNotPermitted, code};
    default:
        return {Fault::kOther, code};
    }
}

Fault faultIf(bool hasFailed)
{
    return faultOf(hasFailed ? ::WSAGetLastError() : 0);
}

// Socket handles of this system have 32 significant bits.
SOCKET handleOf(Door::Handle handle)
{
    return handle == Door::kNoHandle ? INVALID_SOCKET : static_cast<SOCKET>(handle);
}

Fault unblockHandle(SOCKET handle)
{
    u_long on = 1;
    return faultIf(::ioctlsocket(handle, FIONBIO, &on) != 0);
}

void setValue(Door::Handle handle, int level, int name, int value)
{
    ::setsockopt(handleOf(handle), level, name, reinterpret_cast<const char*>(&value), sizeof value);
}

int clampSize(size_t size)
{
    return static_cast<int>(std::min(size, static_cast<size_t>(std::numeric_limits<int>::max())));
}

// Whether a socket accepts IPv4 addresses only in mapped form.
bool isIPv6(Door::Handle handle)
{
    SystemAddress own;
    return ::getsockname(handleOf(handle), &own.m_Plain, &own.m_Size) == 0 && own.m_Plain.sa_family == AF_INET6;
}

} // namespace

// The library of sockets stays loaded until the process ends.
void startSystem()
{
    static const int started = []
    {
        WSADATA ignored;
        return ::WSAStartup(MAKEWORD(2, 2), &ignored);
    }();
    static_cast<void>(started);
}

const std::shared_ptr<Door>& Door::getReal()
{
    static const std::shared_ptr<Door> door = []
    {
        startSystem();
        return std::make_shared<RealDoor>();
    }();
    return door;
}

std::string Door::getHostName()
{
    startSystem();
    char name[1024];
    return ::gethostname(name, sizeof name) == 0 ? std::string(name) : std::string();
}

Door::Handle RealDoor::open(Kind kind, Family family, Fault& fault)
{
    const int type = kind == kStream ? SOCK_STREAM : SOCK_DGRAM;
    const SOCKET handle = ::WSASocketW(family == kIPv4 ? AF_INET : AF_INET6, type, 0, nullptr, 0,
                                       WSA_FLAG_OVERLAPPED | WSA_FLAG_NO_HANDLE_INHERIT);
    const DWORD off = 0;
    fault = faultIf(handle == INVALID_SOCKET);
    if (!fault && family == kBoth)
        fault = faultIf(
            ::setsockopt(handle, IPPROTO_IPV6, IPV6_V6ONLY, reinterpret_cast<const char*>(&off), sizeof off) != 0);
    if (!fault)
        fault = unblockHandle(handle);
    if (fault && handle != INVALID_SOCKET)
        ::closesocket(handle);
    return fault ? kNoHandle : static_cast<Handle>(handle);
}

void RealDoor::close(Handle handle)
{
    ::closesocket(handleOf(handle));
}

Fault RealDoor::unblock(Handle handle)
{
    return unblockHandle(handleOf(handle));
}

Fault RealDoor::bind(Handle handle, const Endpoint& own)
{
    const SystemAddress address(own);
    return faultIf(::bind(handleOf(handle), &address.m_Plain, address.m_Size) != 0);
}

Fault RealDoor::listen(Handle handle, int backlog)
{
    return faultIf(::listen(handleOf(handle), backlog > 0 ? backlog : SOMAXCONN) != 0);
}

Door::Handle RealDoor::accept(Handle listener, Endpoint& peer, Fault& fault)
{
    SystemAddress address;
    const SOCKET handle = ::accept(handleOf(listener), &address.m_Plain, &address.m_Size);
    fault = faultIf(handle == INVALID_SOCKET);
    if (fault)
        return kNoHandle;
    ::SetHandleInformation(reinterpret_cast<HANDLE>(handle), HANDLE_FLAG_INHERIT, 0);
    if ((fault = unblockHandle(handle)))
    {
        ::closesocket(handle);
        return kNoHandle;
    }
    peer = address.isKnown() ? address.endpoint() : Endpoint();
    return static_cast<Handle>(handle);
}

Fault RealDoor::connect(Handle handle, const Endpoint& peer)
{
    const SystemAddress address(peer);
    return faultIf(::connect(handleOf(handle), &address.m_Plain, address.m_Size) != 0 &&
                   ::WSAGetLastError() != WSAEWOULDBLOCK);
}

Fault RealDoor::endConnect(Handle handle)
{
    int code = 0;
    int size = sizeof code;
    if (::getsockopt(handleOf(handle), SOL_SOCKET, SO_ERROR, reinterpret_cast<char*>(&code), &size) != 0)
        code = ::WSAGetLastError();
    return faultOf(code);
}

size_t RealDoor::receive(Handle handle, void* data, size_t size, Fault& fault)
{
    const int got = ::recv(handleOf(handle), static_cast<char*>(data), clampSize(size), 0);
    fault = faultIf(got < 0);
    return got < 0 ? 0 : static_cast<size_t>(got);
}

size_t RealDoor::send(Handle handle, const Piece* pieces, int count, Fault& fault)
{
    WSABUF gathered[kMostPieces];
    for (int i = 0; i < count; ++i)
        gathered[i] = {static_cast<ULONG>(pieces[i].m_Size), static_cast<char*>(const_cast<void*>(pieces[i].m_Data))};
    DWORD sent = 0;
    fault = faultIf(::WSASend(handleOf(handle), gathered, static_cast<DWORD>(count), &sent, 0, nullptr, nullptr) != 0);
    return fault ? 0 : sent;
}

int RealDoor::receiveBatch(Handle handle, Datagram* datagrams, int count, Fault& fault)
{
    fault = {};
    for (int i = 0; i < count; ++i)
    {
        SystemAddress address;
        const int got = ::recvfrom(handleOf(handle), reinterpret_cast<char*>(datagrams[i].m_Data), datagrams[i].m_Size,
                                   0, &address.m_Plain, &address.m_Size);
        const int code = got < 0 ? ::WSAGetLastError() : 0;
        if (got < 0 && code != WSAEMSGSIZE)
        {
            fault = i == 0 ? faultOf(code) : Fault();
            return i;
        }
        datagrams[i].m_Peer = address.isKnown() ? address.endpoint() : Endpoint();
        datagrams[i].m_Local = Endpoint();
        datagrams[i].m_Size = got < 0 || !address.isKnown() ? -1 : got;
    }
    return count;
}

int RealDoor::sendBatch(Handle handle, const Datagram* datagrams, int count, Fault& fault)
{
    fault = {};
    const bool isMapped = isIPv6(handle);
    for (int i = 0; i < count; ++i)
    {
        SystemAddress address(datagrams[i].m_Peer);
        if (isMapped)
        {
            address.m_V6 = toIPv6(datagrams[i].m_Peer);
            address.m_Size = sizeof address.m_V6;
        }
        if (::sendto(handleOf(handle), reinterpret_cast<const char*>(datagrams[i].m_Data), datagrams[i].m_Size, 0,
                     &address.m_Plain, address.m_Size) >= 0)
            continue;
        if (i == 0)
            fault = faultIf(true);
        return i;
    }
    return count;
}

bool RealDoor::getOwnEndpoint(Handle handle, Endpoint& own)
{
    SystemAddress address;
    if (::getsockname(handleOf(handle), &address.m_Plain, &address.m_Size) != 0 || !address.isKnown())
        return false;
    own = address.endpoint();
    return true;
}

bool RealDoor::getPeerEndpoint(Handle handle, Endpoint& peer)
{
    SystemAddress address;
    if (::getpeername(handleOf(handle), &address.m_Plain, &address.m_Size) != 0 || !address.isKnown())
        return false;
    peer = address.endpoint();
    return true;
}

void RealDoor::setOption(Handle handle, Option option, int value)
{
    switch (option)
    {
    case kNoDelay:
        return setValue(handle, IPPROTO_TCP, TCP_NODELAY, value);
    case kKeepAlive:
        return setValue(handle, SOL_SOCKET, SO_KEEPALIVE, value);
    case kRebind:
        // On this system SO_REUSEADDR lets another program take over a port in use, and a restarted server gets its
        // port back without it.
        return;
    case kReceiveBuffer:
        return setValue(handle, SOL_SOCKET, SO_RCVBUF, value);
    case kSendBuffer:
        return setValue(handle, SOL_SOCKET, SO_SNDBUF, value);
    case kSharedPort:
    case kLocalAddress:
    case kCoalesce:
        return;
    }
}

void RealDoor::watchPeer(Handle handle, const NetLimits& limits)
{
    // This call sets neither the number of probes nor the time without an acknowledgement: the system's own apply.
    if (limits.m_ProbeAfter <= 0 || limits.m_ProbeEvery <= 0 || limits.m_Probes <= 0)
        return;
    tcp_keepalive probes{};
    probes.onoff = 1;
    probes.keepalivetime = static_cast<unsigned long>(limits.m_ProbeAfter) * 1000;
    probes.keepaliveinterval = static_cast<unsigned long>(limits.m_ProbeEvery) * 1000;
    DWORD ignored = 0;
    ::WSAIoctl(handleOf(handle), SIO_KEEPALIVE_VALS, &probes, sizeof probes, nullptr, 0, &ignored, nullptr, nullptr);
}

std::unique_ptr<Poller> RealDoor::makePoller()
{
    return makeRealPoller();
}

void RealDoor::resolve(const char* name, Answer answer, const Asker& asker)
{
    resolveApart(name, std::move(answer), asker);
}

} // namespace zet::inner

#include "net/door/real_door.h"

#include "net/door/addresses.h"
#include "net/door/names.h"
#include "net/door/real_poller.h"
#include "net/limits.h"

#include <netinet/tcp.h>
#include <sys/uio.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <fcntl.h>

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
    case EAGAIN:
#if EWOULDBLOCK != EAGAIN
    case EWOULDBLOCK:
#endif
        return {Fault::kNotNow, code};
    case EMFILE:
    case ENFILE:
    case ENOBUFS:
    case ENOMEM:
        return {Fault::kExhausted, code};
    case EAFNOSUPPORT:
    case EADDRNOTAVAIL:
        return {Fault::kNoAddress, code};
    default:
        return {Fault::kOther, code};
    }
}

// The result of a call; its fault where it failed.
Fault faultIf(bool hasFailed)
{
    return faultOf(hasFailed ? errno : 0);
}

// Calls again where a signal interrupted the call.
template <class Call>
auto repeat(Call call)
{
    auto result = call();
    while (result < 0 && errno == EINTR)
        result = call();
    return result;
}

int handleOf(Door::Handle handle)
{
    return static_cast<int>(handle);
}

void setValue(Door::Handle handle, int level, int name, int value)
{
    ::setsockopt(handleOf(handle), level, name, &value, sizeof value);
}

// Messages of one system call, each with one piece of memory.
class Batch
{
public:
    Batch(const Door::Datagram* datagrams, int count)
    {
        for (int i = 0; i < count; ++i)
        {
            m_Pieces[i] = {datagrams[i].m_Data, static_cast<size_t>(datagrams[i].m_Size)};
            msghdr& head = m_Messages[i].msg_hdr;
            head = {};
            head.msg_name = &m_Addresses[i].m_Plain;
            head.msg_namelen = m_Addresses[i].m_Size;
            head.msg_iov = &m_Pieces[i];
            head.msg_iovlen = 1;
        }
    }

    void wantLocal(int index)
    {
        msghdr& head = m_Messages[index].msg_hdr;
        head.msg_control = m_Controls[index].m_Bytes;
        head.msg_controllen = sizeof m_Controls[index].m_Bytes;
    }
    Endpoint getLocal(int index)
    {
        msghdr& head = m_Messages[index].msg_hdr;
        Endpoint local;
        for (cmsghdr* part = CMSG_FIRSTHDR(&head); part; part = CMSG_NXTHDR(&head, part))
            if (part->cmsg_level == IPPROTO_IP && part->cmsg_type == IP_PKTINFO)
            {
                in_pktinfo info;
                std::memcpy(&info, CMSG_DATA(part), sizeof info);
                return Endpoint::ofV4(static_cast<unsigned int>(info.ipi_spec_dst.s_addr), 0);
            }
            else if (part->cmsg_level == IPPROTO_IPV6 && part->cmsg_type == IPV6_PKTINFO)
            {
                in6_pktinfo info;
                std::memcpy(&info, CMSG_DATA(part), sizeof info);
                local = Endpoint::ofV6(&info.ipi6_addr, 0, static_cast<unsigned int>(info.ipi6_ifindex));
            }
        return local;
    }
    void setPeer(int index, const Endpoint& peer)
    {
        m_Addresses[index].set(peer);
        m_Messages[index].msg_hdr.msg_namelen = m_Addresses[index].m_Size;
    }
    void setLocal(int index, const Endpoint& local)
    {
        if (local.isV4())
        {
            in_pktinfo info{};
            info.ipi_spec_dst.s_addr = local.v4();
            setControl(index, IPPROTO_IP, IP_PKTINFO, info);
            return;
        }
        in6_pktinfo info{};
        std::memcpy(&info.ipi6_addr, local.m_Bytes, sizeof local.m_Bytes);
        info.ipi6_ifindex = local.m_Scope;
        setControl(index, IPPROTO_IPV6, IPV6_PKTINFO, info);
    }

    mmsghdr m_Messages[Door::kMostDatagrams];
    SystemAddress m_Addresses[Door::kMostDatagrams];

private:
    // A socket of both families reports an IPv4 address in both forms.
    struct alignas(cmsghdr) Control
    {
        unsigned char m_Bytes[CMSG_SPACE(sizeof(in_pktinfo)) + CMSG_SPACE(sizeof(in6_pktinfo))];
    };

    template <class Info>
    void setControl(int index, int level, int type, const Info& info)
    {
        msghdr& head = m_Messages[index].msg_hdr;
        head.msg_control = m_Controls[index].m_Bytes;
        head.msg_controllen = CMSG_SPACE(sizeof info);
        cmsghdr* const part = CMSG_FIRSTHDR(&head);
        part->cmsg_level = level;
        part->cmsg_type = type;
        part->cmsg_len = CMSG_LEN(sizeof info);
        std::memcpy(CMSG_DATA(part), &info, sizeof info);
    }

    iovec m_Pieces[Door::kMostDatagrams];
    Control m_Controls[Door::kMostDatagrams];
};

} // namespace

void startSystem() {}

const std::shared_ptr<Door>& Door::getReal()
{
    static const std::shared_ptr<Door> door = std::make_shared<RealDoor>();
    return door;
}

std::string Door::getHostName()
{
    char name[1024];
    return ::gethostname(name, sizeof name) == 0 ? std::string(name, ::strnlen(name, sizeof name)) : std::string();
}

Door::Handle RealDoor::open(Kind kind, Family family, Fault& fault)
{
    const int type = kind == kStream ? SOCK_STREAM : SOCK_DGRAM;
    const int handle = ::socket(family == kIPv4 ? AF_INET : AF_INET6, type | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    const int off = 0;
    fault = faultIf(handle < 0);
    if (!fault && family == kBoth)
        fault = faultIf(::setsockopt(handle, IPPROTO_IPV6, IPV6_V6ONLY, &off, sizeof off) < 0);
    if (fault && handle >= 0)
        ::close(handle);
    return fault ? kNoHandle : static_cast<Handle>(handle);
}

void RealDoor::close(Handle handle)
{
    ::close(handleOf(handle));
}

Fault RealDoor::unblock(Handle handle)
{
    const int flags = ::fcntl(handleOf(handle), F_GETFL);
    return faultIf(flags < 0 || (!(flags & O_NONBLOCK) && ::fcntl(handleOf(handle), F_SETFL, flags | O_NONBLOCK) < 0));
}

Fault RealDoor::bind(Handle handle, const Endpoint& own)
{
    const SystemAddress address(own);
    return faultIf(::bind(handleOf(handle), &address.m_Plain, address.m_Size) < 0);
}

Fault RealDoor::listen(Handle handle, int backlog)
{
    return faultIf(::listen(handleOf(handle), backlog > 0 ? backlog : SOMAXCONN) < 0);
}

Door::Handle RealDoor::accept(Handle listener, Endpoint& peer, Fault& fault)
{
    SystemAddress address;
    const int handle = repeat(
        [&] { return ::accept4(handleOf(listener), &address.m_Plain, &address.m_Size, SOCK_CLOEXEC | SOCK_NONBLOCK); });
    fault = faultIf(handle < 0);
    if (handle >= 0)
        peer = address.isKnown() ? address.endpoint() : Endpoint();
    return static_cast<Handle>(handle);
}

Fault RealDoor::connect(Handle handle, const Endpoint& peer)
{
    const SystemAddress address(peer);
    // One that a signal has interrupted goes on by itself.
    return faultIf(::connect(handleOf(handle), &address.m_Plain, address.m_Size) < 0 && errno != EINPROGRESS &&
                   errno != EINTR);
}

Fault RealDoor::endConnect(Handle handle)
{
    int code = 0;
    socklen_t size = sizeof code;
    if (::getsockopt(handleOf(handle), SOL_SOCKET, SO_ERROR, &code, &size) < 0)
        code = errno;
    return faultOf(code);
}

size_t RealDoor::receive(Handle handle, void* data, size_t size, Fault& fault)
{
    const ssize_t got = repeat([&] { return ::recv(handleOf(handle), data, size, 0); });
    fault = faultIf(got < 0);
    return got < 0 ? 0 : static_cast<size_t>(got);
}

size_t RealDoor::send(Handle handle, const Piece* pieces, int count, Fault& fault)
{
    ssize_t sent = 0;
    if (count == 1)
    {
        // A piece alone goes by the plain call, which costs less on both sides of it.
        sent = repeat([&] { return ::send(handleOf(handle), pieces->m_Data, pieces->m_Size, MSG_NOSIGNAL); });
    }
    else
    {
        iovec gathered[kMostPieces];
        for (int i = 0; i < count; ++i)
            gathered[i] = {const_cast<void*>(pieces[i].m_Data), pieces[i].m_Size};
        msghdr message{};
        message.msg_iov = gathered;
        message.msg_iovlen = static_cast<decltype(message.msg_iovlen)>(count);
        sent = repeat([&] { return ::sendmsg(handleOf(handle), &message, MSG_NOSIGNAL); });
    }
    fault = faultIf(sent < 0);
    return sent < 0 ? 0 : static_cast<size_t>(sent);
}

int RealDoor::receiveBatch(Handle handle, Datagram* datagrams, int count, Fault& fault)
{
    Batch batch(datagrams, count);
    for (int i = 0; i < count; ++i)
        batch.wantLocal(i);
    const int got = repeat(
        [&] {
            return ::recvmmsg(handleOf(handle), batch.m_Messages, static_cast<unsigned int>(count), MSG_DONTWAIT,
                              nullptr);
        });
    fault = faultIf(got < 0);
    for (int i = 0; i < got; ++i)
    {
        const mmsghdr& message = batch.m_Messages[i];
        SystemAddress& from = batch.m_Addresses[i];
        from.m_Size = message.msg_hdr.msg_namelen;
        const bool isWhole = !(message.msg_hdr.msg_flags & MSG_TRUNC) && from.isKnown();
        datagrams[i].m_Peer = from.isKnown() ? from.endpoint() : Endpoint();
        datagrams[i].m_Local = batch.getLocal(i);
        datagrams[i].m_Size = isWhole ? static_cast<int>(message.msg_len) : -1;
    }
    return std::max(got, 0);
}

int RealDoor::sendBatch(Handle handle, const Datagram* datagrams, int count, Fault& fault)
{
    Batch batch(datagrams, count);
    for (int i = 0; i < count; ++i)
    {
        // The system takes an IPv4 address in its own form on a socket of both families, too.
        batch.setPeer(i, datagrams[i].m_Peer);
        if (!datagrams[i].m_Local.isAny())
            batch.setLocal(i, datagrams[i].m_Local);
    }
    const int sent = repeat(
        [&] { return ::sendmmsg(handleOf(handle), batch.m_Messages, static_cast<unsigned int>(count), MSG_DONTWAIT); });
    fault = faultIf(sent < 0);
    return std::max(sent, 0);
}

bool RealDoor::getOwnEndpoint(Handle handle, Endpoint& own)
{
    SystemAddress address;
    if (::getsockname(handleOf(handle), &address.m_Plain, &address.m_Size) < 0 || !address.isKnown())
        return false;
    own = address.endpoint();
    return true;
}

bool RealDoor::getPeerEndpoint(Handle handle, Endpoint& peer)
{
    SystemAddress address;
    if (::getpeername(handleOf(handle), &address.m_Plain, &address.m_Size) < 0 || !address.isKnown())
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
        return setValue(handle, SOL_SOCKET, SO_REUSEADDR, value);
    case kReceiveBuffer:
        return setValue(handle, SOL_SOCKET, SO_RCVBUF, value);
    case kSendBuffer:
        return setValue(handle, SOL_SOCKET, SO_SNDBUF, value);
    case kLocalAddress:
        // On a socket of both families, both; one of IPv4 alone does not have the second.
        setValue(handle, IPPROTO_IP, IP_PKTINFO, value);
        return setValue(handle, IPPROTO_IPV6, IPV6_RECVPKTINFO, value);
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

std::unique_ptr<Poller> RealDoor::makePoller()
{
    return makeRealPoller();
}

void RealDoor::resolve(const char* name, Answer answer, const Asker& asker)
{
    resolveApart(name, std::move(answer), asker);
}

} // namespace zet::inner

#include "net/door/real_door.h"

#include "net/door/addresses.h"
#include "net/door/names.h"
#include "net/door/real_poller.h"
#include "net/limits.h"

#include <netinet/tcp.h>
#include <netinet/udp.h>
#include <sys/uio.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <numeric>

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
    case ECONNREFUSED:
        return {Fault::kRefused, code};
    case ECONNRESET:
    case ECONNABORTED:
    case EPIPE:
        return {Fault::kReset, code};
    case ETIMEDOUT:
        return {Fault::kTimedOut, code};
    case ENETUNREACH:
    case EHOSTUNREACH:
    case ENETDOWN:
        return {Fault::kUnreachable, code};
    case EADDRINUSE:
        return {Fault::kInUse, code};
    case EACCES:
    case EPERM:
        return {Fault::kNotPermitted, code};
    default:
        return {Fault::kOther, code};
    }
}

// The fault of a call that has failed, or no fault.
Fault faultIf(bool hasFailed)
{
    return faultOf(hasFailed ? errno : 0);
}

// Repeats the call while a signal interrupts it.
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

// The messages of one system call. Each has the memory of one datagram, or of several.
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

    // Adds to a message of a receive the memory for what the options of the socket report.
    void wantControl(int index)
    {
        msghdr& head = m_Messages[index].msg_hdr;
        head.msg_control = m_Controls[index].m_Bytes;
        head.msg_controllen = sizeof m_Controls[index].m_Bytes;
    }
    Endpoint getLocal(int index)
    {
        in_pktinfo v4{};
        if (find(index, IPPROTO_IP, IP_PKTINFO, v4))
            return Endpoint::ofV4(static_cast<unsigned int>(v4.ipi_spec_dst.s_addr), 0);
        in6_pktinfo v6{};
        if (find(index, IPPROTO_IPV6, IPV6_PKTINFO, v6))
            return Endpoint::ofV6(&v6.ipi6_addr, 0, static_cast<unsigned int>(v6.ipi6_ifindex));
        return Endpoint();
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
            add(index, IPPROTO_IP, IP_PKTINFO, info);
            return;
        }
        in6_pktinfo info{};
        std::memcpy(&info.ipi6_addr, local.m_Bytes, sizeof local.m_Bytes);
        info.ipi6_ifindex = local.m_Scope;
        add(index, IPPROTO_IPV6, IPV6_PKTINFO, info);
    }
#ifdef UDP_SEGMENT
    int getSegment(int index)
    {
        int size = 0;
        find(index, IPPROTO_UDP, UDP_GRO, size);
        return size;
    }
    // Makes a message of count datagrams, from the first one on. If there are several, the system cuts them apart again
    // after each size bytes.
    void setSegments(int index, int first, int count, int size)
    {
        msghdr& head = m_Messages[index].msg_hdr;
        head.msg_iov = &m_Pieces[first];
        head.msg_iovlen = static_cast<decltype(head.msg_iovlen)>(count);
        if (count > 1)
            add(index, IPPROTO_UDP, UDP_SEGMENT, static_cast<uint16_t>(size));
    }
#endif

    mmsghdr m_Messages[Door::kMostDatagrams];
    SystemAddress m_Addresses[Door::kMostDatagrams];

private:
    // A socket of both families reports an IPv4 address in both forms.
    struct alignas(cmsghdr) Control
    {
        unsigned char
            m_Bytes[CMSG_SPACE(sizeof(in_pktinfo)) + CMSG_SPACE(sizeof(in6_pktinfo)) + CMSG_SPACE(sizeof(int))];
    };

    template <class Value>
    bool find(int index, int level, int type, Value& value)
    {
        msghdr& head = m_Messages[index].msg_hdr;
        for (cmsghdr* part = CMSG_FIRSTHDR(&head); part; part = CMSG_NXTHDR(&head, part))
            if (part->cmsg_level == level && part->cmsg_type == type && part->cmsg_len >= CMSG_LEN(sizeof value))
            {
                std::memcpy(&value, CMSG_DATA(part), sizeof value);
                return true;
            }
        return false;
    }
    template <class Value>
    void add(int index, int level, int type, const Value& value)
    {
        msghdr& head = m_Messages[index].msg_hdr;
        head.msg_control = m_Controls[index].m_Bytes;
        auto* const part = reinterpret_cast<cmsghdr*>(m_Controls[index].m_Bytes + head.msg_controllen);
        part->cmsg_level = level;
        part->cmsg_type = type;
        part->cmsg_len = CMSG_LEN(sizeof value);
        std::memcpy(CMSG_DATA(part), &value, sizeof value);
        head.msg_controllen += CMSG_SPACE(sizeof value);
    }

    iovec m_Pieces[Door::kMostDatagrams];
    Control m_Controls[Door::kMostDatagrams];
};

#ifdef UDP_SEGMENT
// The maximum bytes of a buffer that the system cuts: those of one datagram.
constexpr int kMostSegmented = 65507;

// The number of datagrams, from the first one on, that one buffer can hold.
int countSegments(const Door::Datagram* datagrams, int count)
{
    const Door::Datagram& first = datagrams[0];
    int bytes = first.m_Size;
    int segments = 1;
    while (segments < count && datagrams[segments - 1].m_Size == first.m_Size)
    {
        const Door::Datagram& next = datagrams[segments];
        bytes += next.m_Size;
        if (!(next.m_Peer == first.m_Peer) || !(next.m_Local == first.m_Local) || next.m_Size > first.m_Size ||
            next.m_Size == 0 || bytes > kMostSegmented)
            break;
        ++segments;
    }
    return segments;
}
#endif

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
    // A call that a signal interrupts continues in the background.
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
        // For a single piece, send() costs less than sendmsg(), here and in the system.
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
        batch.wantControl(i);
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
#ifdef UDP_SEGMENT
        datagrams[i].m_Segment = batch.getSegment(i);
#endif
    }
    return std::max(got, 0);
}

int RealDoor::sendBatch(Handle handle, const Datagram* datagrams, int count, Fault& fault)
{
    Batch batch(datagrams, count);
    for (int i = 0; i < count; ++i)
    {
        // A socket of both families accepts an IPv4 address without mapping too.
        batch.setPeer(i, datagrams[i].m_Peer);
        if (!datagrams[i].m_Local.isAny())
            batch.setLocal(i, datagrams[i].m_Local);
    }
    const int sent = repeat(
        [&] { return ::sendmmsg(handleOf(handle), batch.m_Messages, static_cast<unsigned int>(count), MSG_DONTWAIT); });
    fault = faultIf(sent < 0);
    return std::max(sent, 0);
}

#ifdef UDP_SEGMENT
bool RealDoor::canSegment(Handle handle)
{
    int size = 0;
    socklen_t space = sizeof size;
    // A system that does not know the option would ignore it in a message too, and fragment the buffer.
    return ::getsockopt(handleOf(handle), IPPROTO_UDP, UDP_SEGMENT, &size, &space) == 0;
}

int RealDoor::sendSegmented(Handle handle, const Datagram* datagrams, int count, Fault& fault)
{
    Batch batch(datagrams, count);
    int counts[kMostDatagrams];
    int messages = 0;
    for (int first = 0; first < count; first += counts[messages++])
    {
        counts[messages] = countSegments(datagrams + first, count - first);
        batch.setPeer(messages, datagrams[first].m_Peer);
        if (!datagrams[first].m_Local.isAny())
            batch.setLocal(messages, datagrams[first].m_Local);
        batch.setSegments(messages, first, counts[messages], datagrams[first].m_Size);
    }
    const int sent = repeat(
        [&]
        { return ::sendmmsg(handleOf(handle), batch.m_Messages, static_cast<unsigned int>(messages), MSG_DONTWAIT); });
    fault = faultIf(sent < 0);
    // EIO: the network device cannot cut. EINVAL concerns these datagrams only: they are too long for the path to this
    // peer.
    if (sent < 0 && counts[0] > 1 && fault.m_Code == EIO)
        fault.m_Reason = Fault::kNotSegmented;
    return std::accumulate(counts, counts + std::max(sent, 0), 0);
}
#else
bool RealDoor::canSegment(Handle)
{
    return false;
}

int RealDoor::sendSegmented(Handle handle, const Datagram* datagrams, int count, Fault& fault)
{
    return sendBatch(handle, datagrams, count, fault);
}
#endif

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

std::unique_ptr<Poller> RealDoor::makePoller()
{
    return makeRealPoller();
}

void RealDoor::resolve(const char* name, Answer answer, const Asker& asker)
{
    resolveApart(name, std::move(answer), asker);
}

} // namespace zet::inner

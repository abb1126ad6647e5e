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

// Messages of one system call. Each has one piece of memory, or the pieces of several datagrams.
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
            head.msg_name = &m_Addresses[i];
            head.msg_namelen = sizeof m_Addresses[i];
            head.msg_iov = &m_Pieces[i];
            head.msg_iovlen = 1;
        }
    }

    // Lets a message of a receive give what the options ask for.
    void wantControl(int index)
    {
        msghdr& head = m_Messages[index].msg_hdr;
        head.msg_control = m_Controls[index].m_Bytes;
        head.msg_controllen = sizeof m_Controls[index].m_Bytes;
    }
    unsigned int getLocal(int index)
    {
        in_pktinfo info{};
        find(index, IPPROTO_IP, IP_PKTINFO, info);
        return static_cast<unsigned int>(info.ipi_spec_dst.s_addr);
    }
    void setLocal(int index, unsigned int local)
    {
        in_pktinfo info{};
        info.ipi_spec_dst.s_addr = local;
        add(index, IPPROTO_IP, IP_PKTINFO, info);
    }
#ifdef UDP_SEGMENT
    int getSegment(int index)
    {
        int size = 0;
        find(index, IPPROTO_UDP, UDP_GRO, size);
        return size;
    }
    // A message takes the pieces of this many datagrams; the system cuts them apart again where they are several.
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
    sockaddr_in m_Addresses[Door::kMostDatagrams];

private:
    struct alignas(cmsghdr) Control
    {
        unsigned char m_Bytes[CMSG_SPACE(sizeof(in_pktinfo)) + CMSG_SPACE(sizeof(int))];
    };

    template <class Value>
    void find(int index, int level, int type, Value& value)
    {
        msghdr& head = m_Messages[index].msg_hdr;
        for (cmsghdr* part = CMSG_FIRSTHDR(&head); part; part = CMSG_NXTHDR(&head, part))
            if (part->cmsg_level == level && part->cmsg_type == type && part->cmsg_len >= CMSG_LEN(sizeof value))
                std::memcpy(&value, CMSG_DATA(part), sizeof value);
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
// Bytes of one buffer that the system cuts; it must fit a datagram itself.
constexpr int kMostSegmented = 65507;

// Datagrams from the first one on that one buffer can hold.
int countSegments(const Door::Datagram* datagrams, int count)
{
    const Door::Datagram& first = datagrams[0];
    int bytes = first.m_Size;
    int segments = 1;
    while (segments < count && datagrams[segments - 1].m_Size == first.m_Size)
    {
        const Door::Datagram& next = datagrams[segments];
        bytes += next.m_Size;
        if (next.m_Peer != first.m_Peer || next.m_Local != first.m_Local || next.m_Size > first.m_Size ||
            next.m_Size == 0 || bytes > kMostSegmented)
            break;
        ++segments;
    }
    return segments;
}
#endif

std::vector<Endpoint> askSystem(const char* name)
{
    addrinfo wanted{};
    wanted.ai_family = AF_INET;
    wanted.ai_socktype = SOCK_STREAM;
    addrinfo* first = nullptr;
    if (::getaddrinfo(name, nullptr, &wanted, &first) != 0)
        return {};
    const std::unique_ptr<addrinfo, void (*)(addrinfo*)> owner(first, ::freeaddrinfo);
    std::vector<Endpoint> found;
    for (const addrinfo* each = first; each; each = each->ai_next)
        found.push_back(fromSystem(*reinterpret_cast<const sockaddr_in*>(each->ai_addr)));
    return found;
}

} // namespace

const std::shared_ptr<Door>& Door::getReal()
{
    static const std::shared_ptr<Door> door = std::make_shared<RealDoor>();
    return door;
}

bool Door::parse(const char* text, unsigned short port, Endpoint& endpoint)
{
    in_addr address;
    if (::inet_pton(AF_INET, text, &address) != 1)
        return false;
    endpoint = Endpoint::ofV4(static_cast<unsigned int>(address.s_addr), port);
    return true;
}

hostent* Door::getHostByName(const char* name)
{
    return ::gethostbyname(name);
}

unsigned int Door::getAddress(const char* text)
{
    return static_cast<unsigned int>(::inet_addr(text));
}

std::string Door::getHostName()
{
    char name[1024];
    return ::gethostname(name, sizeof name) == 0 ? std::string(name, ::strnlen(name, sizeof name)) : std::string();
}

Door::Handle RealDoor::open(Kind kind, Fault& fault)
{
    const int type = kind == kStream ? SOCK_STREAM : SOCK_DGRAM;
    const int handle = ::socket(AF_INET, type | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    fault = faultIf(handle < 0);
    return static_cast<Handle>(handle);
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
    const sockaddr_in address = toSystem(own);
    return faultIf(::bind(handleOf(handle), plain(address), sizeof address) < 0);
}

Fault RealDoor::listen(Handle handle, int backlog)
{
    return faultIf(::listen(handleOf(handle), backlog > 0 ? backlog : SOMAXCONN) < 0);
}

Door::Handle RealDoor::accept(Handle listener, Endpoint& peer, Fault& fault)
{
    sockaddr_in address{};
    socklen_t size = sizeof address;
    const int handle =
        repeat([&] { return ::accept4(handleOf(listener), plain(address), &size, SOCK_CLOEXEC | SOCK_NONBLOCK); });
    fault = faultIf(handle < 0);
    if (handle >= 0)
        peer = fromSystem(address);
    return static_cast<Handle>(handle);
}

Fault RealDoor::connect(Handle handle, const Endpoint& peer)
{
    const sockaddr_in address = toSystem(peer);
    // One that a signal has interrupted goes on by itself.
    return faultIf(::connect(handleOf(handle), plain(address), sizeof address) < 0 && errno != EINPROGRESS &&
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
        const bool isWhole =
            !(message.msg_hdr.msg_flags & MSG_TRUNC) && message.msg_hdr.msg_namelen >= sizeof(sockaddr_in);
        datagrams[i].m_Peer = fromSystem(batch.m_Addresses[i]);
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
        batch.m_Addresses[i] = toSystem(datagrams[i].m_Peer);
        if (datagrams[i].m_Local != 0)
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
        batch.m_Addresses[messages] = toSystem(datagrams[first].m_Peer);
        if (datagrams[first].m_Local != 0)
            batch.setLocal(messages, datagrams[first].m_Local);
        batch.setSegments(messages, first, counts[messages], datagrams[first].m_Size);
    }
    const int sent = repeat(
        [&]
        { return ::sendmmsg(handleOf(handle), batch.m_Messages, static_cast<unsigned int>(messages), MSG_DONTWAIT); });
    fault = faultIf(sent < 0);
    // What the system says where the way out cannot cut, or where a segment does not fit it.
    if (sent < 0 && counts[0] > 1 && (fault.m_Code == EIO || fault.m_Code == EINVAL))
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
    sockaddr_in address{};
    socklen_t size = sizeof address;
    if (::getsockname(handleOf(handle), plain(address), &size) < 0 || address.sin_family != AF_INET)
        return false;
    own = fromSystem(address);
    return true;
}

bool RealDoor::getPeerEndpoint(Handle handle, Endpoint& peer)
{
    sockaddr_in address{};
    socklen_t size = sizeof address;
    if (::getpeername(handleOf(handle), plain(address), &size) < 0 || address.sin_family != AF_INET)
        return false;
    peer = fromSystem(address);
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
        return setValue(handle, IPPROTO_IP, IP_PKTINFO, value);
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

std::unique_ptr<Poller> RealDoor::makePoller()
{
    return makeRealPoller();
}

void RealDoor::resolve(const char* name, Answer answer)
{
    resolveApart(name, askSystem, std::move(answer));
}

} // namespace zet::inner

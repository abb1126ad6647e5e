#include "transport/net/inner/udp_port.h"

#include "transport/net/inner/native_handle.h"

#include <netinet/in.h>
#include <sys/socket.h>
#include <sys/uio.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

namespace zet::inner
{

namespace
{

// What the operating system may hold of what comes and goes, as far as it allows: a tick may be late.
constexpr int kSocketBuffer = 4 * 1024 * 1024;

// Messages of one system call, each with one piece of memory.
struct Batch
{
    void prepare(int index, int size)
    {
        m_Pieces[index] = {m_Bytes[index], static_cast<size_t>(size)};
        msghdr& head = m_Messages[index].msg_hdr;
        head = {};
        head.msg_name = &m_Addresses[index];
        head.msg_namelen = sizeof m_Addresses[index];
        head.msg_iov = &m_Pieces[index];
        head.msg_iovlen = 1;
    }

    // The address of ours that a datagram came to, or is to come from.
    struct alignas(cmsghdr) Control
    {
        unsigned char m_Bytes[CMSG_SPACE(sizeof(in_pktinfo))];
    };
    void wantLocal(int index)
    {
        msghdr& head = m_Messages[index].msg_hdr;
        head.msg_control = m_Controls[index].m_Bytes;
        head.msg_controllen = sizeof m_Controls[index].m_Bytes;
    }
    unsigned int getLocal(int index)
    {
        msghdr& head = m_Messages[index].msg_hdr;
        for (cmsghdr* part = CMSG_FIRSTHDR(&head); part; part = CMSG_NXTHDR(&head, part))
            if (part->cmsg_level == IPPROTO_IP && part->cmsg_type == IP_PKTINFO)
            {
                in_pktinfo info;
                std::memcpy(&info, CMSG_DATA(part), sizeof info);
                return static_cast<unsigned int>(info.ipi_spec_dst.s_addr);
            }
        return 0;
    }
    void setLocal(int index, unsigned int local)
    {
        if (local == 0)
            return;
        wantLocal(index);
        in_pktinfo info{};
        info.ipi_spec_dst.s_addr = local;
        cmsghdr* const part = CMSG_FIRSTHDR(&m_Messages[index].msg_hdr);
        part->cmsg_level = IPPROTO_IP;
        part->cmsg_type = IP_PKTINFO;
        part->cmsg_len = CMSG_LEN(sizeof info);
        std::memcpy(CMSG_DATA(part), &info, sizeof info);
    }

    mmsghdr m_Messages[UdpPort::kBatch];
    Control m_Controls[UdpPort::kBatch];
    unsigned int m_Locals[UdpPort::kBatch];
    iovec m_Pieces[UdpPort::kBatch];
    sockaddr_in m_Addresses[UdpPort::kBatch];
    unsigned char m_Bytes[UdpPort::kBatch][UdpPort::kMostBytes];
};

} // namespace

struct UdpPort::Batches
{
    Batch m_In;
    Batch m_Out;
};

UdpPort::UdpPort(Reactor& reactor)
    : m_Poller(reactor.poller()), m_Socket(reactor.context().get_executor()), m_Batches(new Batches)
{
}

UdpPort::~UdpPort()
{
    unwatch();
}

Ref<UdpPort> UdpPort::open(const std::shared_ptr<Reactor>& reactor, unsigned short port, unsigned int handle)
{
    using asio::ip::udp;
    const Ref<UdpPort> made(new UdpPort(*reactor));
    asio::error_code fault;
    if (handle != zet::Socket::kNoHandle)
    {
        made->m_Socket.assign(udp::v4(), static_cast<Socket::native_handle_type>(handle), fault);
    }
    else
    {
        openSocket(made->m_Socket, udp::v4(), fault);
        if (!fault)
            made->m_Socket.bind(udp::endpoint(udp::v4(), port), fault);
        asio::error_code ignored;
        made->m_Socket.set_option(asio::socket_base::receive_buffer_size(kSocketBuffer), ignored);
        made->m_Socket.set_option(asio::socket_base::send_buffer_size(kSocketBuffer), ignored);
    }
    if (fault)
        return Ref<UdpPort>();
    if (made->prepare())
        return made;
    if (handle != zet::Socket::kNoHandle)
        made->m_Socket.release(fault);
    return Ref<UdpPort>();
}

bool UdpPort::prepare()
{
    asio::error_code fault;
    m_Socket.non_blocking(true, fault);
    if (fault)
        return false;
    // An answer leaves from the address that was asked. Where the system cannot tell, it chooses.
    const int on = 1;
    ::setsockopt(m_Socket.native_handle(), IPPROTO_IP, IP_PKTINFO, &on, sizeof on);
    const auto self = m_Socket.local_endpoint(fault);
    if (fault || !self.address().is_v4())
        return false;
    m_Address = *reinterpret_cast<const sockaddr_in*>(self.data());
    m_IsWatched = m_Poller.add(m_Socket.native_handle(), *this, kReadyInput);
    return m_IsWatched;
}

void UdpPort::close()
{
    unwatch();
    asio::error_code ignored;
    m_Socket.close(ignored);
}

unsigned int UdpPort::detach()
{
    unwatch();
    asio::error_code fault;
    const auto handle = m_Socket.release(fault);
    return fault ? zet::Socket::kNoHandle : static_cast<unsigned int>(handle);
}

void UdpPort::unwatch()
{
    if (m_IsWatched)
        m_Poller.remove(*this);
    m_IsWatched = false;
}

void UdpPort::waitForOutput()
{
    m_IsBlocked = true;
    m_Poller.want(*this, kReadyOutput);
}

void UdpPort::onReady(unsigned char ready)
{
    if (ready & kReadyInput)
        m_IsReadable = true;
    if (ready & kReadyOutput)
        m_IsBlocked = false;
}

bool UdpPort::receive(Datagram& datagram)
{
    if (m_Next == m_Received && !receiveBatch())
        return false;
    datagram = getDatagram(m_Next++);
    return true;
}

bool UdpPort::receiveBatch()
{
    m_Next = m_Received = 0;
    if (!m_IsReadable)
        return false;
    Batch& in = m_Batches->m_In;
    for (int i = 0; i < kBatch; ++i)
    {
        in.prepare(i, kMostBytes);
        in.wantLocal(i);
    }
    const auto take = [&]
    { return ::recvmmsg(m_Socket.native_handle(), in.m_Messages, kBatch, MSG_DONTWAIT, nullptr); };
    int count = take();
    // A fault is that of an earlier datagram, and told once; something may lie behind it.
    if (count < 0 && errno != EAGAIN && errno != EWOULDBLOCK)
        count = take();
    // The next edge comes without being asked for.
    m_IsReadable = count == kBatch;
    m_Received = std::max(count, 0);
    return m_Received > 0;
}

UdpPort::Datagram UdpPort::getDatagram(int index) const
{
    Batch& in = m_Batches->m_In;
    const mmsghdr& message = in.m_Messages[index];
    const bool isWhole = !(message.msg_hdr.msg_flags & MSG_TRUNC) && message.msg_hdr.msg_namelen >= sizeof(sockaddr_in);
    return {&in.m_Addresses[index], in.getLocal(index), in.m_Bytes[index],
            isWhole ? static_cast<int>(message.msg_len) : -1};
}

unsigned char* UdpPort::room()
{
    if (m_Unsent == kBatch)
        flush();
    return m_Unsent < kBatch && !m_IsBlocked ? m_Batches->m_Out.m_Bytes[m_Unsent] : nullptr;
}

void UdpPort::commit(const sockaddr_in& address, int size, unsigned int local)
{
    Batch& out = m_Batches->m_Out;
    out.m_Addresses[m_Unsent] = address;
    out.m_Locals[m_Unsent] = local;
    out.prepare(m_Unsent, size);
    out.setLocal(m_Unsent, local);
    ++m_Unsent;
}

void UdpPort::flush()
{
    Batch& out = m_Batches->m_Out;
    int at = 0;
    while (at < m_Unsent && !m_IsBlocked)
    {
        const int sent = ::sendmmsg(m_Socket.native_handle(), out.m_Messages + at,
                                    static_cast<unsigned int>(m_Unsent - at), MSG_DONTWAIT);
        if (sent > 0)
            at += sent;
        else if (errno == EAGAIN || errno == EWOULDBLOCK || errno == ENOBUFS)
            waitForOutput();
        else if (errno != EINTR)
            // No way to this address: the datagram is lost, as others are on the road.
            ++at;
    }
    if (at == 0 || m_Unsent == 0)
        return;
    // What is left keeps its order, at the front.
    for (int i = at; i < m_Unsent; ++i)
    {
        const int to = i - at;
        std::swap(out.m_Bytes[to], out.m_Bytes[i]);
        out.m_Addresses[to] = out.m_Addresses[i];
        out.m_Locals[to] = out.m_Locals[i];
        out.prepare(to, static_cast<int>(out.m_Pieces[i].iov_len));
        out.setLocal(to, out.m_Locals[to]);
    }
    m_Unsent -= at;
}

} // namespace zet::inner

#include "net/quic/inner/udp_port.h"

#include <algorithm>

namespace zet::inner
{

namespace
{

struct Batch
{
    Batch()
    {
        for (int i = 0; i < UdpPort::kBatch; ++i)
            m_Datagrams[i].m_Data = m_Bytes[i];
    }

    Door::Datagram m_Datagrams[UdpPort::kBatch];
    unsigned char m_Bytes[UdpPort::kBatch][UdpPort::kMostBytes];
};

} // namespace

struct UdpPort::Batches
{
    Batch m_In;
    Batch m_Out;
};

UdpPort::UdpPort(Reactor& reactor) : Watched(reactor, Door::kNoHandle), m_Batches(new Batches) {}

UdpPort::~UdpPort() = default;

Ref<UdpPort> UdpPort::open(const std::shared_ptr<Reactor>& reactor, DoorHandle& handle)
{
    const Ref<UdpPort> made(new UdpPort(*reactor));
    made->take(handle.release());
    if (made->start())
        return made;
    handle.set(made->giveAway());
    return Ref<UdpPort>();
}

bool UdpPort::start()
{
    // An answer leaves from the address that was asked. Where the system does not report it, the system chooses.
    door().setOption(getHandle(), Door::kLocalAddress, 1);
    return door().getOwnEndpoint(getHandle(), m_Address) && startWatch(kReadyInput);
}

void UdpPort::waitForOutput()
{
    m_IsBlocked = true;
    poller().want(*this, kReadyOutput);
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
    auto& in = m_Batches->m_In.m_Datagrams;
    for (Door::Datagram& each : in)
        each.m_Size = kMostBytes;
    Door::Fault fault;
    m_Received = door().receiveBatch(getHandle(), in, kBatch, fault);
    // A fault is that of an earlier datagram, and reported once; something may follow it.
    if (fault && fault.m_Reason != Door::Fault::kNotNow)
        m_Received = door().receiveBatch(getHandle(), in, kBatch, fault);
    // The next edge comes without being asked for.
    m_IsReadable = m_Received == kBatch;
    return m_Received > 0;
}

UdpPort::Datagram UdpPort::getDatagram(int index)
{
    const Door::Datagram& in = m_Batches->m_In.m_Datagrams[index];
    return {&in.m_Peer, in.m_Local, in.m_Data, in.m_Size};
}

unsigned char* UdpPort::room()
{
    if (m_Unsent == kBatch)
        flush();
    return m_Unsent < kBatch && !m_IsBlocked ? m_Batches->m_Out.m_Datagrams[m_Unsent].m_Data : nullptr;
}

void UdpPort::commit(const Endpoint& peer, int size, const Endpoint& local)
{
    Door::Datagram& out = m_Batches->m_Out.m_Datagrams[m_Unsent++];
    out.m_Peer = peer;
    out.m_Local = local;
    out.m_Size = size;
}

void UdpPort::flush()
{
    auto& out = m_Batches->m_Out.m_Datagrams;
    int at = 0;
    while (at < m_Unsent && !m_IsBlocked)
    {
        Door::Fault fault;
        at += door().sendBatch(getHandle(), out + at, m_Unsent - at, fault);
        if (fault.m_Reason == Door::Fault::kNotNow || fault.m_Reason == Door::Fault::kExhausted)
            waitForOutput();
        else if (fault)
            // This address cannot be reached: the datagram is lost, as others are on the network.
            ++at;
    }
    // The rest keeps its order, at the front; the bytes stay where they are.
    if (at > 0)
        std::rotate(out, out + at, out + m_Unsent);
    m_Unsent -= at;
}

} // namespace zet::inner

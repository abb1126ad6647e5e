#include "net/quic/inner/udp_port.h"

#include <algorithm>

namespace zet::inner
{

namespace
{

// Received datagrams touch only the memory that they fill.
template <int Size>
struct Batch
{
    Batch()
    {
        for (int i = 0; i < UdpPort::kBatch; ++i)
            m_Datagrams[i].m_Data = m_Bytes[i];
    }

    Door::Datagram m_Datagrams[UdpPort::kBatch];
    unsigned char m_Bytes[UdpPort::kBatch][Size];
};

} // namespace

struct UdpPort::Batches
{
    Batch<Door::kMostCoalesced> m_In;
    Batch<kMostBytes> m_Out;
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
    // A reply is sent from the address at which the peer sent its datagram. If the system does not report that address,
    // it chooses one.
    door().setOption(getHandle(), Door::kLocalAddress, 1);
    door().setOption(getHandle(), Door::kCoalesce, kHasFastPaths);
    m_CanSegment = kHasFastPaths && door().canSegment(getHandle());
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

Door::Handle UdpPort::giveAway()
{
    door().setOption(getHandle(), Door::kCoalesce, 0);
    return Watched::giveAway();
}

bool UdpPort::receive(Datagram& datagram)
{
    if (m_Next.m_Index == m_Received && !receiveBatch())
        return false;
    datagram = takeDatagram();
    return true;
}

bool UdpPort::receiveBatch()
{
    m_Next = Place();
    m_Received = 0;
    if (!m_IsReadable)
        return false;
    auto& in = m_Batches->m_In.m_Datagrams;
    for (Door::Datagram& each : in)
        each.m_Size = Door::kMostCoalesced;
    Door::Fault fault;
    m_Received = door().receiveBatch(getHandle(), in, kPerCall, fault);
    // A fault concerns an earlier datagram and is reported once; datagrams may follow it.
    if (fault && fault.m_Reason != Door::Fault::kNotNow)
        m_Received = door().receiveBatch(getHandle(), in, kPerCall, fault);
    // An edge-triggered poller reports the next input without a call of want().
    m_IsReadable = m_Received == kPerCall;
    return m_Received > 0;
}

UdpPort::Datagram UdpPort::takeDatagram()
{
    m_Last = m_Next;
    const Door::Datagram& in = m_Batches->m_In.m_Datagrams[m_Next.m_Index];
    const int left = in.m_Size - m_Next.m_Byte;
    const int size = in.m_Segment > 0 ? std::min(in.m_Segment, left) : left;
    if (size < left)
        m_Next.m_Byte += size;
    else
        m_Next = {m_Next.m_Index + 1, 0};
    return {&in.m_Peer, in.m_Local, in.m_Data + m_Last.m_Byte, size > kMostBytes ? -1 : size};
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
    bool isSegmented = m_CanSegment;
    int at = 0;
    while (at < m_Unsent && !m_IsBlocked)
    {
        Door::Fault fault;
        at += isSegmented ? door().sendSegmented(getHandle(), out + at, m_Unsent - at, fault)
                          : door().sendBatch(getHandle(), out + at, std::min(m_Unsent - at, kPerCall), fault);
        if (fault.m_Reason == Door::Fault::kNotNow || fault.m_Reason == Door::Fault::kExhausted)
        {
            waitForOutput();
        }
        else if (fault && isSegmented)
        {
            // Send the rest as separate datagrams.
            isSegmented = false;
            m_CanSegment = fault.m_Reason != Door::Fault::kNotSegmented;
        }
        else if (fault)
        {
            // The datagram cannot be sent to this address. It counts as lost on the network.
            ++at;
        }
    }
    // Move the entries of the rest to the front, in order. Their bytes are not copied.
    if (at > 0)
        std::rotate(out, out + at, out + m_Unsent);
    m_Unsent -= at;
}

} // namespace zet::inner

#include "net/tcp/connection.h"

#include "framework/inner/fast_paths.h"
#include "net/inner/end_counts.h"
#include "net/tcp/inner/link.h"

namespace zet
{

namespace
{

// Bytes of output that are sent before the tick ends: enough to be worth a system call, few enough to stay in the
// processor's cache.
constexpr size_t kFlushAt = 128 * 1024;

// Bytes of a send that are worth a system call of their own, which costs less than to copy them into the queue.
constexpr int kDirectAt = 32 * 1024;

// Blocks per system call.
constexpr int kMostPieces = inner::kHasFastPaths ? inner::Door::kMostPieces : 1;

// One system call. Returns the bytes it accepted; offered is the bytes passed to it.
size_t sendOnce(inner::TcpLink& link, inner::OutputQueue& queue, size_t& offered, inner::Door::Fault& fault)
{
    inner::Door::Piece pieces[kMostPieces];
    int count = 0;
    offered = 0;
    for (inner::Block* block = queue.front(); block && count < kMostPieces; block = block->m_Next)
    {
        const auto left = queue.left(*block);
        pieces[count++] = {left.data(), left.size()};
        offered += left.size();
    }
    return link.door().send(link.getHandle(), pieces, count, fault);
}

// What is queued, sealed or not.
size_t sizeOfOutput(const inner::TcpLink& link)
{
    return link.m_Output.size() + (link.m_Sealed ? link.m_Sealed->size() : 0);
}

} // namespace

bool TcpConnection::takesOutput() const
{
    return m_Link && m_State >= kConnecting && m_State <= kClosedByPeer && m_Link->m_Output.size() < m_OutputLimit;
}

inline bool TcpConnection::holdOutput(size_t size)
{
    inner::Seat* const seat = m_Link->seat();
    return !seat || seat->holdOutput(size);
}

std::shared_ptr<inner::BlockPool> TcpConnection::getOutputPool() const
{
    return m_Link ? std::shared_ptr<inner::BlockPool>(m_Reactor, &m_Reactor->pool()) : nullptr;
}

void TcpConnection::announceOutput()
{
    const size_t size = getOutputSize();
    if (m_State != kEstablished || size == 0 || m_Link->m_IsOutputWaited)
        return;
    if (size >= kFlushAt)
    {
        flush();
    }
    else if (!isPending(kOutput))
    {
        setPending(kOutput);
        if (!m_Reactor->flushLater(*m_Link))
            list();
    }
}

// Queues all bytes, or none if memory is short.
inline bool TcpConnection::queueOutput(const void* data, int size)
{
    inner::OutputQueue& output = m_Link->m_Output;
    inner::BlockPool& pool = m_Reactor->pool();
    if (inner::SharedBlock* const shared = pool.getOffered(data, size); shared && output.size() == 0)
        output.share(*shared, size);
    else if (!output.write(data, size, pool))
        return false;
    const size_t queued = sizeOfOutput(*m_Link);
    holdOutput(queued);
    if (queued >= m_OutputMark)
        setOutputHigh(true);
    // Usually the output is announced already and is too short to leave now.
    if (!isPending(kOutput) || queued >= kFlushAt)
        announceOutput();
    return true;
}

int TcpConnection::send(const void* data, int size)
{
    if (size <= 0 || !takesOutput())
        return 0;
    if (isPending(kOutputLost))
        return size;
    if (!holdOutput(sizeOfOutput(*m_Link)))
        return 0;
    if (inner::kHasFastPaths && size >= kDirectAt)
        return sendLarge(static_cast<const unsigned char*>(data), size);
    return queueOutput(data, size) ? size : 0;
}

// Not inline: its objects would make each send() longer.
[[gnu::noinline]] int TcpConnection::sendLarge(const unsigned char* data, int size)
{
    int sent = 0;
    if (m_State == kEstablished && getOutputSize() == 0 && !m_Link->m_Sealed && !m_Link->m_IsOutputWaited)
    {
        inner::Door::Fault fault;
        const inner::Door::Piece piece{data, static_cast<size_t>(size)};
        sent = static_cast<int>(m_Link->door().send(m_Link->getHandle(), &piece, 1, fault));
        if (fault && fault.m_Reason != inner::Door::Fault::kNotNow)
        {
            loseOutput(inner::causeOf(fault));
            return size;
        }
        if (sent == size)
            return size;
        m_Link->waitForOutput();
    }
    if (queueOutput(data + sent, size - sent))
        return size;
    if (sent == 0)
        return 0;
    // The peer cannot read on after a gap.
    loseOutput({EndCause::kNoMemory, 0});
    return size;
}

void TcpConnection::flush()
{
    clearPending(kOutput | kWritable);
    if (m_State == kEstablished || m_State == kClosedByPeer)
        sendQueue(m_Link->m_Output);
}

bool TcpConnection::sendQueue(inner::OutputQueue& queue)
{
    const bool isSent = sendPieces(queue);
    holdOutput(sizeOfOutput(*m_Link));
    if (isOutputHigh() && getOutputSize() <= m_OutputMark / 2)
    {
        setOutputHigh(false);
        setPending(kWritableAgain);
        hurry();
    }
    return isSent;
}

bool TcpConnection::sendPieces(inner::OutputQueue& queue)
{
    while (queue.size() > 0)
    {
        inner::Door::Fault fault;
        size_t offered = 0;
        const size_t sent = sendOnce(*m_Link, queue, offered, fault);
        if (fault && fault.m_Reason != inner::Door::Fault::kNotNow)
        {
            loseOutput(inner::causeOf(fault));
            return false;
        }
        queue.consume(sent, m_Reactor->pool());
        if (sent < offered)
        {
            m_Link->waitForOutput();
            return false;
        }
    }
    return true;
}

void TcpConnection::loseOutput(EndCause cause)
{
    if (m_State != kEstablished)
    {
        fail(kBroken, cause);
        return;
    }
    noteCause(cause);
    // Input that the peer sent before is still to be read; the socket reports where it ends.
    m_Link->m_Output.drop(&m_Reactor->pool());
    if (m_Link->m_Sealed)
        m_Link->m_Sealed->drop(&m_Reactor->pool());
    clearPending(kOutput | kWritable);
    setPending(kOutputLost | kReadable);
    hurry();
}

size_t TcpConnection::getOutputSize() const
{
    return m_Link ? sizeOfOutput(*m_Link) : 0;
}

} // namespace zet

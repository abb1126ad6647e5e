#include "transport/net/tcp_connection.h"

#include "transport/net/inner/tcp_link.h"

namespace zet
{

namespace
{

// Output that begins to leave before the tick ends: enough for a system call to be worth it, little enough to stay in
// the processor's cache.
constexpr size_t kFlushAt = 128 * 1024;

// Blocks of one gathered send.
struct Gathered
{
    using value_type = asio::const_buffer;

    explicit Gathered(inner::OutputQueue& queue)
    {
        for (inner::Block* block = queue.front(); block && m_Count < kMost; block = block->m_Next)
        {
            m_Buffers[m_Count++] =
                asio::const_buffer(block->bytes() + block->m_Begin, static_cast<size_t>(block->size()));
            m_Size += static_cast<size_t>(block->size());
        }
    }
    const asio::const_buffer* begin() const { return m_Buffers; }
    const asio::const_buffer* end() const { return m_Buffers + m_Count; }

    static constexpr int kMost = 64;
    asio::const_buffer m_Buffers[kMost];
    int m_Count = 0;
    size_t m_Size = 0;
};

// What of the queue one call takes, and how much it was offered.
size_t sendOnce(inner::TcpLink::Socket& socket, inner::OutputQueue& queue, size_t& offered, asio::error_code& fault)
{
    inner::Block* const first = queue.front();
    if (!first->m_Next)
    {
        // A piece alone goes by the plain call, which costs less on both sides of it.
        offered = queue.size();
        return socket.send(asio::buffer(first->bytes() + first->m_Begin, offered), 0, fault);
    }
    const Gathered gathered(queue);
    offered = gathered.m_Size;
    return socket.send(gathered, 0, fault);
}

} // namespace

bool TcpConnection::takesOutput() const
{
    return m_Link && m_State >= kConnecting && m_State <= kClosedByPeer && m_Link->m_Output.size() < m_OutputLimit;
}

bool TcpConnection::countOutput()
{
    return !m_Link->m_Seat || m_Link->m_Seat->holdOutput(getOutputSize());
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
    else if (!(m_Pending & kOutput))
    {
        m_Pending |= kOutput;
        ring();
        m_Reactor->flushLater(*m_Link);
    }
}

int TcpConnection::send(const void* data, int size)
{
    if (size <= 0 || !takesOutput())
        return 0;
    if (m_Pending & kOutputLost)
        return size;
    if (!countOutput() || !m_Link->m_Output.write(data, size, m_Reactor->pool()))
        return 0;
    countOutput();
    // Mostly the output is announced already, and there is too little of it to leave by now.
    if (!(m_Pending & kOutput) || getOutputSize() >= kFlushAt)
        announceOutput();
    return size;
}

void TcpConnection::flush()
{
    m_Pending &= static_cast<unsigned char>(~(kOutput | kWritable));
    if (m_State == kEstablished || m_State == kClosedByPeer)
        sendQueue(m_Link->m_Output);
}

bool TcpConnection::sendQueue(inner::OutputQueue& queue)
{
    const bool isSent = sendPieces(queue);
    countOutput();
    return isSent;
}

bool TcpConnection::sendPieces(inner::OutputQueue& queue)
{
    while (queue.size() > 0)
    {
        asio::error_code fault;
        size_t offered = 0;
        const size_t sent = sendOnce(m_Link->m_Socket, queue, offered, fault);
        if (fault && !inner::TcpLink::isNothingYet(fault))
        {
            loseOutput();
            return false;
        }
        queue.consume(sent, m_Reactor->pool());
        if (fault || sent < offered)
        {
            m_Link->waitForOutput();
            return false;
        }
    }
    return true;
}

void TcpConnection::loseOutput()
{
    if (m_State != kEstablished)
    {
        fail(kBroken);
        return;
    }
    // What the peer sent before is still to be read, and the socket says itself where that ends.
    m_Link->m_Output.drop(&m_Reactor->pool());
    m_Link->m_Sealed.drop(&m_Reactor->pool());
    m_Link->m_IsInputWaited = false;
    m_Pending &= static_cast<unsigned char>(~(kOutput | kWritable));
    m_Pending |= kOutputLost | kReadable;
    hurry();
}

size_t TcpConnection::getOutputSize() const
{
    return m_Link ? m_Link->m_Output.size() + m_Link->m_Sealed.size() : 0;
}

} // namespace zet

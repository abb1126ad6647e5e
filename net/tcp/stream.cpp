#include "net/tcp/stream.h"

#include "net/tcp/inner/link.h"

#include <algorithm>
#include <cstring>

namespace zet
{

namespace
{

// Bytes that one request receives at most, so that a huge packet does not keep other connections waiting.
constexpr int kFillMost = 1024 * 1024;
// Receives of one request at most: with TLS each one decrypts a record, which may hold one byte.
constexpr int kReceivesMost = 256;
// Bytes of a turn that each receive uses at least.
constexpr int kReceiveCost = 64;

} // namespace

bool TcpStream::attach(unsigned int handle)
{
    // The new owner may not limit turns.
    m_Turn = kEndlessTurn;
    return TcpSecureConnection::attach(handle);
}

void TcpStream::close()
{
    m_Turn = kEndlessTurn;
    TcpSecureConnection::close();
}

void TcpStream::onTick(unsigned int tick)
{
    // An event may release the last handle.
    const Handle_T<TcpStream> keep = getRefCount() > 0 ? this : nullptr;
    tickStream(tick);
    reportEvents();
}

void TcpStream::tickStream(unsigned int tick)
{
    tickSecure(tick);
    if (!m_Link)
        return;
    if (isWorthReceiving() && m_Link->m_Input.size() == 0)
    {
        fill(1);
        if (available() > 0)
            setPending(kUnread);
    }
    m_Link->m_Input.settle(m_Reactor->pool());
    inner::Seat* const seat = m_Link->seat();
    if (seat && !seat->holdInput(static_cast<size_t>(m_Link->m_Input.capacity())))
    {
        fail(kBroken, {EndCause::kInputFull, 0});
    }
}

void TcpStream::fill(int wanted)
{
    inner::InputBuffer& input = m_Link->m_Input;
    int total = 0;
    for (int i = 0; i < kReceivesMost && isWorthReceiving() && input.size() < wanted && total < kFillMost; ++i)
    {
        if (m_Turn <= 0)
            return;
        const int room = input.prepare(m_Reactor->pool());
        if (room <= 0)
        {
            fail(kBroken, {EndCause::kNoMemory, 0});
            return;
        }
        const int got = receive(input.end(), std::min(room, m_Turn));
        if (got <= 0)
            return;
        input.grow(got);
        if (m_Turn != kEndlessTurn)
            m_Turn -= std::max(got, kReceiveCost);
        total += got;
    }
}

int TcpStream::available() const
{
    return m_Link ? m_Link->m_Input.size() : 0;
}

const unsigned char* TcpStream::view(int size)
{
    if (!m_Link)
        return nullptr;
    inner::InputBuffer& input = m_Link->m_Input;
    if (input.size() < size)
        fill(size);
    return input.size() >= size ? input.data() : nullptr;
}

int TcpStream::peek(void* data, int size)
{
    if (!m_Link || size <= 0)
        return 0;
    inner::InputBuffer& input = m_Link->m_Input;
    if (input.size() < size)
        fill(size);
    const int count = std::min(size, input.size());
    if (count > 0)
        std::memcpy(data, input.data(), static_cast<size_t>(count));
    return count;
}

int TcpStream::read(void* data, int size)
{
    return skip(peek(data, size));
}

int TcpStream::skip(int size)
{
    const int count = std::min(size, available());
    if (count <= 0)
        return 0;
    m_Link->m_Input.consume(count);
    return count;
}

int TcpStream::write(const void* data, int size)
{
    return TcpStream::send(data, size);
}

int TcpStream::send(const void* data, int size)
{
    return TcpSecureConnection::send(data, size);
}

} // namespace zet

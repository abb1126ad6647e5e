// Commands over UDP reassembled from pieces of any size. A second reader, which has all bytes at once, predicts the
// state of the socket.
#include "fuzz/support/budget.h"
#include "transport/udp_client_socket.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>

namespace
{

class FedSocket : public UdpClientSocket
{
public:
    int receive(void* data, int size) override
    {
        const size_t count = std::min({static_cast<size_t>(std::max(size, 0)), m_Piece, m_Left});
        if (count == 0)
            return 0;
        std::memcpy(data, m_Data, count);
        m_Data += count;
        m_Left -= count;
        m_Piece -= count;
        return static_cast<int>(count);
    }
    // Set after a length below 1, which breaks the connection.
    bool isBroken() const { return m_iHeadRead == 2 && m_iHead <= 0; }

    // The state after all bytes read so far, parsed at once.
    bool isWhereItShouldBe(const uint8_t* begin) const
    {
        const auto size = static_cast<size_t>(m_Data - begin);
        size_t at = 0;
        while (size - at >= 2)
        {
            const int length = static_cast<int16_t>(begin[at] | begin[at + 1] << 8);
            if (length <= 0)
                return isBroken() && at + 2 == size && m_iHead == length;
            if (size - at - 2 < static_cast<size_t>(length))
                return m_iHeadRead == 2 && m_iHead == length && m_iBodyRead == static_cast<int>(size - at - 2);
            at += 2 + static_cast<size_t>(length);
        }
        return m_iHeadRead == static_cast<int>(size - at) && m_iBodyRead == 0;
    }

    const uint8_t* m_Data = nullptr;
    size_t m_Left = 0;
    // Bytes that this tick provides.
    size_t m_Piece = 0;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    if (size == 0)
        return 0;
    const zet::Unknown::Handle_T<FedSocket> socket = new FedSocket;
    // The first byte decides how the pieces grow.
    size_t piece = data[0] & 0x0F;
    const size_t growth = data[0] >> 4;
    const uint8_t* const begin = data + 1;
    socket->m_Data = begin;
    socket->m_Left = size - 1;
    const fuzz::Budget budget(size);
    while (socket->m_Left > 0 && !socket->isBroken())
    {
        piece = 1 + (piece + growth) % 4096;
        socket->m_Piece = piece;
        socket->onTick(0);
        if (!socket->isWhereItShouldBe(begin))
            std::abort();
    }
    return 0;
}

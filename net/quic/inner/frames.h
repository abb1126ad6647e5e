// The frames of a decrypted QUIC packet, checked before ngtcp2 sees them.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace zet::inner
{

// Removes frames that would abort the process: NEW_CONNECTION_ID with a sequence number that is retired already. ngtcp2
// would retire it again and fail an assertion of its own. A repeated number has no new information, so the frame
// becomes a PING, which is acknowledged like the frame.
class QuicFrames
{
public:
    // The decrypted payload of a packet with a short header.
    void clean(unsigned char* payload, size_t size);

private:
    // Numbers that are remembered individually; a peer has no reason to leave out more than a few.
    static constexpr size_t kMostNumbers = 32;

    // Whether a number occurs for the first time.
    bool isNew(uint64_t number);

    // All numbers below m_First are known, and so are the first m_Count of m_Numbers, in ascending order. The first id
    // of a peer has the number 0.
    uint64_t m_First = 1;
    std::array<uint64_t, kMostNumbers> m_Numbers;
    size_t m_Count = 0;
};

} // namespace zet::inner

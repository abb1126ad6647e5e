// The frames of an opened QUIC packet, seen before ngtcp2 sees them.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace zet::inner
{

// Takes frames out that end ngtcp2's process: a connection id of the peer's that comes again, when its number has been
// retired. Ngtcp2 retires it once more and stops at a check of its own. A frame that tells of an id again says nothing
// new, so it becomes a PING, which is confirmed as the frame would have been.
class QuicFrames
{
public:
    // The opened payload of a packet with a short head.
    void clean(unsigned char* payload, size_t size);

private:
    // Numbers that are remembered singly; a peer has no reason to leave out more than a few.
    static constexpr size_t kMostNumbers = 32;

    // Whether a number comes for the first time.
    bool isNew(uint64_t number);

    // All numbers below the first are known, and these, in ascending order. The first id of a peer has the number 0.
    uint64_t m_First = 1;
    std::array<uint64_t, kMostNumbers> m_Numbers;
    size_t m_Count = 0;
};

} // namespace zet::inner

// The memory that ngtcp2 takes for one connection, with an upper bound.
#pragma once

#include <ngtcp2/ngtcp2.h>

#include <cstddef>

namespace zet::inner
{

// Keeps a peer from making ngtcp2 hold what has no bound there: gaps in a stream or in the handshake, and frames that
// wait for an acknowledgement. Above the bound allocations fail, and ngtcp2 reports a fatal error for the connection.
// Outlives what was allocated.
class QuicMemory
{
public:
    // Enough for 16,000 packets that wait for their acknowledgement, some 20 MB.
    static constexpr size_t kBase = 4 * 1024 * 1024;

    explicit QuicMemory(size_t most) : m_Most(most) {}
    QuicMemory(const QuicMemory&) = delete;
    QuicMemory& operator=(const QuicMemory&) = delete;

    const ngtcp2_mem* getCalls() const { return &m_Calls; }

private:
    struct Calls;

    const size_t m_Most;
    size_t m_Used = 0;
    const ngtcp2_mem m_Calls = makeCalls();

    ngtcp2_mem makeCalls();
};

} // namespace zet::inner

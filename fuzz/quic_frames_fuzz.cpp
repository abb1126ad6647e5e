// Covers what encryption hides from the target of bare datagrams: a peer of our server or of our client that seals
// arbitrary frames and transport parameters into valid packets. Each input is one connection; its bytes drive the peer.
#include "tests/support/quic_hostile.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    // After its end the input reads as zeros: honest steps.
    const auto next = [&]() -> unsigned char { return size > 0 ? (--size, *data++) : 0; };
    if (test::meetHostilePeer(next) != 0)
        std::abort();
    return 0;
}

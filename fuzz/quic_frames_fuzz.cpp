// What encryption hides from the target of bare datagrams: a peer of our server or of our client that seals any frames
// and any transport parameters into good packets. Each input is one meeting; its bytes are what the peer chooses from.
#include "tests/support/quic_hostile.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    // An input that ends is zeroes from there on: honest steps.
    const auto next = [&]() -> unsigned char { return size > 0 ? (--size, *data++) : 0; };
    if (test::meetHostilePeer(next) != 0)
        std::abort();
    return 0;
}

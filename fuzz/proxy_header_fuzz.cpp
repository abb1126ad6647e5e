// Headers of the PROXY protocol: the size wanted is bounded and grows at most once, a whole header is the same with
// other bytes after it, and none of its beginnings is whole or malformed.
#include "fuzz/support/require.h"
#include "net/inner/proxy_header.h"

#include <cstdint>
#include <vector>

namespace
{

using fuzz::require;
using zet::inner::ProxyHeader;

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    ProxyHeader header;
    ProxyHeader::State state = ProxyHeader::kCut;
    std::size_t used = 0;
    std::size_t wanted = ProxyHeader::kHeadSize;
    // As a socket is read: no byte after those that are wanted.
    for (; used <= size && state == ProxyHeader::kCut; ++used)
    {
        const std::vector<std::uint8_t> arrived(data, data + used);
        state = header.read(arrived.data(), used);
        require(header.getSize() <= ProxyHeader::kMostSize && header.getSize() >= wanted);
        require(state != ProxyHeader::kCut || used < header.getSize());
        wanted = header.getSize();
    }
    if (state != ProxyHeader::kWhole)
        return 0;
    --used;
    require(used == header.getSize());
    ProxyHeader whole;
    require(whole.read(data, used) == ProxyHeader::kWhole);
    require(whole.hasPeer() == header.hasPeer() && whole.getPeer() == header.getPeer());
    require(!whole.hasPeer() || data[12] == 0x21);
    return 0;
}

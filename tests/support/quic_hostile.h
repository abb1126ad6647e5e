// Connections over UDP with a peer that seals arbitrary frames into valid packets. A source of bytes decides what it
// does: a seeded generator in tests, the input of a fuzzer.
#pragma once

#include <functional>
#include <string>

namespace test
{

using ByteSource = std::function<unsigned char()>;

// Frames of all types, in all no longer than this: mostly ones that an honest peer, server or client, could send after
// age packets, else with meaningless numbers.
std::string hostileFrames(const ByteSource& next, size_t size, int age, bool isServer);
// Omits, repeats, changes and adds encoded transport parameters.
void changeParams(const ByteSource& next, std::string& params);

// One connection with our server or with our client, from the first packet on. Returns the number of connections that
// our two ports still have after the peer has ended and all timeouts have passed.
int meetHostilePeer(const ByteSource& next);

} // namespace test

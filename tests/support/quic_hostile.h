// Connections over UDP with a peer that seals anything into good packets. What it does comes from a source of bytes: a
// seeded generator in tests, the input of a fuzzer.
#pragma once

#include <functional>
#include <string>

namespace test
{

using ByteSource = std::function<unsigned char()>;

// Frames of all types, no longer than this together: mostly such as an honest peer, server or client, could
// send after as many packets as its age, else with senseless numbers.
std::string hostileFrames(const ByteSource& next, size_t size, int age, bool isServer);
// Takes encoded transport parameters apart and leaves out, doubles, changes and adds some.
void changeParams(const ByteSource& next, std::string& params);

// One meeting, with our server or with our client, from the first packet on. Returns the connections that our two ports
// still have when the peer is gone and all times are over.
int meetHostilePeer(const ByteSource& next);

} // namespace test

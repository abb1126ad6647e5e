// Operations on the handle of a connection that bypass the library, for misbehaving peers.
#pragma once

#include <cstddef>

namespace test
{

// Sends the bytes at once; false if not all were sent.
bool sendRaw(unsigned int handle, const void* data, std::size_t size);
// Closes the sending half of the connection.
bool endOutput(unsigned int handle);
// Closes the handle: an orderly end if all input was read, otherwise a reset.
void closeRaw(unsigned int handle);
// Closes the handle with a reset.
bool resetRaw(unsigned int handle);
// Whether a reset reaches the peer as an orderly end: under Wine each receive after a reset returns 0.
bool looksResetLikeEnd();

} // namespace test

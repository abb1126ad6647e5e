// What a peer of bad manners does with the handle of its connection, past the library.
#pragma once

#include <cstddef>

namespace test
{

// Sends the bytes at once; false where they do not all go.
bool sendRaw(unsigned int handle, const void* data, std::size_t size);
// Ends the own half of the connection.
bool endOutput(unsigned int handle);
// Closes the handle: an orderly end where all that came has been read, otherwise a reset.
void closeRaw(unsigned int handle);
// Closes the handle with a reset.
bool resetRaw(unsigned int handle);
// Whether a reset reaches the peer as an orderly end: Wine answers each receive behind one with 0.
bool looksResetLikeEnd();

} // namespace test

// Masks the secrets of commands in frames that are recorded.
#pragma once

#include "framework/export.h"

#include <span>

namespace host::inner
{

// What a recorded packet is.
enum class Carried
{
    kStreamFrame,
    kDatagramFrame,
    kNetMessage
};

// Overwrites the fields of secrets.def in place, also those of a command in a tunnel or in a message of a net session:
// the units of a text become asterisks, numbers, ids and the bytes of a pack's message 0. Where fields are not found
// with certainty, all bytes that may hold them become 0: the payload that its class does not read exactly or that
// exceeds 8 KiB, the rest of a cut frame, a tunnel's content that is not a frame or too deep, and the bytes after a
// frame. Sizes stay. Returns whether anything was masked.
COMMONGROUND_API bool maskSecrets(Carried carried, std::span<unsigned char> packet);

} // namespace host::inner

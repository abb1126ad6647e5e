// Lines on the standard output, and the text forms of ids and of what came from the wire.
#pragma once

#include "framework/string.h"
#include "framework/uuid.h"

#include <cstdio>
#include <string_view>

namespace arena
{

// Puts out one line at once, so that who reads the output through a pipe gets it now.
template <class... Args>
void say(const char* pattern, const Args&... args)
{
    const zet::String_T<char> line = zet::formatText(pattern, args...) + "\n";
    std::fwrite(line.getBuffer(), 1, static_cast<size_t>(line.getLength()), stdout);
    std::fflush(stdout);
}

// The text in UTF-8 with a '?' for each control character: no peer's name begins a line of our output.
zet::String_T<char> shown(const zet::String_T<wchar_t>& text);

// An id as its 16 bytes in 32 hexadecimal digits, and back; false for any other text.
zet::String_T<char> idToText(const zet::Uuid& id);
bool idFromText(std::string_view text, zet::Uuid& id);

} // namespace arena

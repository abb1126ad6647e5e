// Lines on the standard output, and the text forms of ids and of received texts.
#pragma once

#include "framework/string.h"
#include "framework/uuid.h"

#include <cstdio>
#include <string_view>

namespace arena
{

// The longest text that every client reads: a peer with four-byte characters sends twice as many units and two more.
constexpr int kTextLimit = 499;

// Prints one line and flushes it, so that a reader of a pipe gets it at once.
template <class... Args>
void say(const char* pattern, const Args&... args)
{
    const zet::String_T<char> line = zet::formatText(pattern, args...) + "\n";
    std::fwrite(line.getBuffer(), 1, static_cast<size_t>(line.getLength()), stdout);
    std::fflush(stdout);
}

// The text as UTF-8 with '?' for each control character: a peer's name cannot start a line of our output.
zet::String_T<char> shown(const zet::String_T<wchar_t>& text);

// Converts the 16 bytes of an id to 32 hexadecimal digits and back; false for any other text.
zet::String_T<char> idToText(const zet::Uuid& id);
bool idFromText(std::string_view text, zet::Uuid& id);

} // namespace arena

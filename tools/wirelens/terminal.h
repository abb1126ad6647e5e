// Colours, on a terminal only.
#pragma once

#include <string>

namespace wirelens
{

enum class Stream
{
    kOutput,
    kError
};

// Whether the stream is a terminal that shows colours, and NO_COLOR is not set in the environment.
bool hasColours(Stream stream);

// The text between the control sequences of a colour; without colours, the text.
std::string bold(const std::string& text, bool hasColours);
std::string red(const std::string& text, bool hasColours);

} // namespace wirelens

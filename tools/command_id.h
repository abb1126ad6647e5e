// The id of a command as text.
#pragma once

#include <string>

namespace tools
{

// The id in a text, decimal or hexadecimal ("0x1013"), or -1.
int commandIdOf(const std::string& text);

} // namespace tools

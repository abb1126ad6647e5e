#include "tools/wirelens/terminal.h"

#include <cstdlib>
#include <windows.h>

#ifndef ENABLE_VIRTUAL_TERMINAL_PROCESSING
#define ENABLE_VIRTUAL_TERMINAL_PROCESSING 0x0004
#endif

namespace wirelens
{

// A console interprets control sequences in this mode only.
bool hasColours(Stream stream)
{
    const char* const none = std::getenv("NO_COLOR");
    if (none && *none)
        return false;
    const HANDLE console = GetStdHandle(stream == Stream::kOutput ? STD_OUTPUT_HANDLE : STD_ERROR_HANDLE);
    DWORD mode = 0;
    return GetConsoleMode(console, &mode) && SetConsoleMode(console, mode | ENABLE_VIRTUAL_TERMINAL_PROCESSING);
}

} // namespace wirelens

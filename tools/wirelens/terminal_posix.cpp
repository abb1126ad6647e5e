#include "tools/wirelens/terminal.h"

#include <cstdlib>
#include <string_view>
#include <unistd.h>

namespace wirelens
{

bool hasColours(Stream stream)
{
    const char* const none = std::getenv("NO_COLOR");
    const char* const kind = std::getenv("TERM");
    return isatty(stream == Stream::kOutput ? STDOUT_FILENO : STDERR_FILENO) && !(none && *none) && kind &&
           std::string_view(kind) != "dumb";
}

} // namespace wirelens

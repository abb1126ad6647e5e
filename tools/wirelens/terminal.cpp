#include "tools/wirelens/terminal.h"

namespace wirelens
{

namespace
{

std::string between(const char* start, const std::string& text, bool hasColours)
{
    return hasColours && !text.empty() ? start + text + "\x1B[0m" : text;
}

} // namespace

std::string bold(const std::string& text, bool hasColours)
{
    return between("\x1B[1m", text, hasColours);
}

std::string red(const std::string& text, bool hasColours)
{
    return between("\x1B[31m", text, hasColours);
}

} // namespace wirelens

// The commands of wirelens. Each returns the exit code: 0 success, 1 bad input, 2 wrong usage.
#pragma once

#include "tools/line_filter.h"

#include <string>
#include <vector>

namespace wirelens
{

// What decode reads. At most one framing, of input that is not a capture; neither is consecutive stream frames.
struct DecodeOptions
{
    bool m_Packets = false;
    bool m_Datagram = false;
    // What a capture lost or skipped as JSON lines among the commands, not as text on the standard error.
    bool m_Notices = false;
    tools::LineFilter m_Filter;
    // - is the standard input, and so is no path.
    std::vector<std::string> m_Paths;
};

int catalogue(bool asJson);
int schema(const std::string& className);
int makeNew(const std::string& className);
int read();
int explain(const std::string& className, const std::string& hex);
int decode(const DecodeOptions& options);

// Prints one line to the standard error.
void warn(const wchar_t* line);

} // namespace wirelens

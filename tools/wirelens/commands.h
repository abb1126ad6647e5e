// The commands of wirelens. Each returns the exit code: 0 success, 1 bad input, 2 wrong usage.
#pragma once

#include <string>

namespace wirelens
{

// What decode reads. At most one framing; neither is consecutive stream frames.
struct DecodeOptions
{
    bool m_Packets = false;
    bool m_Datagram = false;
    // Empty or - for the standard input.
    std::string m_Path;
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

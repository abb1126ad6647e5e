// Where a connection goes, or where one is awaited, as words of a command line.
#pragma once

#include <optional>
#include <string>

namespace tools
{

struct HostPort
{
    // A name or a numeric address without brackets.
    std::string m_Host;
    unsigned short m_Port = 0;

    // "HOST:PORT", with an IPv6 address in brackets: "[::1]:7000". A port alone, "7000", takes the given host; without
    // one it is not valid. Nothing for another text.
    static std::optional<HostPort> parse(const std::string& text, const std::string& hostOfPort = "");
};

} // namespace tools

// "HOST:PORT" on command lines and in records.
#pragma once

#include "framework/string.h"

#include <string_view>

namespace arena
{

struct HostPort
{
    zet::String_T<wchar_t> m_Host;
    unsigned short m_Port = 0;
};

// "127.0.0.1:8000", "[::1]:8000" or "platform.example:8000"; the host is without brackets. False, and nothing changed,
// for any other text.
bool parseHostPort(std::string_view text, HostPort& address);

} // namespace arena

// Where a net session connects to.
#pragma once

#include "framework/export.h"
#include "framework/string.h"

namespace zet
{

// A host, as a numeric address or a name, and a port; a plain value.
class COMMONGROUND_API NetAddress
{
public:
    // No address: an empty host and port 0.
    NetAddress() = default;
    // Takes both as they are, without a check.
    NetAddress(const String_T<wchar_t>& host, unsigned short port) : m_Host(host), m_Port(port) {}

    // What was given; empty and 0 for no address.
    const String_T<wchar_t>& getHost() const { return m_Host; }
    unsigned short getPort() const { return m_Port; }

    // Takes "192.168.0.1:8000", "game.example:8000" or "[2001:db8::1]:8000", whose host has no brackets then. False,
    // and nothing changed, for any other text: no host, a blank in it, a colon in it without brackets, anything but an
    // IPv6 address in brackets, a port that is not a number of 1 to 5 digits up to 65535.
    bool convertFromString(const wchar_t* text);
    // The same form; an IPv6 address is put in brackets.
    String_T<wchar_t> convertToString() const;

    friend bool operator==(const NetAddress& a, const NetAddress& b)
    {
        return a.m_Host == b.m_Host && a.m_Port == b.m_Port;
    }

private:
    String_T<wchar_t> m_Host;
    unsigned short m_Port = 0;
};

} // namespace zet

// Headers of the PROXY protocol, version 2.
#pragma once

#include "net/door/door.h"

#include <cstring>
#include <vector>

namespace test
{

using Bytes = std::vector<unsigned char>;

// A header with this command, family and body.
inline Bytes proxyHeader(unsigned char command, unsigned char family, const Bytes& body)
{
    Bytes bytes = {'\r', '\n', '\r', '\n', 0, '\r', '\n', 'Q', 'U', 'I', 'T', '\n', command, family};
    bytes.push_back(static_cast<unsigned char>(body.size() >> 8));
    bytes.push_back(static_cast<unsigned char>(body.size()));
    bytes.insert(bytes.end(), body.begin(), body.end());
    return bytes;
}

// The header of a peer, connected to port 80 of an address of all ones, with extensions after the addresses.
inline Bytes headerOfPeer(const char* address, unsigned short port, const Bytes& extensions = {})
{
    zet::inner::Endpoint peer;
    zet::inner::Door::parse(address, port, peer);
    const int skipped = peer.isV4() ? 12 : 0;
    Bytes body(peer.m_Bytes + skipped, peer.m_Bytes + 16);
    body.insert(body.end(), body.size(), 0xFF);
    for (const int each : {port >> 8, port & 0xFF, 0, 80})
        body.push_back(static_cast<unsigned char>(each));
    body.insert(body.end(), extensions.begin(), extensions.end());
    return proxyHeader(0x21, peer.isV4() ? 0x11 : 0x21, body);
}

// Of a connection of the proxy's own.
inline Bytes localHeader()
{
    return proxyHeader(0x20, 0, {});
}

} // namespace test

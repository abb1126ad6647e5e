// The header of the PROXY protocol, version 2, with which a proxy says for whom it connects.
#pragma once

#include "framework/export.h"
#include "net/door/endpoint.h"

#include <cstddef>

namespace zet::inner
{

// Layout: 12 bytes of signature; a byte of version and command; a byte of family and transport; two bytes of length,
// high byte first; as many bytes of addresses and extensions. Extensions are skipped. A longer body than that of the
// largest address is malformed here: a proxy must not be configured to send extensions beyond it.
class COMMONGROUND_API ProxyHeader
{
public:
    static constexpr size_t kHeadSize = 16;
    static constexpr size_t kMostBody = 216;
    static constexpr size_t kMostSize = kHeadSize + kMostBody;

    enum State
    {
        // More bytes are needed.
        kCut,
        kWhole,
        kMalformed
    };

    // Reads the header that starts at data, as far as it has arrived. A malformed one is found at its first wrong byte,
    // or once its length is known.
    State read(const unsigned char* data, size_t size);
    // The bytes of the whole header, as far as read() has learned: at first those of its fixed part.
    size_t getSize() const { return m_Size; }
    // After kWhole: whether the header names the peer. If not, the proxy connects for itself, such as for a check, or
    // cannot say for whom; the address of the connection counts then.
    bool hasPeer() const { return m_HasPeer; }
    const Endpoint& getPeer() const { return m_Peer; }

private:
    void readPeer(const unsigned char* body, bool isV4);

    size_t m_Size = kHeadSize;
    bool m_HasPeer = false;
    Endpoint m_Peer;
};

} // namespace zet::inner

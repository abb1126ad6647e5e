// The printed forms of the address of a peer.
#pragma once

#include "framework/string.h"
#include "net/door/endpoint.h"

namespace zet::inner
{

// "127.0.0.1:8000", also for a mapped address; "[::1]:8000" for IPv6, with its interface where it is link-local
// ("[fe80::1%2]:8000").
COMMONGROUND_API String_T<wchar_t> peerText(const Endpoint& peer);

// The form in which a certificate names an address: without port, brackets and interface.
COMMONGROUND_API String_T<wchar_t> hostText(const Endpoint& peer);

} // namespace zet::inner

// How an address of a peer is shown.
#pragma once

#include "framework/string.h"

namespace zet::inner
{

// Such as "127.0.0.1:8000"; the address as the network has it, the port as a number.
String_T<wchar_t> peerText(unsigned int address, unsigned short port);

} // namespace zet::inner

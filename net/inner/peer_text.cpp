#include "net/inner/peer_text.h"

#include "framework/string_helper.h"

#include <cstring>

namespace zet::inner
{

String_T<wchar_t> peerText(unsigned int address, unsigned short port)
{
    unsigned char bytes[4];
    std::memcpy(bytes, &address, sizeof bytes);
    return formatText(L"%d.%d.%d.%d:%d", bytes[0], bytes[1], bytes[2], bytes[3], port);
}

} // namespace zet::inner

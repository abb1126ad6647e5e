#include "net/inner/peer_text.h"

#include "framework/string_helper.h"
#include "net/door/door.h"

namespace zet::inner
{

String_T<wchar_t> peerText(const Endpoint& peer)
{
    if (!peer.isV4())
        return formatText(L"[%s]:%d", StringHelper::utf8ToWide(Door::print(peer).c_str()), peer.m_Port);
    const unsigned char* const bytes = peer.m_Bytes + 12;
    return formatText(L"%d.%d.%d.%d:%d", bytes[0], bytes[1], bytes[2], bytes[3], peer.m_Port);
}

String_T<wchar_t> hostText(const Endpoint& peer)
{
    Endpoint address = peer;
    address.m_Scope = 0;
    return StringHelper::utf8ToWide(Door::print(address).c_str());
}

} // namespace zet::inner

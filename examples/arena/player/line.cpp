#include "examples/arena/player/line.h"
#include "examples/arena/player/players.h"

#include <cstring>

namespace arena::player
{

Line::Line(Player& player) : Line(player, player.getAnalyser()) {}

Line::Line(Player& player, CCmdAnalyserSocket& analyser) : m_Socket(CCommandSocket::createInstance(&analyser))
{
    // The address and port of the player's own connection, as "127.0.0.1:8000".
    const zet::String_T<wchar_t> peer = player.getSocket().getPeerName();
    int end = peer.getLength();
    while (end > 0 && peer[end] != L':')
        --end;
    const auto& tls = player.getPlayers().getOptions().m_Tls;
    if (!m_Socket->start(&player.getPlayers().getSystem()) || (!tls.isNull() && !m_Socket->setTlsContext(tls)) ||
        !m_Socket->connect(peer.getSubString(0, end), player.getSocket().getPeerPort(), true))
    {
        // The server has ended, which the player's own connection may not know yet.
        player.interrupt();
        player.fail("no further connection");
    }
}

Line::~Line()
{
    m_Socket->close();
    m_Socket->stop();
}

bool Line::isLost() const
{
    return m_Socket->getEndCause().m_Code != zet::EndCause::kNone;
}

zet::String_T<wchar_t> idText(const zet::Uuid& id)
{
    unsigned char bytes[sizeof id];
    std::memcpy(bytes, &id, sizeof id);
    zet::String_T<wchar_t> text;
    for (const unsigned char byte : bytes)
        text += zet::formatText(L"%02x", static_cast<unsigned int>(byte));
    return text;
}

} // namespace arena::player

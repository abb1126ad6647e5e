#include "examples/arena/player/listener.h"

#include "framework/string_helper.h"
#include "framework/time.h"

namespace arena::player
{

std::string textOf(const host::Unanswered& unanswered)
{
    return zet::StringHelper::wideToUtf8(unanswered.getText()).getBuffer();
}

void Listener::received(const char* kind)
{
    // Of what comes many times only the first one is noted.
    const std::string_view name = kind;
    const bool isFrequent =
        name.starts_with("CCmdGS_PlayerRaceData") || name == "CCmdSkeletons" || name == "CCmdMaskImage";
    if (++m_Received[kind] == 1 || !isFrequent)
        note(std::string("<- ") + kind);
}

int Listener::getCount(const char* kind) const
{
    const auto found = m_Received.find(kind);
    return found == m_Received.end() ? 0 : found->second;
}

void Listener::beginWait()
{
    m_WaitStart = zet::getTimeTick();
}

bool Listener::isWaiting(const char* kind, int count)
{
    if (getCount(kind) >= count || m_Player.isInterrupted())
        return false;
    if (zet::getTimeTick() - m_WaitStart < kPatience.count())
        return true;
    fail("waited for " + std::to_string(count) + " of " + kind + ", and " + std::to_string(getCount(kind)) + " came");
    return false;
}

void Listener::onLost(const ListenerSocket& socket)
{
    note("lost: " + std::string(zet::StringHelper::wideToUtf8(socket.getEndCause().getText()).getBuffer()));
    m_Player.interrupt();
    if (m_Place)
        m_Place->breakUp();
}

zet::Unknown::Handle_T<ListenerSocket> ListenerSocket::open(CCmdAnalyserSocket& analyser, Listener& listener,
                                                            const HostPort& server)
{
    zet::Unknown::Handle_T<ListenerSocket> socket(new ListenerSocket(analyser, listener));
    if (socket->start(&listener.m_Player.getSystem()) && socket->connect(server.m_Host, server.m_Port, true))
        return socket;
    // A server that has ended and may come back.
    listener.Listener::onLost(*socket);
    end(socket);
    return socket;
}

void ListenerSocket::end(zet::Unknown::Handle_T<ListenerSocket>& socket)
{
    if (!socket)
        return;
    socket->m_IsEnding = true;
    socket->close();
    socket->stop();
    socket = {};
}

void ListenerSocket::onEnd(const zet::EndCause& cause)
{
    CFrameworkClientSocket::onEnd(cause);
    if (!m_IsEnding)
        m_Listener.onLost(*this);
}

} // namespace arena::player

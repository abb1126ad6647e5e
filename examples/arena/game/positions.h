// The UDP port of a game server, for positions only.
#pragma once

#include "examples/arena/game/game.h"
#include "transport/udp_server_socket.h"

namespace arena::game
{

// A player's connection over UDP. Its first command is the CCmdGS_joinGame that the player has joined with over TCP;
// the answer is CCmdUdpServerConnectOk or CCmdUdpServerConnectFail.
class PositionConnection : public UdpClientSocket
{
public:
    explicit PositionConnection(Server& server);
    void onTick(unsigned int tick) override;
    void onEnd(const zet::EndCause& cause) override;

private:
    void join(CCmdGS_joinGame& command);
    Runner* getRunner() { return m_Server.find(m_Seat); }

    Server& m_Server;
    Seat m_Seat;
    // The connection whose commands are being handled. The arguments of a handler do not hold a pointer everywhere.
    static PositionConnection* s_Current;
};

class PositionPort : public UdpServerSocket
{
public:
    explicit PositionPort(Server& server) : m_Server(server) {}
    void onAccept() override { accept(zet::Unknown::Handle_T<PositionConnection>(new PositionConnection(m_Server))); }

private:
    Server& m_Server;
};

} // namespace arena::game

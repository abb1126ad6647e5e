#include "examples/arena/game/positions.h"

#include "commands/server_status.h"

namespace arena::game
{

PositionConnection* PositionConnection::s_Current = nullptr;

PositionConnection::PositionConnection(Server& server) : m_Server(server)
{
    m_CmdAnalyser.Install(command_id::CCmdGS_joinGame, CCmdGS_joinGame::CCmdGS_joinGame_Process,
                          [](CCmdHead* command, unsigned long, unsigned long)
                          { s_Current->join(*static_cast<CCmdGS_joinGame*>(command)); });
    m_CmdAnalyser.Install(command_id::CCmdGS_PawnRunning, CCmdGS_PawnRunning::CCmdGS_PawnRunning_Process,
                          [](CCmdHead* command, unsigned long, unsigned long)
                          {
                              if (Runner* const runner = s_Current->getRunner())
                                  runner->m_Race.running(*runner, *static_cast<CCmdGS_PawnRunning*>(command));
                          });
    m_CmdAnalyser.Install(command_id::CCmdGS_testSyncPos, CCmdGS_testSyncPos::CCmdGS_testSyncPos_Process,
                          [](CCmdHead* command, unsigned long, unsigned long)
                          {
                              if (Runner* const runner = s_Current->getRunner())
                                  runner->m_Race.testPosition(*runner, *static_cast<CCmdGS_testSyncPos*>(command));
                          });
}

void PositionConnection::onTick(unsigned int tick)
{
    s_Current = this;
    UdpClientSocket::onTick(tick);
    s_Current = nullptr;
}

void PositionConnection::onEnd(const zet::EndCause& cause)
{
    UdpClientSocket::onEnd(cause);
    Runner* const runner = getRunner();
    if (runner && runner->m_Udp == this)
        runner->m_Udp = nullptr;
}

void PositionConnection::join(CCmdGS_joinGame& command)
{
    const Seat seat{command.m_Id1, command.m_Text1};
    Runner* const runner = m_Server.find(seat);
    if (!runner || runner->m_Udp || getRunner())
    {
        CCmdUdpServerConnectFail fail;
        fail.m_Text1 = L"Join the race over TCP first, and once.";
        send(fail);
        return;
    }
    m_Seat = seat;
    runner->m_Udp = this;
    CCmdUdpServerConnectOk ok;
    ok.m_Text1 = command.m_Text1;
    send(ok);
}

} // namespace arena::game

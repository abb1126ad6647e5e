#include "examples/arena/player/racer.h"

#include <utility>

namespace arena::player
{

namespace
{

void installGame(host::Handlers& handlers)
{
    count<CCmdGS_joinGameOk>(handlers, "CCmdGS_joinGameOk");
    count<CCmdGS_joinGameFail, Racer>(handlers, "CCmdGS_joinGameFail",
                                      [](Racer& racer, CCmdGS_joinGameFail& command)
                                      { racer.m_Refusal = command.m_Value1; });
    count<CCmdGS_OtherJoin>(handlers, "CCmdGS_OtherJoin");
    count<CCmdGS_PlayerEnter>(handlers, "CCmdGS_PlayerEnter");
    count<CCmdGS_GamePlayer, Racer>(handlers, "CCmdGS_GamePlayer",
                                    [](Racer& racer, CCmdGS_GamePlayer& command)
                                    { racer.m_ReadyBefore += command.m_Flag1; });
    count<CCmdGS_PawnReady>(handlers, "CCmdGS_PawnReady");
    count<CCmdGS_AllPlayerReady>(handlers, "CCmdGS_AllPlayerReady");
    count<CCmdGS_AllRunDown>(handlers, "CCmdGS_AllRunDown");
    count<CCmdGS_PawnCanRun>(handlers, "CCmdGS_PawnCanRun");
    count<CCmdGS_PawnStartRun, Racer>(handlers, "CCmdGS_PawnStartRun",
                                      [](Racer& racer, CCmdGS_PawnStartRun& command)
                                      { ++racer.m_Started[command.m_Text1]; });
    count<CCmdGS_PlayerRaceData>(handlers, "CCmdGS_PlayerRaceData");
    count<CCmdGS_PowerTime>(handlers, "CCmdGS_PowerTime");
    count<CCmdGS_PawnFouled>(handlers, "CCmdGS_PawnFouled");
    count<CCmdGS_PawnScore, Racer>(handlers, "CCmdGS_PawnScore",
                                   [](Racer& racer, CCmdGS_PawnScore& command)
                                   { racer.m_Places[command.m_Text1] = command.m_Value1; });
    count<CCmdGS_PlayerReward, Racer>(handlers, "CCmdGS_PlayerReward",
                                      [](Racer& racer, CCmdGS_PlayerReward& command)
                                      { racer.m_Points[command.m_Text1] = command.m_Value2; });
    count<CCmdGS_PlayersChat, Racer>(handlers, "CCmdGS_PlayersChat",
                                     [](Racer& racer, CCmdGS_PlayersChat& command)
                                     { racer.m_Message = command.m_Text1; });
    count<CCmdGS_PlayerEquipAttribute>(handlers, "CCmdGS_PlayerEquipAttribute");
    count<CCmdGS_RaceBalanceOK>(handlers, "CCmdGS_RaceBalanceOK");
    count<CCmdGS_exitGameOk>(handlers, "CCmdGS_exitGameOk");
    count<CCmdGS_exitGameFail>(handlers, "CCmdGS_exitGameFail");
    count<CCmdGS_test>(handlers, "CCmdGS_test");
    count<CCmdGS_testSyncPos>(handlers, "CCmdGS_testSyncPos");
}

} // namespace

RaceClient::RaceClient(zet::System& system)
    : m_System(system), m_ZoneHandlers(m_ZoneAnalyser), m_GameHandlers(m_GameAnalyser),
      m_Questions(m_ZoneHandlers, system)
{
    m_Questions.expect<CCmdGC_gameZoneListResponse, CCmdGZ_ZoneInfoResponse, CCmdPlayerCountOnLineResponse,
                       CCmdInGamePlayerCountResponse, CCmdGZ_playerEnterOk, CCmdGZ_playerEnterFail, CCmdGZ_createGameOk,
                       CCmdGZ_createGameFail, CCmdGZ_gameReadyOk, CCmdGZ_gameReadyFail, CCmdGZ_gameUnreadyOk,
                       CCmdGZ_gameUnreadyFail, CCmdGZ_StartGameReply, CCmdGZ_CBRankDataPackReply, CCmdGZ_playerExitOk,
                       CCmdGZ_playerExitFail>();
    count<CCmdGZ_CombatStart>(m_ZoneHandlers, "CCmdGZ_CombatStart");
    count<CCmdGZ_gameOver>(m_ZoneHandlers, "CCmdGZ_gameOver");
    count<CCmdServerBusy>(m_ZoneHandlers, "CCmdServerBusy");
    count<CCmdGZ_ConnectGameSvr, Racer>(m_ZoneHandlers, "CCmdGZ_ConnectGameSvr",
                                        [](Racer& racer, CCmdGZ_ConnectGameSvr& command) { racer.m_Where = command; });
    m_ZoneHandlers.on<CCmdGZ_serverToClient>(
        [this](CCommandSocket& socket, CCmdGZ_serverToClient& tunnel)
        {
            CCmdPackager inner;
            if (CCmdPackager_bufferToPackage(tunnel.m_Data1, inner))
                m_GameAnalyser.Analyse(&socket, inner);
        });
    installGame(m_GameHandlers);
}

zet::UdpServer* RaceClient::getUdpPort()
{
    if (!m_UdpPort)
    {
        m_UdpPort = zet::Unknown::Handle_T<zet::UdpServer>(new zet::UdpServer);
        if (!m_UdpPort->start(&m_System) || !m_UdpPort->listen(0))
            m_UdpPort = {};
    }
    return m_UdpPort.get();
}

Racer* PositionSocket::s_Current = nullptr;

PositionSocket::PositionSocket(Racer& racer) : m_Racer(racer)
{
    m_CmdAnalyser.Install(command_id::CCmdUdpServerConnectOk, CCmdUdpServerConnectOk::CCmdUdpServerConnectOk_Process,
                          [](CCmdHead*, unsigned long, unsigned long)
                          { s_Current->received("CCmdUdpServerConnectOk"); });
    m_CmdAnalyser.Install(
        command_id::CCmdUdpServerConnectFail, CCmdUdpServerConnectFail::CCmdUdpServerConnectFail_Process,
        [](CCmdHead*, unsigned long, unsigned long) { s_Current->received("CCmdUdpServerConnectFail"); });
    m_CmdAnalyser.Install(command_id::CCmdGS_PlayerRaceData, CCmdGS_PlayerRaceData::CCmdGS_PlayerRaceData_Process,
                          [](CCmdHead*, unsigned long, unsigned long)
                          { s_Current->received("CCmdGS_PlayerRaceData over UDP"); });
    m_CmdAnalyser.Install(command_id::CCmdGS_testSyncPos, CCmdGS_testSyncPos::CCmdGS_testSyncPos_Process,
                          [](CCmdHead*, unsigned long, unsigned long)
                          { s_Current->received("CCmdGS_testSyncPos over UDP"); });
}

void PositionSocket::onTick(unsigned int tick)
{
    s_Current = &m_Racer;
    UdpClientSocket::onTick(tick);
    s_Current = nullptr;
}

Racer::Racer(Player& player, Place& place, const RaceOptions& options)
    : Listener(player, &place), m_Options(options), m_Client(Shared<RaceClient>::of(player)),
      m_Tasks(m_Client.m_Questions)
{
}

Racer::~Racer()
{
    if (m_Positions)
        m_Positions->close();
    ListenerSocket::end(m_Game);
    ListenerSocket::end(m_Zone);
}

void Racer::onLost(const ListenerSocket& socket)
{
    // Who has left a server does not miss it.
    const bool isMissed =
        m_Zone && &socket == m_Zone.get() ? !m_IsHome : getCount("CCmdGS_exitGameOk") == 0 && !m_Options.m_IsUntilLost;
    if (isMissed)
        Listener::onLost(socket);
}

bool Racer::connectZone()
{
    m_Zone = ListenerSocket::open(m_Client.m_ZoneAnalyser, *this, m_Options.m_Zone);
    return m_Zone;
}

bool Racer::connectGame()
{
    if (m_Options.m_IsTunneled)
        return true;
    m_Game = ListenerSocket::open(m_Client.m_GameAnalyser, *this, {m_Where.m_Text1, m_Where.m_Word1});
    return m_Game;
}

bool Racer::connectPositions()
{
    zet::Uuid id;
    zet::uuid_create(id);
    m_Positions = zet::Unknown::Handle_T<PositionSocket>(new PositionSocket(*this));
    zet::UdpServer* const port = m_Client.getUdpPort();
    if (port && m_Positions->connect(port, m_Where.m_Text1, static_cast<int>(m_Where.m_Word1), id))
        return true;
    fail("no connection for positions");
    return false;
}

void Racer::sendToGame(CCmdHead& command)
{
    if (m_Game)
    {
        m_Game->send(command);
        return;
    }
    CCmdGZ_clientToServer tunnel;
    tunnel.m_Text1 = m_Options.m_Game;
    if (toCCmdGZ_clientToServer(&command, &tunnel))
        m_Zone->send(tunnel);
}

void Racer::sendPosition(CCmdHead& command)
{
    if (m_Positions)
        m_Positions->send(command);
    else
        sendToGame(command);
}

} // namespace arena::player

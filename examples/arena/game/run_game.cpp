#include "examples/arena/game/positions.h"
#include "examples/arena/game/race_view.h"
#include "examples/arena/kept_link.h"
#include "examples/arena/roles.h"
#include "examples/arena/server_role.h"
#include "framework/log.h"
#include "host/metrics.h"

namespace arena
{

int runGame(int count, char** words)
{
    host::Service service(L"arena_game", "Runs races for a zone.", static_cast<unsigned char>(ServerType::Game));
    ServerRole role(service, ServerType::Game, L"game");
    zet::String_T<wchar_t> zone;
    zet::String_T<wchar_t> key;
    bool hasUdp = false;
    int games = game::Server::kMostGames;
    int raceTime = 60000;
    service.option("--zone", zone, "HOST:PORT of the zone; empty for the first one of the registry");
    service.option("--key", key, "the key of the zone");
    service.option("--udp", hasUdp, "receive and send positions over UDP too, on the same port number");
    service.option("--games", games, "the number of games at a time");
    service.option("--race-time", raceTime, "the limit of a race in milliseconds");

    static CCmdAnalyserSocket players;
    static CCmdAnalyserSocket zoneAnalyser;
    host::Handlers playerHandlers(players);
    host::Handlers zoneHandlers(zoneAnalyser);
    host::Questions questions(zoneHandlers, service.getSystem());
    host::Tasks tasks(questions);
    game::Server server(players, playerHandlers, zoneHandlers, tasks);
    game::showRaces(service, server);
    role.acceptGreetings(playerHandlers);
    const zet::Unknown::Handle_T<game::Port> port(new game::Port(players, server));
    const zet::Unknown::Handle_T<game::PositionPort> positions(new game::PositionPort(server));
    service.serve(*port);
    service.serve(*positions);
    // The games go on to their end.
    service.onDrain([&] { server.closeForNew(); });
    service.onBusy([&] { return server.getGameCount() > 0; });

    const zet::Unknown::Handle_T<KeptLink> link(new KeptLink(zoneAnalyser, tasks));
    link->m_Find = [&](Address& address)
    { return zone.isEmpty() ? role.find(ServerType::Zone, address) : parseAddress(zone, address); };
    link->m_OnUp = [&]
    {
        server.setZone(link.get());
        CCmdGZ_regGameServer command;
        command.m_GameSvrInfo.m_Name = role.getName();
        command.m_GameSvrInfo.m_IP = role.getServed().m_Host;
        command.m_GameSvrInfo.m_Port = role.getServed().m_Port;
        command.m_GameSvrInfo.m_Text = key;
        command.m_GameSvrInfo.m_Value1 = games;
        command.m_GameSvrInfo.m_Value2 = hasUdp ? role.getPort() : 0;
        link->send(command);
    };
    link->m_OnDown = [&] { server.loseZone(); };

    service.onStart(
        [&]
        {
            service.getMetrics().watch(players);
            service.getMetrics().watch("players", *port);
            role.reportOpen("races", [&] { return server.getGameCount(); });
            server.setRaceTime(std::chrono::milliseconds(raceTime));
            if (!role.serve(*port))
                return false;
            if (hasUdp &&
                (!positions->start(&service.getSystem()) || !positions->listen(role.getHost(), role.getPort())))
            {
                zet::Log::error(L"Cannot listen on UDP port %d", static_cast<int>(role.getPort()));
                return false;
            }
            return link->begin(service.getSystem());
        });
    return service.run(count, words);
}

} // namespace arena

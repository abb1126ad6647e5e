#include "examples/arena/zone/zone.h"

#include "examples/arena/kept_link.h"
#include "examples/arena/roles.h"
#include "examples/arena/server_role.h"
#include "framework/log.h"
#include "host/metrics.h"

namespace arena::zone
{

void Peer::onEnd(const zet::EndCause& cause)
{
    CFrameworkClientSocket::onEnd(cause);
    m_Zone.lose(*this);
}

Zone::Zone(host::Handlers& handlers)
{
    installPlayers(handlers);
    installServers(handlers);
    handlers.on<CCmdGC_regGameZone>(
        [this](CCommandSocket& socket, CCmdGC_regGameZone& command)
        {
            if (m_Centre.add(socket, command.m_GameZoneInfo))
                socket.send(CCmdGC_regGameZoneOk());
            else
                socket.send(CCmdGC_regGameZoneFail());
        });
    handlers.on<CCmdGC_gameZoneListRequest>(
        [this](CCommandSocket& socket, CCmdGC_gameZoneListRequest&)
        {
            CCmdGC_gameZoneListResponse response;
            m_Centre.fillList(response);
            socket.send(response);
        });
}

void reportStranger(CCommandSocket& socket, const wchar_t* kind)
{
    zet::Log::warning(L"%s is not %s", socket.getPeerName(), kind);
}

} // namespace arena::zone

namespace arena
{

int runZone(int count, char** words)
{
    host::Service service(L"arena_zone", "Runs a game zone.", static_cast<unsigned char>(ServerType::Zone));
    ServerRole role(service, ServerType::Zone, L"zone");
    zet::String_T<wchar_t> centre;
    service.option("--centre", centre, "HOST:PORT of the zone that is the game centre; empty if it is this one");

    zet::String_T<wchar_t> key;
    service.option("--key", key, "what game servers send to register");

    static CCmdAnalyserSocket analyser;
    host::Handlers handlers(analyser);
    zone::Zone zone(handlers);
    role.acceptGreetings(handlers);
    const zet::Unknown::Handle_T<zone::Port> port(new zone::Port(analyser, zone));
    service.serve(*port);
    service.onDrain([&] { zone.announceEnd(); });
    service.onBusy([&] { return zone.getPlayerCount() > 0; });

    // The connection to the game centre.
    static CCmdAnalyserSocket linkAnalyser;
    host::Handlers linkHandlers(linkAnalyser);
    linkHandlers.on<CCmdGC_regGameZoneOk>([](CCommandSocket&, CCmdGC_regGameZoneOk&)
                                          { zet::Log::message(L"The game centre lists this zone"); });
    linkHandlers.on<CCmdGC_regGameZoneFail>([](CCommandSocket&, CCmdGC_regGameZoneFail&)
                                            { zet::Log::error(L"The game centre refuses this zone"); });
    host::Questions questions(linkHandlers, service.getSystem());
    host::Tasks tasks(questions);
    const zet::Unknown::Handle_T<KeptLink> link(new KeptLink(linkAnalyser, tasks));
    GameZoneInfo info;
    link->m_Find = [&](Address& address) { return parseAddress(centre, address); };
    link->m_OnUp = [&]
    {
        CCmdGC_regGameZone command;
        command.m_GameZoneInfo = info;
        link->send(command);
    };
    link->m_OnDown = [] { zet::Log::warning(L"The game centre is lost"); };

    service.onStart(
        [&]
        {
            service.getMetrics().watch(analyser);
            service.getMetrics().watch("zone", *port);
            role.reportOpen("players", [&] { return zone.getPlayerCount(); });
            role.reportOpen("games", [&] { return zone.getGameCount(); });
            service.getMetrics().addPrinter(
                [&](host::MetricText& text)
                {
                    text.beginGauge("arena_players", "Players in this zone.");
                    text.add({}, static_cast<unsigned long long>(zone.getPlayerCount()));
                });
            if (!role.serve(*port))
                return false;
            zone.setName(role.getName());
            zone.setKey(key);
            info.m_Text1 = role.getName();
            info.m_Text2.format(L"%s:%d", role.getServed().m_Host, static_cast<int>(role.getServed().m_Port));
            zone.getCentre().addOwn(info);
            return centre.isEmpty() || link->begin(service.getSystem());
        });
    return service.run(count, words);
}

} // namespace arena

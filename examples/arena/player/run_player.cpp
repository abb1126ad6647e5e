// Scripted players as a process.
#include "examples/arena/command_line.h"
#include "examples/arena/player/players.h"
#include "examples/arena/roles.h"
#include "examples/arena/text.h"
#include "framework/string_helper.h"
#include "framework/system.h"
#include "framework/time.h"
#include "host/service.h"

#include <algorithm>

namespace arena
{

namespace
{

using namespace player;

// Ends once all players are done.
class Stage : public zet::System
{
public:
    void onTick(unsigned int tick) override
    {
        if (!m_Players)
            return;
        if (static_cast<int>(tick - m_End) >= 0)
            m_Players->end();
        if (m_Players->areDone())
            shutdown();
    }

    Players* m_Players = nullptr;
    // The tick after which no further script begins.
    unsigned int m_End = 0;
};

std::string checkAddress(const std::string& text)
{
    HostPort address;
    return parseHostPort(text, address) ? std::string() : "an address is HOST:PORT";
}

// "zone=127.0.0.1:8000"
bool parseServer(const std::string& text, std::string& role, HostPort& address)
{
    const size_t equals = text.find('=');
    role = text.substr(0, equals);
    return equals != std::string::npos && equals > 0 && parseHostPort(text.substr(equals + 1), address);
}

std::string checkServer(const std::string& text)
{
    std::string role;
    HostPort address;
    return parseServer(text, role, address) ? std::string() : "a server is ROLE=HOST:PORT";
}

std::string checkScript(const std::string& name)
{
    return findScript(name) ? std::string() : "there is no script " + name;
}

std::string listScripts()
{
    std::string list = "Scripts:\n";
    for (const Script& script : getScripts())
        list += std::string("  ") + script.m_Name + "  " + script.m_Help + "\n";
    return list;
}

} // namespace

int runPlayer(int count, char** words)
{
    CLI::App app("Plays scripts as one player or several.");
    std::vector<std::string> platforms;
    std::string name = "Ann";
    int players = 1;
    std::vector<std::string> scripts;
    std::vector<std::string> servers;
    std::string authority;
    std::string proxy;
    int pause = 5;
    int seconds = 0;
    std::string operatorName;
    bool hasNoLogin = false;
    PlayerOptions options;
    app.add_option("--platform", platforms, "HOST:PORT, also several times: tried in turn")->check(checkAddress);
    app.add_option("--name", name, "the name of the player");
    app.add_option("--players", players, "several players, with numbers after the name")->check(CLI::Range(1, 10000));
    app.add_option("--script", scripts, "a script, also several times; without it, all for which there are servers")
        ->check(checkScript);
    app.add_option("--server", servers, "ROLE=HOST:PORT, also several times: a server that scripts connect to")
        ->check(checkServer);
    app.add_option("--tls", authority, "connect by TLS: the file of the authority that has signed the certificate");
    app.add_option("--proxy", proxy, "connect through the SOCKS5 proxy at HOST:PORT")->check(checkAddress);
    app.add_option("--operator", operatorName, "the account that may use the tools of the platform");
    app.add_flag("--choose-server", options.m_ChoosesServer,
                 "before the login, move to a server of the platform's list");
    app.add_flag("--udp", options.m_WantsUdp, "scripts that can use UDP do so");
    app.add_option("--races", options.m_Races, "the players race until this number of races is over")
        ->check(CLI::Range(0, 1000000));
    app.add_option("--race-pause", pause, "milliseconds between two positions of a race")->check(CLI::Range(0, 10000));
    app.add_flag("--until-lost", options.m_IsUntilLost,
                 "race until the game server is lost; in other sessions the last player leaves");
    app.add_option("--seconds", seconds, "how long players begin scripts; each plays all once in any case")
        ->check(CLI::Range(0, 1000000));
    app.add_flag("--outages", options.m_ExpectsOutages,
                 "a refusal may be that of an outage: it is printed, and the script is played again");
    app.add_flag("--no-login", hasNoLogin, "for servers without logins");
    app.add_flag("--verbose", options.m_IsVerbose, "print each exchange");
    app.footer(listScripts());
    if (const auto result = parseWords(app, count, words))
        return *result;

    const auto refuse = [&app](const std::string& fault)
    {
        std::fprintf(stderr, "arena player: %s\n\n%s", fault.c_str(), app.help().c_str());
        return host::kExitUsage;
    };
    for (const std::string& text : platforms)
        parseHostPort(text, options.m_Platforms.emplace_back());
    for (const std::string& text : servers)
    {
        std::string role;
        HostPort address;
        parseServer(text, role, address);
        options.m_Servers[role] = address;
    }
    if (!proxy.empty())
        parseHostPort(proxy, options.m_Proxy);
    if (!authority.empty())
    {
        options.m_Tls = new zet::TlsContext;
        if (!options.m_Tls->addTrustFile(zet::StringHelper::utf8ToWide(authority.c_str())))
            return host::kExitFailed;
    }
    options.m_RacePause = std::chrono::milliseconds(pause);
    options.m_Operator = zet::StringHelper::utf8ToWide(operatorName.c_str());
    if (!platforms.empty() && !hasNoLogin)
        options.m_Entry = &getEntry();
    for (const Script& script : getScripts())
    {
        const bool hasServer = script.m_Server ? options.m_Servers.count(script.m_Server) > 0 : !platforms.empty();
        const bool isDefault = script.m_Server || script.m_IsForPlatform != hasNoLogin;
        const bool isNamed = std::find(scripts.begin(), scripts.end(), script.m_Name) != scripts.end();
        if (isNamed && !hasServer)
            return refuse(std::string("the script ") + script.m_Name + " needs " +
                          (script.m_Server ? std::string("--server ") + script.m_Server + "=" : "--platform ") +
                          "HOST:PORT");
        if (hasServer && (isNamed || (scripts.empty() && isDefault)))
            options.m_Scripts.push_back(&script);
    }
    if (options.m_Scripts.empty())
        return refuse("no script without --platform HOST:PORT or --server ROLE=HOST:PORT");

    const zet::Unknown::Handle_T<Stage> stage(new Stage);
    Players all(*stage, options);
    if (!all.install())
        return host::kExitFailed;
    const zet::String_T<wchar_t> wide = zet::StringHelper::utf8ToWide(name.c_str());
    for (int i = 1; i <= players; ++i)
        all.add(players == 1 ? wide : zet::formatText(L"%s-%d", wide, i));
    stage->m_Players = &all;
    stage->m_End = zet::getTimeTick() + static_cast<unsigned int>(seconds) * 1000;
    if (seconds == 0)
        all.end();
    all.start();
    stage->run();

    for (const auto& [kind, figures] : all.getCounters().getKinds())
        say("%s: %llu sent, %llu answered, %llu refused, p50 %.2f ms, p99 %.2f ms", kind.c_str(), figures.getSent(),
            figures.m_Answered, figures.m_Refused, figures.m_Times.getQuantile(0.5), figures.m_Times.getQuantile(0.99));
    const std::vector<std::string> faults = all.findFaults();
    for (const std::string& fault : faults)
        say("finding: %s", fault.c_str());
    say("players: %d done, %d findings", players, static_cast<int>(faults.size()));
    return faults.empty() ? host::kExitGood : host::kExitFailed;
}

} // namespace arena

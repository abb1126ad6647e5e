// Starts everything on loopback, lets players play, and audits the outcome.
#include "examples/arena/command_line.h"
#include "examples/arena/player/players.h"
#include "examples/arena/roles.h"
#include "examples/arena/run/server_process.h"
#include "examples/arena/run/table.h"
#include "examples/arena/text.h"
#include "framework/string_helper.h"
#include "framework/time.h"
#include "framework/uuid.h"
#include "host/service.h"

#include <algorithm>
#include <filesystem>
#include <list>
#include <random>
#include <set>

namespace arena
{

namespace
{

using namespace player;
using namespace run;

// Milliseconds for the start and the end of a server, and for the players after the end of the run.
constexpr int kPatience = 15000;
constexpr unsigned int kLeaveTime = 60000;
// And for the servers to close what the players have left.
constexpr unsigned int kCloseTime = 3000;
constexpr double kCloseInterval = 0.1;
// Seconds between two faults.
constexpr double kShortestPause = 1;
constexpr double kLongestPause = 4;

// The account that uses the tools of the platform.
constexpr char kOperator[] = "operator";

// The roles that a run starts, in this order, if the program has them.
constexpr const char* kServerRoles[] = {"platform", "zone", "game", "sport", "lesson", "device"};

struct RunOptions
{
    int m_Players = 8;
    int m_Races = 0;
    int m_Seconds = 10;
    int m_RaceTime = 120;
    unsigned int m_Seed = 1;
    std::string m_Database;
    std::string m_Tls;
    // None for all.
    std::vector<std::string> m_Scripts;
    bool m_HasFaults = false;
};

// A folder of this run, for logs and an embedded database. Empty, and printed, if it cannot be made.
std::filesystem::path makeFolder()
{
    zet::Uuid id;
    zet::uuid_create(id);
    std::error_code error;
    std::filesystem::path folder = std::filesystem::temp_directory_path(error);
    if (!error)
    {
        folder /= std::string("arena-") + idToText(id).getBuffer();
        std::filesystem::create_directories(folder, error);
    }
    if (!error)
        return folder;
    say("no folder for the logs: %s", error.message().c_str());
    return {};
}

class Run : public zet::System
{
public:
    Run(const RunOptions& options, const PlayerOptions& players, std::filesystem::path folder)
        : m_Options(options), m_PlayerOptions(players), m_Folder(std::move(folder)), m_Random(options.m_Seed),
          m_Table(isTerminal())
    {
    }

    bool startServers();
    // False if the scripts cannot be installed.
    bool play();
    void endServers();
    // Prints the findings. Whether there are none.
    bool audit();

    void onTick(unsigned int tick) override;

private:
    bool startServer(const std::vector<std::string>& words);
    void find(const std::string& finding) { m_Findings.push_back(finding); }
    double getSeconds() const { return static_cast<double>(zet::getTimeTick() - m_Begin) / 1000; }
    void watchServers(unsigned int tick);
    bool areRegistered() const;
    bool hasBrokenAll() const { return m_Faults >= static_cast<int>(m_Victims.size()); }
    void planFault();
    void breakServer();
    // What the servers still have open, in words, or that they do not say it.
    std::vector<std::string> findOpen() const;
    void askFigures();
    void auditDatabase();

    const RunOptions m_Options;
    PlayerOptions m_PlayerOptions;
    const std::filesystem::path m_Folder;
    std::mt19937 m_Random;
    Table m_Table;
    // The registry first.
    std::list<ServerProcess> m_Servers;
    std::map<std::string, Figures> m_Figures;
    std::unique_ptr<Players> m_Players;
    std::vector<std::string> m_Findings;
    unsigned int m_Begin = 0;
    unsigned int m_EndTime = 0;
    unsigned int m_CloseEnd = 0;
    bool m_IsClosing = false;
    // Servers of which it is found that they have ended by themselves.
    std::set<std::string> m_Ended;
    // The order of the faults: each server once, then all again in another order.
    std::vector<ServerProcess*> m_Victims;
    double m_NextShow = 0;
    double m_NextFault = 0;
    int m_Faults = 0;
};

bool Run::startServer(const std::vector<std::string>& words)
{
    ServerProcess& server = m_Servers.emplace_back(words);
    if (server.start() && server.awaitPort(kPatience))
    {
        say("%s listens on port %d", server.getRole().c_str(), server.getPort());
        return true;
    }
    say("finding: %s does not start", server.getRole().c_str());
    for (const std::string& line : server.getLines())
        say("  %s", line.c_str());
    return false;
}

bool Run::startServers()
{
    if (!startServer({"registry"}))
        return false;
    const std::string registry = std::to_string(m_Servers.front().getPort());
    for (const char* const role : kServerRoles)
    {
        if (!findRole(role))
            continue;
        std::vector<std::string> words = {role,     "--registry",   "127.0.0.1:" + registry,
                                          "--name", role,           "--http-port",
                                          "0",      "--log-folder", (m_Folder / role).string()};
        if (std::string_view(role) == "platform")
        {
            words.insert(words.end(), {"--db", m_Options.m_Database, "--operator", kOperator});
            if (!m_Options.m_Tls.empty())
                words.insert(words.end(), {"--certificate", m_Options.m_Tls + "/server.pem", "--key",
                                           m_Options.m_Tls + "/server.key"});
        }
        if (std::string_view(role) == "game" && m_PlayerOptions.m_WantsUdp)
            words.emplace_back("--udp");
        if (!startServer(words))
            return false;
    }
    // Without a platform the players only send echoes.
    if (!findRole("platform") && !startServer({"service", "--type", "1", "--name", "service", "--registry", registry}))
        return false;
    const char* const target = findRole("platform") ? "platform" : "service";
    for (const ServerProcess& server : m_Servers)
    {
        const HostPort address = {L"127.0.0.1", static_cast<unsigned short>(server.getPort())};
        m_PlayerOptions.m_Servers[server.getRole()] = address;
        if (server.getRole() == target)
            m_PlayerOptions.m_Platforms = {address};
    }
    for (ServerProcess& server : m_Servers)
        m_Victims.push_back(&server);
    return true;
}

// Only the seed decides, however long the servers take to come back.
void Run::planFault()
{
    const size_t next = static_cast<size_t>(m_Faults) % m_Victims.size();
    if (next == 0)
        std::shuffle(m_Victims.begin(), m_Victims.end(), m_Random);
    m_NextFault = getSeconds() + std::uniform_real_distribution(kShortestPause, kLongestPause)(m_Random);
}

bool Run::play()
{
    const bool hasPlatform = findRole("platform") != nullptr;
    if (hasPlatform)
        m_PlayerOptions.m_Entry = &getEntry();
    for (const Script& script : getScripts())
    {
        const bool isPossible =
            script.m_Server ? findRole(script.m_Server) != nullptr : script.m_IsForPlatform == hasPlatform;
        const auto& named = m_Options.m_Scripts;
        if (isPossible && (named.empty() || std::find(named.begin(), named.end(), script.m_Name) != named.end()))
            m_PlayerOptions.m_Scripts.push_back(&script);
    }
    m_PlayerOptions.m_Operator = zet::StringHelper::utf8ToWide(kOperator);
    m_Players = std::make_unique<Players>(*this, m_PlayerOptions);
    if (!m_Players->install())
        return false;
    for (int i = 1; i <= m_Options.m_Players; ++i)
        m_Players->add(zet::formatText(L"Ann-%d", i));
    m_Begin = zet::getTimeTick();
    if (m_Options.m_HasFaults)
    {
        say("seed %u", m_Options.m_Seed);
        planFault();
    }
    m_Players->start();
    return run();
}

void Run::onTick(unsigned int tick)
{
    watchServers(tick);
    const double seconds = getSeconds();
    const bool isEnough = seconds >= m_Options.m_Seconds && m_Players->getRaces() >= m_Options.m_Races &&
                          (!m_Options.m_HasFaults || hasBrokenAll());
    if (!m_Players->isOver() && (isEnough || seconds >= m_Options.m_Seconds + m_Options.m_RaceTime))
    {
        m_Players->end();
        m_EndTime = tick + kLeaveTime;
    }
    const bool isDone = m_Players->areDone() && areRegistered();
    if (!m_IsClosing && (seconds >= m_NextShow || isDone))
    {
        m_NextShow = seconds + 1;
        const double share = m_Options.m_Seconds > 0 ? seconds / m_Options.m_Seconds : 1;
        const double raced = m_Options.m_Races > 0 ? double(m_Players->getRaces()) / m_Options.m_Races : 1;
        m_Table.show(*m_Players, seconds, isDone ? 1 : std::min({share, raced, 0.99}), m_Figures);
        askFigures();
    }
    if (m_Options.m_HasFaults && !m_Players->isOver() && seconds >= m_NextFault)
        breakServer();
    const bool isLate = m_Players->isOver() && static_cast<int>(tick - m_EndTime) >= 0;
    if (!m_IsClosing && (isDone || isLate))
    {
        m_IsClosing = true;
        m_CloseEnd = tick + kCloseTime;
        m_NextShow = 0;
        m_Figures.clear();
        for (const ServerProcess& server : m_Servers)
            if (!server.isRegistered())
                find(server.getRole() + " has not registered again");
    }
    if (!m_IsClosing)
        return;
    if (seconds >= m_NextShow)
    {
        m_NextShow = seconds + kCloseInterval;
        askFigures();
    }
    const std::vector<std::string> open = findOpen();
    if (!open.empty() && static_cast<int>(tick - m_CloseEnd) < 0)
        return;
    m_Findings.insert(m_Findings.end(), open.begin(), open.end());
    shutdown();
}

std::vector<std::string> Run::findOpen() const
{
    std::vector<std::string> findings;
    for (const ServerProcess& server : m_Servers)
    {
        const auto found = m_Figures.find(server.getRole());
        if (found == m_Figures.end() && std::string_view(server.getRole()) != "registry" &&
            std::string_view(server.getRole()) != "service")
            findings.push_back(server.getRole() + " does not answer with its figures");
        else if (found != m_Figures.end())
            for (const auto& [kind, number] : found->second.m_Open)
                if (number > 0)
                    findings.push_back(server.getRole() + ": " + std::to_string(static_cast<int>(number)) + " " + kind +
                                       " left open");
    }
    return findings;
}

bool Run::areRegistered() const
{
    return std::all_of(m_Servers.begin(), m_Servers.end(),
                       [](const ServerProcess& server) { return server.isRegistered(); });
}

void Run::watchServers(unsigned int tick)
{
    for (ServerProcess& server : m_Servers)
        if (server.watch(tick) && !m_Options.m_HasFaults && m_Ended.insert(server.getRole()).second)
            // A role that cannot do without another one ends with it.
            find(server.getRole() + " has ended by itself");
}

void Run::breakServer()
{
    ServerProcess& server = *m_Victims[static_cast<size_t>(m_Faults) % m_Victims.size()];
    if (!server.isListening() || !areRegistered())
        return;
    ++m_Faults;
    say("fault: %s is killed and started again", server.getRole().c_str());
    server.kill();
    if (&server == &m_Servers.front())
        for (ServerProcess& each : m_Servers)
            each.forgetRegistration();
    if (!server.start())
        find(server.getRole() + " does not start again");
    planFault();
}

void Run::askFigures()
{
    for (const ServerProcess& server : m_Servers)
    {
        if (!server.isListening() || server.getHttpPort() == 0)
            continue;
        const zet::Unknown::Handle_T<FigureRequest> request(new FigureRequest(
            [this, role = server.getRole()](const std::string& answer)
            {
                if (!answer.empty())
                    m_Figures[role] = parseFigures(answer);
            }));
        if (!request->begin(*this, static_cast<unsigned short>(server.getHttpPort())))
            request->stop();
    }
}

void Run::endServers()
{
    // The registry passes the order on to all that are registered.
    Process order;
    if (!m_Servers.empty() && m_Servers.front().isListening() &&
        order.start({"shutdown", "--registry", std::to_string(m_Servers.front().getPort())}))
        order.wait(kPatience);
    for (auto server = m_Servers.rbegin(); server != m_Servers.rend(); ++server)
        if (server->getPort() != 0 && !server->end(kPatience))
        {
            find(server->getRole() + " did not end well");
            for (const std::string& line : server->getLines())
                say("  %s: %s", server->getRole().c_str(), line.c_str());
        }
}

void Run::auditDatabase()
{
    if (!findRole("audit") || m_Options.m_Database.empty())
        return;
    Process process;
    if (!process.start({"audit", "--db", m_Options.m_Database}))
        return find("the audit of the database does not start");
    const bool hasEnded = process.wait(kPatience);
    for (std::string line; process.readLine(line, 0);)
        say("%s", line.c_str());
    if (!hasEnded || process.getResult() != 0)
        find("the database is not in order");
}

bool Run::audit()
{
    auditDatabase();
    if (m_Players)
        for (const std::string& fault : m_Players->findFaults())
            find(fault);
    const int races = m_Players ? m_Players->getRaces() : 0;
    if (races < m_Options.m_Races)
        find(std::to_string(races) + " of " + std::to_string(m_Options.m_Races) + " races were raced to the end");
    if (m_Options.m_HasFaults && !hasBrokenAll())
        find("not every server was killed");
    for (const std::string& finding : m_Findings)
        say("finding: %s", finding.c_str());
    const Kind total = m_Players ? m_Players->getCounters().getTotal() : Kind();
    say("run: %d players, %d races, %llu commands, %llu answered, %llu refused, %llu interrupted, %d faults, "
        "%d findings",
        m_Options.m_Players, races, total.getSent(), total.m_Answered, total.m_Refused, total.m_Interrupted, m_Faults,
        static_cast<int>(m_Findings.size()));
    return m_Findings.empty();
}

} // namespace

int runAll(int count, char** words)
{
    CLI::App app("Starts all servers on this machine, lets players play, and audits the outcome.");
    RunOptions options;
    PlayerOptions players;
    app.add_option("--players", options.m_Players, "the number of players")->check(CLI::Range(1, 10000));
    app.add_option("--races", options.m_Races, "the races of up to 8 pawns to be raced to the end at least")
        ->check(CLI::Range(0, 1000000));
    app.add_option("--seconds", options.m_Seconds, "how long players begin scripts; each plays all once in any case")
        ->check(CLI::Range(0, 1000000));
    app.add_option("--race-time", options.m_RaceTime, "seconds after --seconds in which these races have to end")
        ->check(CLI::Range(0, 1000000));
    app.add_option("--db", options.m_Database, "the database of the accounts: an embedded one without this option");
    app.add_option("--tls", options.m_Tls,
                   "the folder of authority.pem, server.pem and server.key: TLS to the platform")
        ->check(CLI::ExistingDirectory);
    app.add_option("--script", options.m_Scripts, "play this script only, also several times")
        ->check([](const std::string& name)
                { return findScript(name) ? std::string() : "there is no script " + name; });
    app.add_flag("--udp", players.m_WantsUdp, "scripts that can use UDP do so");
    app.add_flag("--faults", options.m_HasFaults,
                 "kill a server every 1 to 4 s, each in turn and at least once, and start it again");
    app.add_option("--seed", options.m_Seed, "decides the order and the moments of the faults");
    app.add_flag("--verbose", players.m_IsVerbose, "print each exchange of the players");
    if (const auto result = parseWords(app, count, words))
        return *result;

    if (!options.m_Tls.empty())
    {
        players.m_Tls = new zet::TlsContext;
        if (!players.m_Tls->addTrustFile(zet::StringHelper::utf8ToWide((options.m_Tls + "/authority.pem").c_str())))
            return host::kExitFailed;
    }
    const std::filesystem::path folder = makeFolder();
    if (folder.empty())
        return host::kExitFailed;
    if (options.m_Database.empty())
        options.m_Database = "sqlite://" + (folder / "arena.db").string();
    players.m_Races = options.m_Races;
    const zet::Unknown::Handle_T<Run> run(new Run(options, players, folder));
    const bool hasPlayed = run->startServers() && run->play();
    run->endServers();
    const bool isClean = run->audit() && hasPlayed;
    std::error_code error;
    if (isClean)
        std::filesystem::remove_all(folder, error);
    if (error)
        say("the folder %s cannot be removed: %s", folder.string().c_str(), error.message().c_str());
    if (!isClean)
        say("logs and database: %s", folder.string().c_str());
    return isClean ? host::kExitGood : host::kExitFailed;
}

} // namespace arena

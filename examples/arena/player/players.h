// The players of a process, and what they share.
#pragma once

#include "examples/arena/player/counters.h"
#include "examples/arena/player/player.h"
#include "examples/arena/player/scripts.h"
#include "net/tls/context.h"

#include <list>
#include <memory>
#include <string>
#include <typeindex>
#include <unordered_map>
#include <vector>

namespace arena::player
{

// How the players reach the platform.
struct PlayerOptions
{
    // A player takes the next one when a connection fails. None for scripts that need other servers only.
    std::vector<HostPort> m_Platforms;
    // Null for plain connections.
    zet::Unknown::Handle_T<zet::TlsContext> m_Tls;
    // Port 0 for none.
    HostPort m_Proxy;
    // The other servers of the platform, by role, for scripts that connect to them.
    std::map<std::string, HostPort> m_Servers;
    // The account that may use the tools of the platform; empty if none is known.
    zet::String_T<wchar_t> m_Operator;
    // The player asks for the list of servers and moves to the one that is its turn.
    bool m_ChoosesServer = false;
    // Scripts that can send over UDP do so.
    bool m_WantsUdp = false;
    // The players race until this number of races is over.
    int m_Races = 0;
    // Between two positions of a race.
    std::chrono::milliseconds m_RacePause{5};
    // Races go on until the game server is lost; in other sessions the last player leaves.
    bool m_IsUntilLost = false;
    // A refusal may be that of an outage, such as of the database: the script is played again, and players connect for
    // longer. Each refusal is printed.
    bool m_ExpectsOutages = false;
    bool m_IsVerbose = false;
    // The script of the login, played after each connect; null for servers without one.
    const Script* m_Entry = nullptr;
    std::vector<const Script*> m_Scripts;
};

// Belongs to the thread of its System.
class Players
{
public:
    Players(zet::System& system, PlayerOptions options);

    // Installs the handlers of the scripts. False, and logged, if two scripts want the same.
    bool install();
    void add(const zet::String_T<wchar_t>& name);
    // Starts all players that were added.
    void start();
    // The players end after their scripts under way.
    void end() { m_IsOver = true; }
    bool isOver() const { return m_IsOver; }
    bool areDone() const;

    const PlayerOptions& getOptions() const { return m_Options; }
    zet::System& getSystem() { return m_System; }
    CCmdAnalyserSocket& getAnalyser() { return *m_Analyser; }
    host::Handlers& getHandlers() { return m_Handlers; }
    host::Questions& getQuestions() { return m_Questions; }
    const Counters& getCounters() const { return m_Counters; }
    // Counts the commands of these questions too, which the scripts share.
    void watch(host::Questions& questions);
    // What the scripts of a topic share in this process, such as routers or analysers: made at the first call, and
    // destroyed after the players.
    template <class Shared>
    Shared& share()
    {
        std::shared_ptr<void>& shared = m_Shared[typeid(Shared)];
        if (!shared)
            shared = std::make_shared<Shared>();
        return *static_cast<Shared*>(shared.get());
    }
    // Of LoginTurn.
    bool takeLoginTurn();
    void giveLoginTurn() { --m_LoginTurns; }
    // A script has played a race.
    void addRace() { ++m_Races; }
    int getRaces() const { return m_Races; }
    const std::list<Player>& getAll() const { return m_Players; }

    // The audit of the players, in words; none if every command was answered or refused and no expectation failed.
    std::vector<std::string> findFaults() const;

private:
    zet::System& m_System;
    const PlayerOptions m_Options;
    bool m_IsOver = false;
    int m_Races = 0;
    int m_LoginTurns = 0;
    Counters m_Counters;
    // Large, so not on the stack.
    const std::unique_ptr<CCmdAnalyserSocket> m_Analyser = std::make_unique<CCmdAnalyserSocket>();
    std::unordered_map<std::type_index, std::shared_ptr<void>> m_Shared;
    host::Handlers m_Handlers;
    host::Questions m_Questions;
    std::vector<const host::Questions*> m_OtherQuestions;
    std::list<Player> m_Players;
};

// The right to log in, of at most kMost players of a process at once: a platform takes its time for the hash of each
// password, and refuses logins when too many wait. Given back by its end.
class LoginTurn
{
public:
    // A script logs in as up to three accounts at once.
    static constexpr int kMost = 50;
    // Between two attempts to take one.
    static constexpr std::chrono::milliseconds kPause{50};

    explicit LoginTurn(Players& players) : m_Players(players) {}
    ~LoginTurn() { give(); }
    LoginTurn(const LoginTurn&) = delete;
    LoginTurn& operator=(const LoginTurn&) = delete;

    // False if the others have all.
    bool take() { return m_IsTaken || (m_IsTaken = m_Players.takeLoginTurn()); }
    void give()
    {
        if (m_IsTaken)
            m_Players.giveLoginTurn();
        m_IsTaken = false;
    }

private:
    Players& m_Players;
    bool m_IsTaken = false;
};

} // namespace arena::player

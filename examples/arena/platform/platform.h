// The platform server: what its handlers share.
#pragma once

#include "examples/arena/peers.h"
#include "examples/arena/platform/accounts.h"
#include "examples/arena/platform/packs/packs.h"
#include "examples/arena/platform/passwords.h"
#include "examples/arena/platform/session.h"
#include "host/handlers.h"
#include "host/pack_router.h"
#include "host/registration.h"
#include "host/tasks.h"
#include "packs/envelope.h"
#include "runtime/system_cmd_info.h"

#include <map>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

namespace host
{
class MetricCounter;
class MetricGauge;
class Service;
} // namespace host
class CCmdServerRegister;
class CFrameworkServerSocket;

namespace arena::platform
{

class Database;

// All payloads of void-data envelopes have their numbers in one router: an id has one handler.
using VoidData = host::PackRouter<CCmdVoidDataRequest, CCmdVoidDataReply>;

// The options of the command line.
struct PlatformOptions
{
    unsigned short m_Port = 0;
    // "HOST:PORT"; empty for none.
    zet::String_T<wchar_t> m_Registry;
    zet::String_T<wchar_t> m_Name = L"platform";
    zet::String_T<wchar_t> m_Host = L"127.0.0.1";
    zet::String_T<wchar_t> m_Database = L"sqlite://arena.db";
    // The account whose player may use the maintenance command, the query tool and the monitoring; empty for none.
    zet::String_T<wchar_t> m_Operator;
    // Files of PEM; without both the connections are plain ones.
    zet::String_T<wchar_t> m_Certificate;
    zet::String_T<wchar_t> m_Key;
};

// Belongs to the thread of the service's System. Create it before run(), call start() in onStart().
class Platform
{
public:
    explicit Platform(host::Service& service);
    ~Platform();

    // Opens the database, installs the handlers, listens and prints the port. False, and logged, if one of it fails.
    bool start(const PlatformOptions& options);
    // The server of the players' connections, for Service::serve().
    CFrameworkServerSocket& getServer() const;

    host::Service& getService() const { return m_Service; }
    host::Handlers& getHandlers() { return m_Handlers; }
    host::Tasks& getTasks() { return *m_Tasks; }
    VoidData& getVoidData() { return m_VoidData; }
    Accounts& getAccounts() { return *m_Accounts; }
    // Whether the last transaction was not done because the database failed.
    bool hasFailed() const;
    Passwords& getPasswords() { return *m_Passwords; }
    const PlatformOptions& getOptions() const { return m_Options; }
    SystemCmdInfo& getStatistics() { return m_Statistics; }
    // This process among the platforms of a database.
    const std::string& getOwner() const { return m_Owner; }

    // The session in which a player is logged in at this platform; null for none.
    Session* findSession(const wchar_t* accountName);
    // Null if the connection has ended or the player was kicked out.
    Session* findSession(unsigned long long number);
    int getPlayerCount() const { return static_cast<int>(m_Players.size()); }

    // Calls visit with each session in which a player is logged in, by name, until it returns false.
    template <class Visit>
    void forEachPlayer(Visit visit)
    {
        for (const auto& [name, session] : m_Players)
            if (!visit(*session))
                return;
    }

    // The handler gets the session; it is called without a login too.
    template <class Command, class Handler>
    void on(Handler handler)
    {
        m_Handlers.on<Command>(
            [handler = std::move(handler)](CCommandSocket& socket, Command& command) mutable
            {
                // All sockets of this analyser are sessions.
                handler(static_cast<Session&>(socket), command);
            });
    }

    // The servers of the list that a client chooses from: this platform, and the other ones that are registered.
    const std::map<zet::Uuid, CCmdServerRegister>& getServers() const { return m_Servers; }

    // For Session.
    unsigned long long addSession(Session& session);
    void removeSession(Session& session);
    void addPlayer(Session& session);
    void removePlayer(Session& session);

private:
    class Server;

    bool install();
    bool secure();
    // Adds this platform to the list of servers, and registers it where there is a registry.
    bool enrol();
    // Kicks out the players who have logged in at another platform.
    void followLogins();
    void countFigures();

    host::Service& m_Service;
    host::MetricGauge& m_PlayerFigure;
    host::MetricCounter& m_CommitFigure;
    host::MetricCounter& m_FailureFigure;
    PlatformOptions m_Options;
    SystemCmdInfo m_Statistics;
    zet::Uuid m_Id;
    std::string m_Owner;
    // Large, like every analyser.
    const std::unique_ptr<CCmdAnalyserSocket> m_Analyser;
    host::Handlers m_Handlers;
    VoidData m_VoidData;
    std::unique_ptr<Database> m_Database;
    std::unique_ptr<Accounts> m_Accounts;
    std::unique_ptr<Passwords> m_Passwords;
    std::unique_ptr<host::Questions> m_Questions;
    std::unique_ptr<host::Tasks> m_Tasks;
    PeerOptions m_Peers;
    host::Registration m_Registration;
    std::map<zet::Uuid, CCmdServerRegister> m_Servers;
    std::unordered_map<unsigned long long, Session*> m_Sessions;
    unsigned long long m_LastNumber = 0;
    // By the name of the account.
    std::map<std::wstring, Session*, std::less<>> m_Players;
    // They hold sessions.
    std::vector<Feature> m_Features;
    // Last, so that its sessions end first.
    const zet::Unknown::Handle_T<Server> m_Server;
};

// Each file of handlers has one such function.
void installServerChoice(Platform& platform);
void installLogins(Platform& platform);
void installBindings(Platform& platform);
void installBilling(Platform& platform);
void installProgress(Platform& platform);
void installRanks(Platform& platform);
void installVoidData(Platform& platform);
void installMail(Platform& platform);
void installLogs(Platform& platform);
void installMonitoring(Platform& platform);

// Logs the player in on this connection. An older login of the player ends, at this platform at once, at another one
// when that hears of it or saves next. False if the database failed; then the session has no login.
bool logIn(Platform& platform, Session& session, int id, zet::Uuid& ticket);
// What the client may decide in the records that it returns; the rest is the platform's.
void takeClientFields(const AccountData& from, AccountData& to);

} // namespace arena::platform

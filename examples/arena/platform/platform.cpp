#include "examples/arena/platform/platform.h"
#include "commands/registry.h"
#include "examples/arena/address.h"
#include "examples/arena/lines.h"
#include "examples/arena/platform/database.h"
#include "examples/arena/protocol/server_types.h"
#include "examples/arena/text.h"
#include "framework/log.h"
#include "host/metrics.h"
#include "host/service.h"
#include "net/tls/context.h"
#include "runtime/service_system.h"
#include "transport/framework_server_socket.h"

using namespace std::chrono_literals;

namespace arena::platform
{

namespace
{

// How often a platform looks whether its players have logged in elsewhere: PostgreSQL tells it, SQLite must be asked.
constexpr std::chrono::milliseconds kFollowTime = 100ms;
constexpr std::chrono::milliseconds kAskTime = 1s;

} // namespace

class Platform::Server : public CFrameworkServerSocket
{
public:
    Server(Platform& platform, CCmdAnalyserSocket& analyser)
        : CFrameworkServerSocket(L"", 0), m_Platform(platform), m_Analyser(analyser)
    {
    }
    void onAccept() override { accept(zet::Unknown::Handle_T<Session>(new Session(m_Platform, &m_Analyser))); }
    void onTick(unsigned int tick) override
    {
        CFrameworkServerSocket::onTick(tick);
        m_Platform.m_Statistics.Tick(tick - m_LastTick);
        m_LastTick = tick;
    }

private:
    Platform& m_Platform;
    CCmdAnalyserSocket& m_Analyser;
    unsigned int m_LastTick = zet::getTimeTick();
};

Platform::Platform(host::Service& service)
    : m_Service(service), m_PlayerFigure(service.getMetrics().gauge("arena_players", "Players who are logged in.")),
      m_CommitFigure(service.getMetrics().counter("arena_database_commits", "Transactions that were committed.")),
      m_FailureFigure(service.getMetrics().counter("arena_database_failures", "Transactions that have failed.")),
      m_Analyser(new CCmdAnalyserSocket), m_Handlers(*m_Analyser), m_Peers(service),
      m_Registration(service.getSystem()), m_Server(new Server(*this, *m_Analyser))
{
}

Platform::~Platform() = default;

CFrameworkServerSocket& Platform::getServer() const
{
    return *m_Server;
}

bool Platform::start(const PlatformOptions& options)
{
    m_Options = options;
    zet::uuid_create(m_Id);
    m_Owner =
        toUtf8(zet::formatText(L"%08x%08x%04x", m_Id.m_Data1, m_Id.m_Data2, static_cast<unsigned int>(m_Id.m_Data3)) +
               m_Id.m_Node.convertToString());
    // Throws, with a text for the log, if the database cannot be used.
    m_Database = std::make_unique<Database>(toUtf8(options.m_Database));
    m_Accounts = std::make_unique<Accounts>(*m_Database);
    m_Passwords = std::make_unique<Passwords>(m_Service.getSystem());
    m_Questions = std::make_unique<host::Questions>(m_Handlers, m_Service.getSystem());
    m_Tasks = std::make_unique<host::Tasks>(*m_Questions);
    if (!install() || !secure())
        return false;
    m_Service.getMetrics().watch(*m_Analyser);
    m_Service.getMetrics().watch("players", *m_Server);
    if (!m_Server->setBindAddress(options.m_Host) || !m_Server->start(&m_Service.getSystem()) ||
        !m_Server->listen(options.m_Port, 0))
        return false;
    followLogins();
    say("%s%d", lines::kListening, static_cast<int>(m_Server->zet::TcpServer::getPort()));
    return m_Peers.begin(m_Registration, options.m_Host, m_Server->zet::TcpServer::getPort()) && enrol();
}

bool Platform::install()
{
    installServerChoice(*this);
    installLogins(*this);
    installBindings(*this);
    installBilling(*this);
    installProgress(*this);
    installRanks(*this);
    installVoidData(*this);
    installMail(*this);
    installLogs(*this);
    installMonitoring(*this);
    on<CCmdServerEcho>(
        [](Session& session, const CCmdServerEcho& echo)
        {
            CCmdServerEchoReply reply;
            reply.m_Data = echo.m_Data;
            session.send(reply);
        });
    // Before the router of void data is installed, since a feature adds its payloads to that.
    m_Features = installPacks(*this);
    return !m_Features.empty() && m_VoidData.install(m_Handlers) && m_Registration.acceptGreetings(m_Handlers);
}

bool Platform::secure()
{
    if (m_Options.m_Certificate.isEmpty() && m_Options.m_Key.isEmpty())
        return true;
    const zet::Unknown::Handle_T<zet::TlsContext> tls(new zet::TlsContext);
    if (!tls->setCertificateFiles(m_Options.m_Certificate, m_Options.m_Key) || !m_Server->setTlsContext(tls))
        return false;
    m_Service.useTls(*tls);
    return true;
}

bool Platform::enrol()
{
    CCmdServerRegister self;
    self.m_ServerType = static_cast<unsigned char>(ServerType::Platform);
    self.m_ServerId = m_Id;
    self.m_ServerName = m_Options.m_Name;
    m_Peers.fillAddress(self);
    m_Servers[m_Id] = self;
    if (m_Options.m_Registry.isEmpty())
        return true;
    HostPort registry;
    if (!parseHostPort(toUtf8(m_Options.m_Registry), registry))
    {
        zet::Log::error(L"'%s' is not HOST:PORT of a registry", m_Options.m_Registry);
        return false;
    }
    m_Registration.setRecord(self);
    m_Registration.onServer(
        [this](const CCmdServerRegister& server)
        {
            if (server.m_ServerType == static_cast<unsigned char>(ServerType::Platform))
                m_Servers[server.m_ServerId] = server;
        });
    m_Registration.onGone([this](const CCmdServerRegister& server) { m_Servers.erase(server.m_ServerId); });
    m_Registration.onShutdown([this] { m_Service.beginDrain(); });
    m_Service.onDrain([this] { m_Registration.stop(); });
    return m_Registration.start(registry.m_Host, registry.m_Port);
}

bool Platform::hasFailed() const
{
    return m_Database->hasFailed();
}

Session* Platform::findSession(const wchar_t* accountName)
{
    const auto found = m_Players.find(std::wstring_view(accountName));
    return found == m_Players.end() ? nullptr : found->second;
}

Session* Platform::findSession(unsigned long long number)
{
    const auto found = m_Sessions.find(number);
    return found == m_Sessions.end() || found->second->isKickedOut() ? nullptr : found->second;
}

unsigned long long Platform::addSession(Session& session)
{
    m_Statistics.AddConnect();
    m_Sessions[++m_LastNumber] = &session;
    return m_LastNumber;
}

void Platform::removeSession(Session& session)
{
    if (m_Sessions.erase(session.getNumber()) > 0)
        m_Statistics.DelConnect();
}

void Platform::addPlayer(Session& session)
{
    m_Players[std::wstring(session.getStored().m_Name.view())] = &session;
}

void Platform::removePlayer(Session& session)
{
    const auto found = m_Players.find(session.getStored().m_Name.view());
    if (found != m_Players.end() && found->second == &session)
        m_Players.erase(found);
}

void Platform::followLogins()
{
    for (const auto& [id, epoch] : m_Accounts->findLogins(m_Owner))
        for (const auto& [name, session] : m_Players)
            if (session->getStored().m_Id == id && session->getStored().m_Epoch < epoch)
            {
                session->kickOut();
                break;
            }
    countFigures();
    const bool isTold = m_Database->isPostgreSql() && !m_Database->hasMissedNotices();
    m_Tasks->after(isTold ? kFollowTime : kAskTime, [this] { followLogins(); });
}

void Platform::countFigures()
{
    m_PlayerFigure.set(getPlayerCount());
    m_CommitFigure.add(m_Database->getCommits() - m_CommitFigure.get());
    m_FailureFigure.add(m_Database->getFailures() - m_FailureFigure.get());
}

} // namespace arena::platform

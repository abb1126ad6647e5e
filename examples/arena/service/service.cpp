#include "examples/arena/service/service.h"

#include "examples/arena/lines.h"
#include "examples/arena/service/greeting.h"
#include "examples/arena/service/registry_link.h"
#include "examples/arena/service/service_connection.h"
#include "examples/arena/text.h"
#include "framework/log.h"

namespace arena
{

ServicePort::ServicePort(Service& service, unsigned short port) : LoopbackPort(port), m_Service(service) {}

void ServicePort::onAccept()
{
    const zet::Unknown::Handle_T<ServiceConnection> connection(new ServiceConnection(m_Service));
    accept(connection.get());
}

Service::Service(const ServiceOptions& options)
    : CMyServiceSystem(options.m_Type), m_Options(options), m_Port(new ServicePort(*this, options.m_Port)),
      m_Link(new RegistryLink(*this))
{
    setSystemName(zet::String_T<wchar_t>(L"arena_") + options.m_Name);
    if (!options.m_Id.isNull())
        m_ServerId = options.m_Id;
    ServiceConnection::install(m_PortAnalyser);
    RegistryLink::install(m_LinkAnalyser);
    Greeting::install(m_GreetingAnalyser);
}

Service::~Service() = default;

bool Service::ServiceOn()
{
    CMyServiceSystem::ServiceOn();
    if (!m_Port->start(this) || !m_Port->listen(m_Options.m_Port, 0))
    {
        zet::Log::error(L"Cannot open port %d", m_Options.m_Port);
        return false;
    }
    say("%s%d", lines::kListening, m_Port->getPort());
    if (!m_Link->start(this) || !m_Link->connect(kLoopback, m_Options.m_RegistryPort, true))
    {
        zet::Log::error(L"No registry at port %d", m_Options.m_RegistryPort);
        return false;
    }
    m_Deadline.set(kAnswerTime);
    m_Link->enrol();
    return true;
}

void Service::exit()
{
    m_Link->close();
    m_Port->close();
    CMyServiceSystem::exit();
    say("%s", lines::kEnded);
}

void Service::onTick(unsigned int tick)
{
    if (!m_Deadline.isOver(tick))
        return;
    zet::Log::error(L"The registry does not answer");
    fail();
}

void Service::fillRecord(CCmdServerRegister& record) const
{
    record.m_ServerType = GetServerType();
    record.m_ServerId = GetServerId();
    record.m_ServerName = m_Options.m_Name;
    record.m_ServerAddress[0] = m_Port->GetIP();
    record.m_ServerPort = m_Port->getPort();
}

void Service::fillInfo(CCmdServerInfoResponse& info) const
{
    info.m_ServiceIP = m_Port->GetIP();
    info.m_ServicePort = m_Port->getPort();
    info.m_MaxOnlineNum = kMostPlayers;
    // Every connection counts as a player here.
    info.m_OnlineCount = m_Port->GetClientCount();
}

void Service::fail()
{
    m_Result = 1;
    shutdown();
}

void Service::onRegistryGone()
{
    if (m_IsLeaving)
    {
        say("%s", lines::kLeft);
        shutdown();
        return;
    }
    zet::Log::error(L"The connection to the registry is lost");
    fail();
}

void Service::greet(const CCmdServerRegister& record)
{
    const zet::Unknown::Handle_T<Greeting> greeting(new Greeting(*this));
    if (!greeting->begin(record))
        zet::Log::warning(L"'%s' is not to be reached", record.m_ServerName);
}

void Service::leave()
{
    if (m_IsLeaving)
        return;
    m_IsLeaving = true;
    m_Deadline.set(kAnswerTime);
    if (!m_Link->send(CCmdServerUnregister()))
        fail();
}

} // namespace arena

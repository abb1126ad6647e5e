#include "examples/arena/server_role.h"

#include "examples/arena/page/role_page.h"
#include "examples/arena/text.h"
#include "framework/log.h"
#include "framework/string_helper.h"
#include "host/metrics.h"
#include "host/registration.h"
#include "transport/framework_server_socket.h"

namespace arena
{

struct ServerRole::Parts
{
    explicit Parts(zet::System& system) : m_Registration(system) {}
    host::Registration m_Registration;
};

bool parseAddress(const zet::String_T<wchar_t>& text, Address& address)
{
    return parseHostPort(zet::StringHelper::wideToUtf8(text).getBuffer(), address);
}

ServerRole::ServerRole(host::Service& service, ServerType type, const wchar_t* name)
    : m_Service(service), m_Type(type), m_Name(name), m_Peers(service),
      m_Parts(std::make_unique<Parts>(service.getSystem()))
{
    addRolePage(service, zet::StringHelper::wideToUtf8(m_Name).getBuffer());
    service.option("--port", m_Port, "the port to listen on; 0 for a free one");
    service.option("--host", m_Host, "the address to listen on");
    service.option("--name", m_Name, "the name of this server");
    service.option("--registry", m_Registry, "HOST:PORT of the registry; empty for none");
}

ServerRole::~ServerRole() = default;

bool ServerRole::serve(CFrameworkServerSocket& server)
{
    if (!server.setBindAddress(m_Host) || !server.start(&m_Service.getSystem()) || !server.listen(m_Port, 0))
    {
        zet::Log::error(L"Cannot listen on %s:%d", m_Host, m_Port);
        return false;
    }
    m_Port = server.zet::TcpServer::getPort();
    say("listening on port %d", m_Port);
    if (!m_Peers.begin(m_Parts->m_Registration, m_Host, m_Port))
        return false;
    return m_Registry.isEmpty() || enrol();
}

bool ServerRole::acceptGreetings(host::Handlers& handlers)
{
    return m_Parts->m_Registration.acceptGreetings(handlers);
}

bool ServerRole::enrol()
{
    Address registry;
    if (!parseAddress(m_Registry, registry))
    {
        zet::Log::error(L"'%s' is not HOST:PORT of a registry", m_Registry);
        return false;
    }
    CCmdServerRegister record;
    record.m_ServerType = static_cast<unsigned char>(m_Type);
    record.m_ServerName = m_Name;
    m_Peers.fillAddress(record);
    host::Registration& registration = m_Parts->m_Registration;
    registration.setRecord(record);
    registration.onShutdown([this] { m_Service.beginDrain(); });
    m_Service.onDrain([&registration] { registration.stop(); });
    return registration.start(registry.m_Host, registry.m_Port);
}

void ServerRole::reportOpen(const char* kind, std::function<size_t()> count)
{
    m_Service.getMetrics().addPrinter(
        [name = std::string("arena_open_") + kind, count = std::move(count)](host::MetricText& text)
        {
            text.beginGauge(name, "Present number.");
            text.add({}, static_cast<unsigned long long>(count()));
        });
}

bool ServerRole::find(ServerType type, Address& address) const
{
    const CCmdServerRegister* const server = m_Parts->m_Registration.find(static_cast<unsigned char>(type));
    if (!server)
        return false;
    address = arena::getServed(*server);
    return true;
}

} // namespace arena

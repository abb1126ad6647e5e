#include "examples/arena/registry/registry.h"

#include "examples/arena/lines.h"
#include "examples/arena/registry/registry_connection.h"
#include "examples/arena/text.h"
#include "framework/log.h"

namespace arena
{

namespace
{

using FrameworkSockets = CFrameworkServerSocket::FrameworkSockets;
using SocketHandle = zet::Unknown::Handle_T<CFrameworkClientSocket>;

class Announcer : public FrameworkSockets::Walker
{
public:
    Announcer(const CCmdHead& command, const RegistryConnection* except) : m_Command(command), m_Except(except) {}
    bool onEntry(const zet::uuid_node_t&, SocketHandle& client) override
    {
        if (client.get() != m_Except)
            client->send(m_Command);
        return true;
    }

private:
    const CCmdHead& m_Command;
    const CFrameworkClientSocket* m_Except;
};

class TypeFinder : public FrameworkSockets::Walker
{
public:
    explicit TypeFinder(unsigned char type) : m_Type(type) {}
    bool onEntry(const zet::uuid_node_t&, SocketHandle& client) override
    {
        if (client->GetServerType() != m_Type)
            return true;
        m_Found = static_cast<RegistryConnection*>(client.get());
        return false;
    }

    const RegistryConnection* m_Found = nullptr;

private:
    unsigned char m_Type;
};

} // namespace

RegistryPort::RegistryPort(Registry& registry, unsigned short port) : LoopbackPort(port), m_Registry(registry) {}

void RegistryPort::onAccept()
{
    const zet::Unknown::Handle_T<RegistryConnection> connection(new RegistryConnection(m_Registry));
    accept(connection.get());
}

void RegistryPort::Abandon(zet::TcpConnection* connection)
{
    const zet::Unknown::Handle_T<RegistryConnection> client(static_cast<RegistryConnection*>(connection));
    const bool wasRegistered = client->isRegistered();
    CFrameworkServerSocket::Abandon(connection);
    if (wasRegistered)
        client->announceFade(lines::kGone);
}

void RegistryPort::announce(const CCmdHead& command, const RegistryConnection* except)
{
    Announcer walker(command, except);
    m_FrameworkSockets.foreach(walker);
}

const RegistryConnection* RegistryPort::findByType(unsigned char type)
{
    TypeFinder walker(type);
    m_FrameworkSockets.foreach(walker);
    return walker.m_Found;
}

Registry::Registry(unsigned short port) : CMyServiceSystem(kType), m_Port(new RegistryPort(*this, port))
{
    setSystemName(L"arena_registry");
    RegistryConnection::install(m_Analyser);
}

bool Registry::setAddress(const wchar_t* host, const Peers& peers)
{
    m_Port->setAddressFilter(peers.makeFilter());
    if (!m_Port->setBindAddress(host))
        return false;
    m_Host = host;
    return true;
}

bool Registry::ServiceOn()
{
    CMyServiceSystem::ServiceOn();
    if (!m_Port->start(this) || !m_Port->listen(m_Port->GetPort(), 0))
    {
        zet::Log::error(L"Cannot open port %d", m_Port->GetPort());
        return false;
    }
    say("%s%d", lines::kListening, m_Port->getPort());
    return true;
}

void Registry::exit()
{
    m_Port->close();
    CMyServiceSystem::exit();
    say("%s", lines::kEnded);
}

void Registry::onTick(unsigned int tick)
{
    if (m_IsEnding && (getServerCount() == 0 || m_EndTime.isOver(tick)))
        shutdown();
}

void Registry::fillRecord(CCmdServerRegister& record) const
{
    record.m_ServerType = GetServerType();
    record.m_ServerId = GetServerId();
    record.m_ServerName = L"registry";
    record.m_ServerAddress[0] = m_Host;
    record.m_ServerPort = m_Port->getPort();
}

void Registry::end()
{
    if (m_IsEnding)
        return;
    m_IsEnding = true;
    m_EndTime.set(kAnswerTime);
    say("%s", lines::kShuttingDown);
    m_Port->announce(CCmdServerShutdown(), nullptr);
}

} // namespace arena

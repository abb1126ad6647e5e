#include "examples/arena/registry/registry_connection.h"

#include "examples/arena/deliver.h"
#include "examples/arena/lines.h"
#include "examples/arena/peers.h"
#include "examples/arena/registry/registry.h"
#include "examples/arena/text.h"
#include "framework/log.h"

namespace arena
{

RegistryConnection::RegistryConnection(Registry& registry)
    : CFrameworkClientSocket(&registry.getAnalyser()), m_Registry(registry)
{
}

void RegistryConnection::install(CCmdAnalyserSocket& analyser)
{
    ARENA_HANDLE(analyser, CCmdServerRegister, &RegistryConnection::onRegister);
    ARENA_HANDLE(analyser, CCmdServerUnregister, &RegistryConnection::onUnregister);
    ARENA_HANDLE(analyser, CCmdServerHello, &RegistryConnection::onHello);
    ARENA_HANDLE(analyser, CCmdServerEcho, &RegistryConnection::onEcho);
    ARENA_HANDLE(analyser, CCmdServerInfoRequest, &RegistryConnection::onInfo);
    ARENA_HANDLE(analyser, CCmdHostnameRequest, &RegistryConnection::onHostname);
    ARENA_HANDLE(analyser, CCmdServerShutdown, &RegistryConnection::onShutdown);
}

const wchar_t* RegistryConnection::findObjection(const CCmdServerRegister& command) const
{
    if (m_Registry.isEnding())
        return L"the platform is shutting down";
    if (isRegistered())
        return L"this connection has registered already";
    if (command.m_ServerId.isNull() || command.m_ServerType == kUnknownServerType || command.m_ServerName.isEmpty())
        return L"id, type or name is missing";
    if (m_Registry.getPort().GetFrameworkSocket(command.m_ServerId.m_Node))
        return L"a live server has registered under this id";
    if (m_Registry.getServerCount() >= Registry::kMostServers)
        return L"the registry is full";
    return nullptr;
}

void RegistryConnection::onRegister(const CCmdServerRegister& command)
{
    if (const wchar_t* objection = findObjection(command))
    {
        CCmdServerRegisterFail fail;
        fail.m_Msg = objection;
        send(fail);
        say("%s%s: %s", lines::kRefused, describe(command), shown(fail.m_Msg));
        zet::Log::warning(L"Refused '%s': %s (%s)", command.m_ServerName, objection, getPeerName());
        return;
    }
    m_ServerType = command.m_ServerType;
    m_PeerServerId = command.m_ServerId;
    m_ServerName = command.m_ServerName;
    copyRecord(command, m_Record);
    m_Registry.getPort().SetFrameworkSocket(this);

    CCmdServerRegisterSuccess success;
    success.m_ServerId = m_PeerServerId;
    send(success);
    CCmdServerNewNotify notice;
    copyRecord(m_Record, notice);
    m_Registry.getPort().announce(notice, this);
    say("%s%s", lines::kRegistered, describe(m_Record));
    zet::Log::message(L"Registered '%s' (%s)", m_ServerName, getPeerName());
}

void RegistryConnection::onUnregister(const CCmdServerUnregister&)
{
    if (isRegistered())
    {
        m_Registry.getPort().RemoveFrameworkSocket(this);
        announceFade(lines::kUnregistered);
    }
    // The end of the connection is the answer: the server then knows that it is unregistered.
    close();
}

void RegistryConnection::announceFade(const char* way)
{
    CCmdServerFadeNotify notice;
    copyRecord(m_Record, notice);
    // During a shutdown all servers leave; this is not announced.
    if (!m_Registry.isEnding())
        m_Registry.getPort().announce(notice, this);
    say("%s%s", way, describe(m_Record));
    zet::Log::message(L"No more registered: '%s' (%s)", m_ServerName, getPeerName());
}

void RegistryConnection::onHello(const CCmdServerHello&)
{
    CCmdServerHelloReply reply;
    m_Registry.fillRecord(reply);
    send(reply);
}

void RegistryConnection::onEcho(const CCmdServerEcho& command)
{
    CCmdServerEchoReply reply;
    reply.m_Data = command.m_Data;
    send(reply);
}

void RegistryConnection::onInfo(const CCmdServerInfoRequest&)
{
    CCmdServerInfoResponse response;
    response.m_ServiceIP = m_Registry.getPort().GetIP();
    response.m_ServicePort = m_Registry.getPort().getPort();
    response.m_MaxOnlineNum = Registry::kMostServers;
    response.m_OnlineCount = m_Registry.getServerCount();
    send(response);
}

void RegistryConnection::onHostname(const CCmdHostnameRequest& command)
{
    CCmdHostnameResponse response;
    response.m_ServerType = command.m_ServerType;
    // Without such a server, no address and port 0.
    if (const RegistryConnection* server = m_Registry.getPort().findByType(command.m_ServerType))
    {
        const HostPort address = getServed(server->m_Record);
        response.m_IP = address.m_Host;
        response.m_Port = address.m_Port;
    }
    send(response);
}

void RegistryConnection::onShutdown(const CCmdServerShutdown&)
{
    m_Registry.end();
}

} // namespace arena

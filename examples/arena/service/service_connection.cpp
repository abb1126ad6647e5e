#include "examples/arena/service/service_connection.h"

#include "examples/arena/deliver.h"
#include "examples/arena/service/service.h"

namespace arena
{

ServiceConnection::ServiceConnection(Service& service)
    : CFrameworkClientSocket(&service.getPortAnalyser()), m_Service(service)
{
}

void ServiceConnection::install(CCmdAnalyserSocket& analyser)
{
    ARENA_HANDLE(analyser, CCmdServerHello, &ServiceConnection::onHello);
    ARENA_HANDLE(analyser, CCmdServerEcho, &ServiceConnection::onEcho);
    ARENA_HANDLE(analyser, CCmdServerInfoRequest, &ServiceConnection::onInfo);
    ARENA_HANDLE(analyser, CCmdServerShutdown, &ServiceConnection::onShutdown);
}

void ServiceConnection::onHello(const CCmdServerHello&)
{
    CCmdServerHelloReply reply;
    m_Service.fillRecord(reply);
    send(reply);
}

void ServiceConnection::onEcho(const CCmdServerEcho& command)
{
    CCmdServerEchoReply reply;
    reply.m_Data = command.m_Data;
    send(reply);
}

void ServiceConnection::onInfo(const CCmdServerInfoRequest&)
{
    CCmdServerInfoResponse response;
    m_Service.fillInfo(response);
    send(response);
}

void ServiceConnection::onShutdown(const CCmdServerShutdown&)
{
    m_Service.leave();
}

} // namespace arena

#include "examples/arena/service/registry_link.h"

#include "examples/arena/deliver.h"
#include "examples/arena/lines.h"
#include "examples/arena/service/service.h"
#include "examples/arena/text.h"
#include "framework/log.h"

namespace arena
{

RegistryLink::RegistryLink(Service& service) : CFrameworkClientSocket(&service.getLinkAnalyser()), m_Service(service) {}

void RegistryLink::install(CCmdAnalyserSocket& analyser)
{
    ARENA_HANDLE(analyser, CCmdServerRegisterSuccess, &RegistryLink::onSuccess);
    ARENA_HANDLE(analyser, CCmdServerRegisterFail, &RegistryLink::onFail);
    ARENA_HANDLE(analyser, CCmdServerHelloReply, &RegistryLink::onHelloReply);
    ARENA_HANDLE(analyser, CCmdServerInfoResponse, &RegistryLink::onInfo);
    ARENA_HANDLE(analyser, CCmdServerEchoReply, &RegistryLink::onEchoReply);
    ARENA_HANDLE(analyser, CCmdServerNewNotify, &RegistryLink::onNew);
    ARENA_HANDLE(analyser, CCmdServerFadeNotify, &RegistryLink::onFade);
    ARENA_HANDLE(analyser, CCmdServerShutdown, &RegistryLink::onShutdown);
}

bool RegistryLink::enrol()
{
    CCmdServerRegister command;
    m_Service.fillRecord(command);
    return send(command);
}

void RegistryLink::onTick(unsigned int tick)
{
    CFrameworkClientSocket::onTick(tick);
    if (!isInvalid())
        return;
    // Once is enough.
    stop();
    m_Service.onRegistryGone();
}

void RegistryLink::onSuccess(const CCmdServerRegisterSuccess& command)
{
    m_Service.onRegistered();
    say("%s%s", lines::kAccepted, idToText(command.m_ServerId));
    CCmdServerHello hello;
    m_Service.fillRecord(hello);
    send(hello);
    send(CCmdServerInfoRequest());
    sendEcho();
}

void RegistryLink::onFail(const CCmdServerRegisterFail& command)
{
    say("%s%s", lines::kRejected, shown(command.m_Msg));
    m_Service.fail();
}

void RegistryLink::onHelloReply(const CCmdServerHelloReply& command)
{
    m_ServerType = command.m_ServerType;
    m_PeerServerId = command.m_ServerId;
    m_ServerName = command.m_ServerName;
}

void RegistryLink::onInfo(const CCmdServerInfoResponse& command)
{
    say("%s%s keeps %d of %d servers", lines::kRegistryGreeted, shown(m_ServerName), command.m_OnlineCount,
        command.m_MaxOnlineNum);
}

void RegistryLink::sendEcho()
{
    CCmdServerEcho echo;
    echo.m_Data = static_cast<unsigned long>(m_RoundTrips.getCount());
    m_RoundTrips.begin();
    send(echo);
}

void RegistryLink::onEchoReply(const CCmdServerEchoReply& command)
{
    // Only one echo is in flight at a time.
    if (m_RoundTrips.getCount() >= kEchoes || command.m_Data != static_cast<unsigned long>(m_RoundTrips.getCount()))
    {
        zet::Log::error(L"Wrong echo: %lu", command.m_Data);
        m_Service.fail();
        return;
    }
    m_RoundTrips.end();
    if (m_RoundTrips.getCount() < kEchoes)
        sendEcho();
    else
        say("%s%s", lines::kEcho, m_RoundTrips.describe());
}

void RegistryLink::onNew(const CCmdServerNewNotify& command)
{
    say("%s%s", lines::kNew, describe(command));
    m_Service.greet(command);
}

void RegistryLink::onFade(const CCmdServerFadeNotify& command)
{
    say("%s%s", lines::kFade, describe(command));
}

void RegistryLink::onShutdown(const CCmdServerShutdown&)
{
    m_Service.leave();
}

} // namespace arena

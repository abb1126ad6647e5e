// A service's connection to its registry.
#pragma once

#include "commands/registry.h"
#include "dispatch/analyser_socket.h"
#include "examples/arena/service/round_trips.h"
#include "transport/framework_client_socket.h"

namespace arena
{

class Service;

// Registers, greets the registry, measures echoes, and then receives the registry's announcements.
class RegistryLink : public CFrameworkClientSocket
{
public:
    // The number of measured echoes, one after the other.
    static constexpr int kEchoes = 200;

    explicit RegistryLink(Service& service);
    static void install(CCmdAnalyserSocket& analyser);

    // Requests the registration; the connection must be established or connecting.
    bool enrol();
    // Reports the end of the connection to the service.
    void onTick(unsigned int tick) override;

private:
    void onSuccess(const CCmdServerRegisterSuccess& command);
    void onFail(const CCmdServerRegisterFail& command);
    void onHelloReply(const CCmdServerHelloReply& command);
    void onInfo(const CCmdServerInfoResponse& command);
    void onEchoReply(const CCmdServerEchoReply& command);
    void onNew(const CCmdServerNewNotify& command);
    void onFade(const CCmdServerFadeNotify& command);
    void onShutdown(const CCmdServerShutdown& command);

    void sendEcho();

    Service& m_Service;
    RoundTrips m_RoundTrips;
};

} // namespace arena

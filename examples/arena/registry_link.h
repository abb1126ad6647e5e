// A service's connection to its registry.
#pragma once

#include "commands/registry.h"
#include "dispatch/analyser_socket.h"
#include "examples/arena/round_trips.h"
#include "transport/framework_client_socket.h"

namespace arena
{

class Service;

// Registers, greets the registry, measures echoes, and from then on hears what the registry announces.
class RegistryLink : public CFrameworkClientSocket
{
public:
    // Echoes that are measured, one after the other.
    static constexpr int kEchoes = 200;

    explicit RegistryLink(Service& service);
    static void install(CCmdAnalyserSocket& analyser);

    // Asks for the registration; the connection stands or is on its way up.
    bool enrol();
    // Tells the service when the connection has ended.
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

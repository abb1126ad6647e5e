// One connection of a service, from another service that greets it or from a client.
#pragma once

#include "commands/registry.h"
#include "dispatch/analyser_socket.h"
#include "transport/framework_client_socket.h"

namespace arena
{

class Service;

class ServiceConnection : public CFrameworkClientSocket
{
public:
    explicit ServiceConnection(Service& service);
    static void install(CCmdAnalyserSocket& analyser);

private:
    void onHello(const CCmdServerHello& command);
    void onEcho(const CCmdServerEcho& command);
    void onInfo(const CCmdServerInfoRequest& command);
    void onShutdown(const CCmdServerShutdown& command);

    Service& m_Service;
};

} // namespace arena

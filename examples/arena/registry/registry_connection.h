// One connection of the registry, from a server or from a lookup.
#pragma once

#include "commands/registry.h"
#include "dispatch/analyser_socket.h"
#include "transport/framework_client_socket.h"

namespace arena
{

class Registry;

class RegistryConnection : public CFrameworkClientSocket
{
public:
    explicit RegistryConnection(Registry& registry);
    static void install(CCmdAnalyserSocket& analyser);

    bool isRegistered() const { return !m_RegisteredId.isNull(); }
    // The server's data from its registration.
    const CCmdServerRegister& getRecord() const { return m_Record; }
    // Announces to all others that this server has left, and prints how.
    void announceFade(const char* way);

private:
    void onRegister(const CCmdServerRegister& command);
    void onUnregister(const CCmdServerUnregister& command);
    void onHello(const CCmdServerHello& command);
    void onEcho(const CCmdServerEcho& command);
    void onInfo(const CCmdServerInfoRequest& command);
    void onHostname(const CCmdHostnameRequest& command);
    void onShutdown(const CCmdServerShutdown& command);

    // The reason why the server may not register, or null.
    const wchar_t* findObjection(const CCmdServerRegister& command) const;

    Registry& m_Registry;
    CCmdServerRegister m_Record;
};

} // namespace arena

// The server that keeps the registry of servers and announces changes.
#pragma once

#include "dispatch/analyser_socket.h"
#include "examples/arena/loopback.h"
#include "examples/arena/peers.h"
#include "runtime/service_system.h"

namespace arena
{

class Registry;
class RegistryConnection;

// The registry's port. Its dictionary of framework sockets is the registry: a connection in it is a live registration.
class RegistryPort : public LoopbackPort
{
public:
    RegistryPort(Registry& registry, unsigned short port);

    void onAccept() override;
    // The end of a registered connection is announced.
    void Abandon(zet::TcpConnection* connection) override;

    // Sends to all registered servers except one, which may be null.
    void announce(const CCmdHead& command, const RegistryConnection* except);
    // The first registered server of a type, or null.
    const RegistryConnection* findByType(unsigned char type);

private:
    Registry& m_Registry;
};

class Registry : public CMyServiceSystem
{
public:
    // The server type of a registry.
    static constexpr unsigned char kType = 0;
    // The maximum number of simultaneous registrations.
    static constexpr int kMostServers = 1000;

    // Port 0 means any free port.
    explicit Registry(unsigned short port);
    // Before run(): the address to listen on, and the peers that may connect.
    bool setAddress(const wchar_t* host, const Peers& peers);

    // Listens, and prints the port.
    bool ServiceOn() override;
    // Ends once all servers have left, or after a time limit.
    void onTick(unsigned int tick) override;

    RegistryPort& getPort() { return *m_Port; }
    CCmdAnalyserSocket& getAnalyser() { return m_Analyser; }
    bool isEnding() const { return m_IsEnding; }
    int getServerCount() const { return m_Port->GetAllFrameworkSocket()->getSize(); }
    // The registry's own record.
    void fillRecord(CCmdServerRegister& record) const;
    // Orders all registered servers to shut down, and then itself.
    void end();

protected:
    void exit() override;

private:
    CCmdAnalyserSocket m_Analyser;
    zet::Unknown::Handle_T<RegistryPort> m_Port;
    zet::String_T<wchar_t> m_Host = kLoopback;
    Deadline m_EndTime;
    bool m_IsEnding = false;
};

} // namespace arena

// The server that keeps the registry: who is there, who came, who went.
#pragma once

#include "dispatch/analyser_socket.h"
#include "examples/arena/loopback.h"
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

    // Sends to all registered servers but one, which may be null.
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
    // Registrations at one time.
    static constexpr int kMostServers = 1000;

    // Port 0 takes a free one.
    explicit Registry(unsigned short port);

    // Listens, and says on which port.
    bool ServiceOn() override;
    // Ends once all servers have left, or the time for that is over.
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
    Deadline m_EndTime;
    bool m_IsEnding = false;
};

} // namespace arena

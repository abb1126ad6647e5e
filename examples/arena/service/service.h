// A server that registers, greets the others, and answers greetings.
#pragma once

#include "dispatch/analyser_socket.h"
#include "examples/arena/loopback.h"
#include "runtime/service_system.h"

namespace arena
{

class RegistryLink;
class Service;

struct ServiceOptions
{
    unsigned char m_Type = 1;
    zet::String_T<wchar_t> m_Name;
    unsigned short m_RegistryPort = 0;
    // 0 means any free port.
    unsigned short m_Port = 0;
    // All zero for a new id.
    zet::Uuid m_Id;
};

// Accepts connections to the service.
class ServicePort : public LoopbackPort
{
public:
    ServicePort(Service& service, unsigned short port);
    void onAccept() override;

private:
    Service& m_Service;
};

class Service : public CMyServiceSystem
{
public:
    // The advertised maximum number of players.
    static constexpr int kMostPlayers = 100;

    explicit Service(const ServiceOptions& options);
    ~Service() override;

    // Listens, prints the port, and connects to the registry.
    bool ServiceOn() override;
    // Ends if the registry does not answer.
    void onTick(unsigned int tick) override;

    // The service's data for its registration.
    void fillRecord(CCmdServerRegister& record) const;
    void fillInfo(CCmdServerInfoResponse& info) const;
    CCmdAnalyserSocket& getPortAnalyser() { return m_PortAnalyser; }
    CCmdAnalyserSocket& getLinkAnalyser() { return m_LinkAnalyser; }
    CCmdAnalyserSocket& getGreetingAnalyser() { return m_GreetingAnalyser; }

    // The registry has accepted the registration.
    void onRegistered() { m_Deadline.clear(); }
    // The registry has refused, or another fault ends the service.
    void fail();
    // The connection to the registry has ended.
    void onRegistryGone();
    // Connects to another service and greets it.
    void greet(const CCmdServerRegister& record);
    // Unregisters, and ends once the registry has closed the connection.
    void leave();

    // The exit code of the process.
    int getResult() const { return m_Result; }

protected:
    void exit() override;

private:
    ServiceOptions m_Options;
    CCmdAnalyserSocket m_PortAnalyser;
    CCmdAnalyserSocket m_LinkAnalyser;
    CCmdAnalyserSocket m_GreetingAnalyser;
    zet::Unknown::Handle_T<ServicePort> m_Port;
    zet::Unknown::Handle_T<RegistryLink> m_Link;
    Deadline m_Deadline;
    bool m_IsLeaving = false;
    int m_Result = 0;
};

} // namespace arena

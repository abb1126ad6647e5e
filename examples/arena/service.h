// A server that registers, greets the others, and answers who greets it.
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
    // 0 takes a free one.
    unsigned short m_Port = 0;
    // All zero where the process takes a new one.
    zet::Uuid m_Id;
};

// Accepts who connects to the service.
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
    // Players that the service says to take.
    static constexpr int kMostPlayers = 100;

    explicit Service(const ServiceOptions& options);
    ~Service() override;

    // Listens, says on which port, and connects to the registry.
    bool ServiceOn() override;
    // Ends where the registry does not answer.
    void onTick(unsigned int tick) override;

    // What the service tells of itself.
    void fillRecord(CCmdServerRegister& record) const;
    void fillInfo(CCmdServerInfoResponse& info) const;
    CCmdAnalyserSocket& getPortAnalyser() { return m_PortAnalyser; }
    CCmdAnalyserSocket& getLinkAnalyser() { return m_LinkAnalyser; }
    CCmdAnalyserSocket& getGreetingAnalyser() { return m_GreetingAnalyser; }

    // The registry has taken the service in.
    void onRegistered() { m_Deadline.clear(); }
    // The registry has refused, or another fault leaves nothing to do.
    void fail();
    // The connection to the registry has ended.
    void onRegistryGone();
    // Connects to another service and greets it.
    void greet(const CCmdServerRegister& record);
    // Unregisters and, once the registry has let go, ends.
    void leave();

    // What the process returns.
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

// A short connection from one service to another: hello, a query of its load, an echo, close.
#pragma once

#include "commands/registry.h"
#include "dispatch/analyser_socket.h"
#include "examples/arena/loopback.h"
#include "transport/framework_client_socket.h"

namespace arena
{

class Service;

class Greeting : public CFrameworkClientSocket
{
public:
    explicit Greeting(Service& service);
    static void install(CCmdAnalyserSocket& analyser);

    // Connects to the server of the record and greets it; the System then holds the greeting. False if the server
    // cannot be reached.
    bool begin(const CCmdServerRegister& record);
    // Ends with the connection, or if the other side does not answer.
    void onTick(unsigned int tick) override;

private:
    // The value of the final echo: all 32 bits.
    static constexpr unsigned long kEcho = 0xFFFFFFFF;

    void onHelloReply(const CCmdServerHelloReply& command);
    void onInfo(const CCmdServerInfoResponse& command);
    void onEchoReply(const CCmdServerEchoReply& command);

    Service& m_Service;
    Deadline m_Deadline;
    CCmdServerRegister m_Record;
    int m_OnlineCount = 0;
    int m_MaxOnlineNum = 0;
    bool m_IsDone = false;
};

} // namespace arena

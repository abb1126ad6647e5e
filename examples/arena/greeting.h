// A short visit of one service at another: hello, a look at its load, an echo, and good-bye.
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

    // Connects to the server of the record and greets it; the System holds the greeting from then on. False where the
    // server is not reached.
    bool begin(const CCmdServerRegister& record);
    // Ends with the connection, or when the other does not answer.
    void onTick(unsigned int tick) override;

private:
    // What comes back of the echo at the end: all 32 bits.
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

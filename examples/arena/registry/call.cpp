#include "examples/arena/registry/call.h"

#include "examples/arena/deliver.h"
#include "examples/arena/lines.h"
#include "examples/arena/loopback.h"
#include "examples/arena/text.h"

#include <cstdio>

namespace arena
{

namespace
{

constexpr int kNoAnswer = 2;

// A client without a service: a System, one connection, and a time limit.
class Caller : public zet::System
{
public:
    // Runs until the call has ended; -1 if it did not end in time.
    int call(CFrameworkClientSocket& socket, unsigned short port, const CCmdHead& question)
    {
        if (socket.start(this) && socket.connect(kLoopback, port, false) && socket.send(question))
        {
            m_Deadline.set(kAnswerTime);
            run();
        }
        socket.close();
        socket.stop();
        return m_Result;
    }
    void end(int result)
    {
        m_Result = result;
        shutdown();
    }
    void onTick(unsigned int tick) override
    {
        if (m_Deadline.isOver(tick))
            shutdown();
    }

private:
    Deadline m_Deadline;
    int m_Result = -1;
};

class LookupSocket : public CFrameworkClientSocket
{
public:
    LookupSocket(Caller& caller, CCmdAnalyserSocket& analyser) : CFrameworkClientSocket(&analyser), m_Caller(caller)
    {
        ARENA_HANDLE(analyser, CCmdHostnameResponse, &LookupSocket::onHostname);
    }
    void onTick(unsigned int tick) override
    {
        CFrameworkClientSocket::onTick(tick);
        if (isInvalid())
            m_Caller.shutdown();
    }

private:
    void onHostname(const CCmdHostnameResponse& command)
    {
        const bool isFound = command.m_Port != 0;
        if (isFound)
            say("%s%s:%d", lines::kFound, shown(command.m_IP), command.m_Port);
        else
            say("%s", lines::kNone);
        m_Caller.end(isFound ? 0 : 1);
    }

    Caller& m_Caller;
};

class ShutdownSocket : public CFrameworkClientSocket
{
public:
    ShutdownSocket(Caller& caller, CCmdAnalyserSocket& analyser) : CFrameworkClientSocket(&analyser), m_Caller(caller)
    {
    }
    // The end of an established connection is the answer.
    void onTick(unsigned int tick) override
    {
        const bool stood = getConnectionState() == kEstablished;
        CFrameworkClientSocket::onTick(tick);
        if (!isInvalid())
            return;
        if (stood)
            m_Caller.end(0);
        else
            m_Caller.shutdown();
    }

private:
    Caller& m_Caller;
};

template <class Socket>
int callWith(unsigned short port, const CCmdHead& question)
{
    CCmdAnalyserSocket analyser;
    const zet::Unknown::Handle_T<Caller> caller(new Caller);
    const zet::Unknown::Handle_T<Socket> socket(new Socket(*caller, analyser));
    const int result = caller->call(*socket, port, question);
    if (result >= 0)
        return result;
    std::fprintf(stderr, "arena: the server at port %d does not answer\n", port);
    return kNoAnswer;
}

} // namespace

int lookUp(unsigned char type, unsigned short registryPort)
{
    CCmdHostnameRequest request;
    request.m_ServerType = type;
    return callWith<LookupSocket>(registryPort, request);
}

int orderShutdown(unsigned short port)
{
    return callWith<ShutdownSocket>(port, CCmdServerShutdown());
}

} // namespace arena

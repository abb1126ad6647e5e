// A server on the loopback, and the client sockets of both ends.
#pragma once

#include "dispatch/analyser_socket.h"
#include "framework/system.h"
#include "transport/framework_server_socket.h"

namespace bench
{

class Client : public CFrameworkClientSocket
{
public:
    explicit Client(CCmdAnalyserSocket* analyser) : CFrameworkClientSocket(analyser) {}
};

// Accepts every peer; all connections share one analyser.
class Server : public CFrameworkServerSocket
{
public:
    explicit Server(CCmdAnalyserSocket* analyser) : CFrameworkServerSocket(L"127.0.0.1", 0), m_pAnalyser(analyser) {}

    void onAccept() override { accept(zet::Unknown::Handle_T<Client>(new Client(m_pAnalyser))); }

    CCmdAnalyserSocket* m_pAnalyser;
};

} // namespace bench

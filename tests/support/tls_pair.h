// A server and clients that talk through TLS over the loopback.
#pragma once

#include "net/tls/context.h"
#include "tests/support/loopback.h"
#include "tests/support/tls_certificates.h"

namespace test
{

using TlsHandle = zet::Unknown::Handle_T<zet::TlsContext>;

// One for all tests of a process: generating keys takes time.
inline const Authority& someAuthority()
{
    static const Authority authority("Some Authority");
    return authority;
}

inline const Certificate& serverCertificate()
{
    static const Certificate made = someAuthority().issue({"server.example", {"127.0.0.1", "localhost"}});
    return made;
}

inline TlsHandle makeServerContext(const Certificate& certificate = serverCertificate())
{
    const TlsHandle context = new zet::TlsContext;
    context->setCertificate(certificate.m_Chain.c_str(), certificate.m_Key.c_str());
    return context;
}

inline TlsHandle makeClientContext(const Authority& authority = someAuthority())
{
    const TlsHandle context = new zet::TlsContext;
    context->addTrust(authority.pem().c_str());
    return context;
}

// A loopback whose server accepts TLS only.
struct TlsLoopback : Loopback
{
    explicit TlsLoopback(CCmdAnalyserSocket* serverAnalyser, TlsHandle server = makeServerContext())
        : Loopback(serverAnalyser)
    {
        m_IsListening = m_IsListening && m_Server->setTlsContext(server);
    }

    // A client that is connecting.
    ClientHandle begin(CCmdAnalyserSocket* analyser, zet::TlsContext* context, const wchar_t* host = L"127.0.0.1")
    {
        const ClientHandle client = new Client(analyser);
        client->start(&m_System);
        m_Clients.push_back(client);
        m_IsBegun = client->setTlsContext(context) && client->connect(host, m_Server->getPort(), false);
        return client;
    }
    // A client that is established on both ends, or null.
    ClientHandle connectTls(CCmdAnalyserSocket* analyser, zet::TlsContext* context, const wchar_t* host = L"127.0.0.1")
    {
        const size_t before = m_Server->m_Accepted.size();
        const ClientHandle client = begin(analyser, context, host);
        const auto stands = [&]
        {
            return client->getConnectionState() == zet::TcpConnection::kEstablished &&
                   m_Server->m_Accepted.size() > before &&
                   accepted()->getConnectionState() == zet::TcpConnection::kEstablished;
        };
        return m_IsBegun && tickUntil(m_System, [&] { return stands() || client->isInvalid(); }) && stands() ? client
                                                                                                             : nullptr;
    }

    bool m_IsBegun = false;
};

} // namespace test

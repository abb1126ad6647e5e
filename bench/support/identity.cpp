#include "bench/support/identity.h"

#include "net/tls/context.h"

#ifdef COMMONGROUND_BENCH_TLS
#include "tests/support/tls_certificates.h"
#endif

namespace bench
{

Identity::Identity()
{
#ifdef COMMONGROUND_BENCH_TLS
    if (!zet::TlsContext::isAvailable())
        return;
    test::CertificateWish wish;
    wish.m_CommonName = "127.0.0.1";
    wish.m_Hosts = {"127.0.0.1"};
    const test::Authority authority("benchmark");
    const test::Certificate made = authority.issue(wish);
    m_Chain = made.m_Chain;
    m_Key = made.m_Key;
    m_Authority = authority.pem();
#endif
}

bool Identity::give(zet::TcpServer& server) const
{
    if (m_Chain.empty())
        return false;
    const zet::Unknown::Handle_T<zet::TlsContext> context = new zet::TlsContext;
    return context->setCertificate(m_Chain.c_str(), m_Key.c_str()) && server.setTlsContext(context);
}

bool Identity::trust(zet::TcpSecureConnection& client) const
{
    const zet::Unknown::Handle_T<zet::TlsContext> context = new zet::TlsContext;
    return !m_Authority.empty() && context->addTrust(m_Authority.c_str()) && client.setTlsContext(context);
}

} // namespace bench

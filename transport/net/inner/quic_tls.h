// The TLS side of connections over UDP: certificates, and the sessions of the handshakes.
#pragma once

#include "transport/net/udp_server.h"

#include <gnutls/gnutls.h>
#include <ngtcp2/ngtcp2_crypto.h>

namespace zet::inner
{

// What the connections of one port share. TLS is 1.3, as QUIC has it.
class QuicTls
{
public:
    QuicTls() = default;
    ~QuicTls();
    QuicTls(const QuicTls&) = delete;
    QuicTls& operator=(const QuicTls&) = delete;

    // Takes certificate and trust; makes a certificate where none was given. False, with the log told, where they are
    // none.
    bool init(const UdpServer::Settings& settings);
    // A session on its way to a connection, which ref finds. Null where there is none. The name is that of the server.
    gnutls_session_t openServer(ngtcp2_crypto_conn_ref& ref);
    gnutls_session_t openClient(ngtcp2_crypto_conn_ref& ref, const char* name);

private:
    bool takeCertificate(const UdpServer::Settings& settings);
    bool makeCertificate();
    gnutls_session_t open(unsigned int flags, ngtcp2_crypto_conn_ref& ref);

    gnutls_certificate_credentials_t m_Credentials = nullptr;
    gnutls_priority_t m_Priority = nullptr;
    bool m_Trusts = false;
};

} // namespace zet::inner

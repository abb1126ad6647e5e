// The TLS side of connections over UDP: certificates, and the sessions of the handshakes.
#pragma once

#include "net/quic/server.h"

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

    // Takes a context, or null, and makes a certificate where that has none. False, with the log told, where there is
    // no TLS to be had.
    bool init(TlsContext* context);
    // A session on its way to a connection, which ref finds, with its link as user data. Null where there is none; a
    // client gets none by a context without authorities, and the log is told. A client asks for the link's name.
    gnutls_session_t openServer(ngtcp2_crypto_conn_ref& ref);
    gnutls_session_t openClient(ngtcp2_crypto_conn_ref& ref);

private:
    bool makeCertificate();
    gnutls_session_t open(unsigned int flags, gnutls_certificate_credentials_t credentials,
                          ngtcp2_crypto_conn_ref& ref);
    static int verify(gnutls_session_t session);
    // What GnuTLS calls with a message of the handshake: refuses a peer that has sent no transport parameters, without
    // which ngtcp2 stops at an assertion.
    static int requireParams(gnutls_session_t session, unsigned int type, unsigned int when, unsigned int isIncoming,
                             const gnutls_datum_t* message);

    // Null where the port makes its own certificate and believes any.
    Unknown::Handle_T<TlsContext> m_Context;
    gnutls_certificate_credentials_t m_Own = nullptr;
    gnutls_priority_t m_Priority = nullptr;
};

} // namespace zet::inner

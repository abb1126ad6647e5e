// TLS for the connections of a UDP port: certificates, and the sessions of the handshakes.
#pragma once

#include "net/quic/server.h"

#include <gnutls/gnutls.h>
#include <ngtcp2/ngtcp2_crypto.h>

#include <memory>

namespace zet::inner
{

struct TlsCredentials;

// Shared by the connections of one port. QUIC requires TLS 1.3.
class QuicTls
{
public:
    QuicTls() = default;
    ~QuicTls();
    QuicTls(const QuicTls&) = delete;
    QuicTls& operator=(const QuicTls&) = delete;

    // Uses a context, or null, and makes a certificate for the case that the context has none. False, with a log line,
    // if TLS is not available.
    bool init(TlsContext* context);
    // A session for a new connection, whose ref has the link as user data; the caller owns it. Null on failure. A
    // context without authorities gives a client no session, with a log line. A client sends the link's name as server
    // name. The session must not outlive what kept holds then.
    gnutls_session_t openServer(ngtcp2_crypto_conn_ref& ref, std::shared_ptr<const TlsCredentials>& kept);
    gnutls_session_t openClient(ngtcp2_crypto_conn_ref& ref, std::shared_ptr<const TlsCredentials>& kept);

private:
    bool makeCertificate();
    gnutls_session_t open(unsigned int flags, gnutls_certificate_credentials_t credentials,
                          ngtcp2_crypto_conn_ref& ref);
    static int verify(gnutls_session_t session);
    // Called by GnuTLS for a handshake message. Refuses a peer that has sent no transport parameters: ngtcp2 would fail
    // an assertion without them.
    static int requireParams(gnutls_session_t session, unsigned int type, unsigned int when, unsigned int isIncoming,
                             const gnutls_datum_t* message);

    // Null if the port uses its own certificate and trusts any peer.
    Unknown::Handle_T<TlsContext> m_Context;
    gnutls_certificate_credentials_t m_Own = nullptr;
    gnutls_priority_t m_Priority = nullptr;
};

} // namespace zet::inner

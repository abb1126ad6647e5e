// The verification of a peer's certificate, the same over TCP and over UDP.
#pragma once

#include "net/end_cause.h"
#include "net/tls/context.h"

#include <gnutls/gnutls.h>

namespace zet::inner
{

// Whether the host is an address, which TLS does not allow as server name.
bool isAddress(const char* host);

// Makes a server's session request the client's certificate as the context demands.
void requestCertificate(gnutls_session_t session, TlsContext::ClientCertificate wanted);

// Verifies the peer's certificate: its authority, its purpose, and the revocation lists in the credentials. A client
// also checks a stapled OCSP response and the server's name or address, which must be in the subject alternative name.
// A peer without a certificate passes on a server; if one is required, GnuTLS itself refuses the client. Returns 0 if
// the peer is trusted, otherwise a code of GnuTLS with the reason in fault. alert receives the number of the alert that
// the protocol demands if it differs from the one that GnuTLS sends for the code; otherwise 0. rule receives what the
// certificate violates.
int verifyPeer(gnutls_session_t session, bool isClient, const char* name, String_T<wchar_t>& fault,
               int* alert = nullptr, EndCause::Rule* rule = nullptr);

// The cause of a fatal code; for a refused certificate with this rule.
EndCause causeOfTls(int code, EndCause::Rule rule);

} // namespace zet::inner

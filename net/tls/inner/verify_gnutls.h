// What a TLS session asks of its peer's certificate, the same over TCP and over UDP.
#pragma once

#include "net/tls/context.h"

#include <gnutls/gnutls.h>

namespace zet::inner
{

// Whether a host is given by its address, which is no name for a server to be asked for by.
bool isAddress(const char* host);

// A server's session asks for a certificate of its client, as a context wants it.
void requestCertificate(gnutls_session_t session, TlsContext::ClientCertificate wanted);

// Holds the peer's certificate against the authorities of the session's credentials and against its purpose; a client
// also against the server's name or address, which must stand in the certificate's subject alternative name. Lists of
// revoked certificates in the credentials count, and so does an OCSP response that the server staples to its
// certificate. A client that shows none has none to be bad, and where one is required GnuTLS itself insists. 0 where
// the peer is believed; otherwise a code of GnuTLS, the fault says why, and alert is the number of the alert for it,
// where the protocol names a more exact one than GnuTLS sends for the code; otherwise 0.
int verifyPeer(gnutls_session_t session, bool isClient, const char* name, String_T<wchar_t>& fault,
               int* alert = nullptr);

} // namespace zet::inner

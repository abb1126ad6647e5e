#include "net/quic/inner/tls.h"

#include "framework/log.h"
#include "framework/string_helper.h"
#include "net/inner/peer_text.h"
#include "net/quic/inner/link.h"
#include "net/tls/inner/store_gnutls.h"
#include "net/tls/inner/verify_gnutls.h"

#include <gnutls/crypto.h>
#include <gnutls/x509.h>
#include <ngtcp2/ngtcp2_crypto_gnutls.h>

#include <cstring>
#include <ctime>

namespace zet::inner
{

namespace
{

constexpr char kPriority[] = "NORMAL:-VERS-ALL:+VERS-TLS1.3:-CIPHER-ALL:+AES-128-GCM:+AES-256-GCM:+CHACHA20-POLY1305:"
                             "-GROUP-ALL:+GROUP-X25519:+GROUP-SECP256R1:-SIGN-RSA-SHA1:-SIGN-ECDSA-SHA1:-SIGN-DSA-SHA1:"
                             "%PROFILE_MEDIUM:%DISABLE_TLS13_COMPAT_MODE";
// The ALPN protocol that both sides must name, so that other QUIC services are refused.
constexpr char kProtocol[] = "commonground/1";
constexpr long kSecondsPerDay = 24 * 3600;

bool tell(const wchar_t* what, int fault)
{
    Log::error(L"Connections over UDP: %s: %s", what, StringHelper::utf8ToWide(gnutls_strerror(fault)));
    return false;
}

} // namespace

QuicTls::~QuicTls()
{
    if (m_Own)
        gnutls_certificate_free_credentials(m_Own);
    if (m_Priority)
        gnutls_priority_deinit(m_Priority);
}

bool QuicTls::init(TlsContext* context)
{
    // The log has it since the context was created.
    GnuTlsStore* const store = context ? GnuTlsStore::of(*context) : nullptr;
    if (context && !store)
        return false;
    m_Context = context;
    if (store)
        store->fix();
    int fault = gnutls_priority_init(&m_Priority, kPriority, nullptr);
    if (fault >= 0)
        fault = gnutls_certificate_allocate_credentials(&m_Own);
    if (fault < 0)
        return tell(L"no TLS", fault);
    return makeCertificate();
}

bool QuicTls::makeCertificate()
{
    // No authority has signed it, so it contains the minimum: a key of a kind that all clients accept, and a validity.
    gnutls_x509_privkey_t key = nullptr;
    gnutls_x509_crt_t certificate = nullptr;
    unsigned char serial[8];
    int fault = gnutls_x509_privkey_init(&key);
    if (fault >= 0)
        fault = gnutls_x509_privkey_generate(key, GNUTLS_PK_ECDSA, GNUTLS_CURVE_TO_BITS(GNUTLS_ECC_CURVE_SECP256R1), 0);
    if (fault >= 0)
        fault = gnutls_x509_crt_init(&certificate);
    if (fault >= 0)
        fault = gnutls_rnd(GNUTLS_RND_NONCE, serial, sizeof serial);
    if (fault >= 0)
    {
        // A serial number is positive.
        serial[0] &= 0x7F;
        const std::time_t now = std::time(nullptr);
        gnutls_x509_crt_set_version(certificate, 3);
        gnutls_x509_crt_set_serial(certificate, serial, sizeof serial);
        gnutls_x509_crt_set_activation_time(certificate, now - kSecondsPerDay);
        gnutls_x509_crt_set_expiration_time(certificate, now + 3650 * kSecondsPerDay);
        gnutls_x509_crt_set_dn_by_oid(certificate, GNUTLS_OID_X520_COMMON_NAME, 0, kProtocol, sizeof kProtocol - 1);
        fault = gnutls_x509_crt_set_key(certificate, key);
    }
    if (fault >= 0)
        fault = gnutls_x509_crt_sign2(certificate, certificate, key, GNUTLS_DIG_SHA256, 0);
    if (fault >= 0)
        fault = gnutls_certificate_set_x509_key(m_Own, &certificate, 1, key);
    if (certificate)
        gnutls_x509_crt_deinit(certificate);
    if (key)
        gnutls_x509_privkey_deinit(key);
    return fault >= 0 || tell(L"no certificate", fault);
}

gnutls_session_t QuicTls::open(unsigned int flags, gnutls_certificate_credentials_t credentials,
                               ngtcp2_crypto_conn_ref& ref)
{
    gnutls_session_t session = nullptr;
    if (gnutls_init(&session, flags | GNUTLS_NONBLOCK | GNUTLS_NO_SIGNAL | GNUTLS_NO_TICKETS) < 0)
        return nullptr;
    const gnutls_datum_t protocol = {reinterpret_cast<unsigned char*>(const_cast<char*>(kProtocol)),
                                     sizeof kProtocol - 1};
    gnutls_session_set_ptr(session, &ref);
    const bool isServer = flags & GNUTLS_SERVER;
    // On a client this is the last moment before it has the keys to send data; on a server the parameters, if there are
    // any, are known once it has read the ClientHello.
    gnutls_handshake_set_hook_function(session, isServer ? GNUTLS_HANDSHAKE_CLIENT_HELLO : GNUTLS_HANDSHAKE_FINISHED,
                                       isServer ? GNUTLS_HOOK_POST : GNUTLS_HOOK_PRE, requireParams);
    if (gnutls_priority_set(session, m_Priority) < 0 ||
        gnutls_credentials_set(session, GNUTLS_CRD_CERTIFICATE, credentials) < 0 ||
        gnutls_alpn_set_protocols(session, &protocol, 1, GNUTLS_ALPN_MANDATORY) < 0 ||
        (isServer ? ngtcp2_crypto_gnutls_configure_server_session(session)
                  : ngtcp2_crypto_gnutls_configure_client_session(session)) != 0)
    {
        gnutls_deinit(session);
        return nullptr;
    }
    return session;
}

int QuicTls::requireParams(gnutls_session_t session, unsigned int, unsigned int, unsigned int isIncoming,
                           const gnutls_datum_t*)
{
    auto* const ref = static_cast<ngtcp2_crypto_conn_ref*>(gnutls_session_get_ptr(session));
    const bool isMissing = isIncoming && !ngtcp2_conn_get_remote_transport_params(ref->get_conn(ref));
    return isMissing ? GNUTLS_E_MISSING_EXTENSION : 0;
}

gnutls_session_t QuicTls::openServer(ngtcp2_crypto_conn_ref& ref, std::shared_ptr<const TlsCredentials>& kept)
{
    kept = m_Context ? GnuTlsStore::of(*m_Context)->credentials() : nullptr;
    gnutls_session_t session = open(GNUTLS_SERVER, kept && kept->m_HasCertificate ? kept->m_Handle : m_Own, ref);
    const auto wanted = m_Context ? m_Context->getClientCertificate() : TlsContext::kNotAsked;
    if (session && wanted != TlsContext::kNotAsked)
    {
        requestCertificate(session, wanted);
        gnutls_session_set_verify_function(session, verify);
    }
    return session;
}

gnutls_session_t QuicTls::openClient(ngtcp2_crypto_conn_ref& ref, std::shared_ptr<const TlsCredentials>& kept)
{
    auto& link = *static_cast<QuicLink*>(ref.user_data);
    if (m_Context && !m_Context->servesClient())
    {
        link.noteCause({EndCause::kTlsContext, 0});
        return nullptr;
    }
    kept = m_Context ? GnuTlsStore::of(*m_Context)->credentials() : nullptr;
    gnutls_session_t session = open(GNUTLS_CLIENT, kept ? kept->m_Handle : m_Own, ref);
    if (session && m_Context)
        gnutls_session_set_verify_function(session, verify);
    const char* const host = link.getName();
    if (session && !isAddress(host))
        gnutls_server_name_set(session, GNUTLS_NAME_DNS, host, std::strlen(host));
    return session;
}

int QuicTls::verify(gnutls_session_t session)
{
    const auto* const ref = static_cast<const ngtcp2_crypto_conn_ref*>(gnutls_session_get_ptr(session));
    auto& link = *static_cast<QuicLink*>(ref->user_data);
    String_T<wchar_t> fault;
    int alert = 0;
    EndCause::Rule rule = EndCause::kOtherRule;
    const int code = verifyPeer(session, !link.isServer(), link.getName(), fault, &alert, &rule);
    link.setAlert(static_cast<uint8_t>(alert));
    if (code != 0)
    {
        link.noteCause(causeOfTls(code, rule));
        link.setEndLogged();
        Log::warning(L"TLS handshake over UDP with %s failed: %s", peerText(link.getPeer()), fault);
    }
    return code;
}

} // namespace zet::inner

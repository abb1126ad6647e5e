#include "transport/net/inner/quic_tls.h"

#include "framework/log.h"
#include "framework/string_helper.h"

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
                             "-GROUP-ALL:+GROUP-X25519:+GROUP-SECP256R1:%DISABLE_TLS13_COMPAT_MODE";
// What both sides must name: another service on the port is no peer.
constexpr char kProtocol[] = "commonground/1";
constexpr long kSecondsPerDay = 24 * 3600;

gnutls_datum_t datumOf(const String_T<char>& text)
{
    return {reinterpret_cast<unsigned char*>(const_cast<char*>(text.getBuffer())),
            static_cast<unsigned int>(text.getLength())};
}

bool tell(const wchar_t* what, int fault)
{
    Log::error(L"Connections over UDP: %s: %s", what, StringHelper::utf8ToWide(gnutls_strerror(fault)));
    return false;
}

} // namespace

QuicTls::~QuicTls()
{
    if (m_Credentials)
        gnutls_certificate_free_credentials(m_Credentials);
    if (m_Priority)
        gnutls_priority_deinit(m_Priority);
}

bool QuicTls::init(const UdpServer::Settings& settings)
{
    int fault = gnutls_priority_init(&m_Priority, kPriority, nullptr);
    if (fault >= 0)
        fault = gnutls_certificate_allocate_credentials(&m_Credentials);
    if (fault < 0)
        return tell(L"no TLS", fault);
    if (settings.m_Trust.getLength() > 0)
    {
        const gnutls_datum_t trust = datumOf(settings.m_Trust);
        fault = gnutls_certificate_set_x509_trust_mem(m_Credentials, &trust, GNUTLS_X509_FMT_PEM);
        if (fault <= 0)
            return tell(L"no issuer to trust", fault < 0 ? fault : GNUTLS_E_NO_CERTIFICATE_FOUND);
        m_Trusts = true;
    }
    return settings.m_Certificate.getLength() > 0 ? takeCertificate(settings) : makeCertificate();
}

bool QuicTls::takeCertificate(const UdpServer::Settings& settings)
{
    const gnutls_datum_t certificate = datumOf(settings.m_Certificate);
    const gnutls_datum_t key = datumOf(settings.m_Key);
    const int fault = gnutls_certificate_set_x509_key_mem(m_Credentials, &certificate, &key, GNUTLS_X509_FMT_PEM);
    return fault >= 0 || tell(L"no certificate", fault);
}

bool QuicTls::makeCertificate()
{
    // Nobody can hold it against anything, so it says little: a key, and that it is valid.
    gnutls_x509_privkey_t key = nullptr;
    gnutls_x509_crt_t certificate = nullptr;
    unsigned char serial[8];
    int fault = gnutls_x509_privkey_init(&key);
    if (fault >= 0)
        fault = gnutls_x509_privkey_generate(key, GNUTLS_PK_EDDSA_ED25519, 256, 0);
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
        fault = gnutls_x509_crt_sign2(certificate, certificate, key, GNUTLS_DIG_UNKNOWN, 0);
    if (fault >= 0)
        fault = gnutls_certificate_set_x509_key(m_Credentials, &certificate, 1, key);
    if (certificate)
        gnutls_x509_crt_deinit(certificate);
    if (key)
        gnutls_x509_privkey_deinit(key);
    return fault >= 0 || tell(L"no certificate", fault);
}

gnutls_session_t QuicTls::open(unsigned int flags, ngtcp2_crypto_conn_ref& ref)
{
    gnutls_session_t session = nullptr;
    if (gnutls_init(&session, flags | GNUTLS_NONBLOCK | GNUTLS_NO_SIGNAL | GNUTLS_NO_TICKETS) < 0)
        return nullptr;
    const gnutls_datum_t protocol = {reinterpret_cast<unsigned char*>(const_cast<char*>(kProtocol)),
                                     sizeof kProtocol - 1};
    if (gnutls_priority_set(session, m_Priority) < 0 ||
        gnutls_credentials_set(session, GNUTLS_CRD_CERTIFICATE, m_Credentials) < 0 ||
        gnutls_alpn_set_protocols(session, &protocol, 1, GNUTLS_ALPN_MANDATORY) < 0)
    {
        gnutls_deinit(session);
        return nullptr;
    }
    gnutls_session_set_ptr(session, &ref);
    return session;
}

gnutls_session_t QuicTls::openServer(ngtcp2_crypto_conn_ref& ref)
{
    gnutls_session_t session = open(GNUTLS_SERVER, ref);
    if (session && ngtcp2_crypto_gnutls_configure_server_session(session) != 0)
    {
        gnutls_deinit(session);
        return nullptr;
    }
    return session;
}

gnutls_session_t QuicTls::openClient(ngtcp2_crypto_conn_ref& ref, const char* name)
{
    gnutls_session_t session = open(GNUTLS_CLIENT, ref);
    if (session && ngtcp2_crypto_gnutls_configure_client_session(session) != 0)
    {
        gnutls_deinit(session);
        return nullptr;
    }
    // The session keeps a copy for the extension, but not of the name to verify: that one is asked for at the end.
    if (session && m_Trusts)
        gnutls_session_set_verify_cert(session, name, 0);
    return session;
}

} // namespace zet::inner

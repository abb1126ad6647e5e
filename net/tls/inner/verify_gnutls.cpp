#include "net/tls/inner/verify_gnutls.h"

#include "framework/string_helper.h"

#include <gnutls/x509-ext.h>
#include <gnutls/x509.h>

#include <cstring>

namespace zet::inner
{

namespace
{

gnutls_typed_vdata_st dataOf(gnutls_vdata_types_t type, const char* text)
{
    gnutls_typed_vdata_st data = {};
    data.type = type;
    data.data = reinterpret_cast<unsigned char*>(const_cast<char*>(text));
    return data;
}

// Whether a certificate contains host names or addresses in its subject alternative name. Without any, GnuTLS would
// accept the common name of the subject.
bool namesHost(const gnutls_datum_t& der)
{
    gnutls_x509_crt_t certificate = nullptr;
    gnutls_subject_alt_names_t names = nullptr;
    gnutls_datum_t extension{nullptr, 0};
    bool isNamed = false;
    if (gnutls_x509_crt_init(&certificate) >= 0 && gnutls_subject_alt_names_init(&names) >= 0 &&
        gnutls_x509_crt_import(certificate, &der, GNUTLS_X509_FMT_DER) >= 0 &&
        gnutls_x509_crt_get_extension_by_oid2(certificate, GNUTLS_X509EXT_OID_SAN, 0, &extension, nullptr) >= 0 &&
        gnutls_x509_ext_import_subject_alt_names(&extension, names, 0) >= 0)
    {
        unsigned int kind = 0;
        gnutls_datum_t name;
        for (unsigned int i = 0; !isNamed && gnutls_subject_alt_names_get(names, i, &kind, &name, nullptr) >= 0; ++i)
            isNamed = kind == GNUTLS_SAN_DNSNAME || kind == GNUTLS_SAN_IPADDRESS;
    }
    gnutls_free(extension.data);
    if (names)
        gnutls_subject_alt_names_deinit(names);
    if (certificate)
        gnutls_x509_crt_deinit(certificate);
    return isNamed;
}

int alertOf(unsigned int status)
{
    if (status & GNUTLS_CERT_SIGNER_NOT_FOUND)
        return GNUTLS_A_UNKNOWN_CA;
    if (status & GNUTLS_CERT_REVOKED)
        return GNUTLS_A_CERTIFICATE_REVOKED;
    return status & GNUTLS_CERT_EXPIRED ? GNUTLS_A_CERTIFICATE_EXPIRED : 0;
}

// The first of these that the status names. An untrusted signature comes first: it may have been forged, and the rest
// of the certificate with it.
EndCause::Rule ruleOf(unsigned int status)
{
    constexpr struct
    {
        unsigned int m_Status;
        EndCause::Rule m_Rule;
    } kRules[] = {
        {GNUTLS_CERT_SIGNER_NOT_FOUND | GNUTLS_CERT_SIGNER_NOT_CA | GNUTLS_CERT_SIGNATURE_FAILURE,
         EndCause::kUntrusted},
        {GNUTLS_CERT_REVOKED, EndCause::kRevoked},
        {GNUTLS_CERT_EXPIRED, EndCause::kExpired},
        {GNUTLS_CERT_NOT_ACTIVATED, EndCause::kNotYetValid},
        {GNUTLS_CERT_INSECURE_ALGORITHM, EndCause::kWeak},
        {GNUTLS_CERT_PURPOSE_MISMATCH, EndCause::kWrongPurpose},
        {GNUTLS_CERT_UNEXPECTED_OWNER, EndCause::kWrongName},
        {GNUTLS_CERT_REVOCATION_DATA_SUPERSEDED | GNUTLS_CERT_REVOCATION_DATA_ISSUED_IN_FUTURE,
         EndCause::kOldRevocations},
    };
    for (const auto& each : kRules)
        if (status & each.m_Status)
            return each.m_Rule;
    return EndCause::kOtherRule;
}

} // namespace

bool isAddress(const char* host)
{
    return host[std::strspn(host, "0123456789.")] == 0 || std::strchr(host, ':');
}

void requestCertificate(gnutls_session_t session, TlsContext::ClientCertificate wanted)
{
    if (wanted != TlsContext::kNotAsked)
        gnutls_certificate_server_set_request(session, wanted == TlsContext::kRequired ? GNUTLS_CERT_REQUIRE
                                                                                       : GNUTLS_CERT_REQUEST);
}

EndCause causeOfTls(int code, EndCause::Rule rule)
{
    switch (code)
    {
    case GNUTLS_E_CERTIFICATE_ERROR:
    case GNUTLS_E_CERTIFICATE_VERIFICATION_ERROR:
        return {EndCause::kCertificate, rule};
    case GNUTLS_E_NO_CERTIFICATE_FOUND:
    case GNUTLS_E_CERTIFICATE_REQUIRED:
        return {EndCause::kCertificate, EndCause::kMissing};
    case GNUTLS_E_MEMORY_ERROR:
        return {EndCause::kNoMemory, 0};
    default:
        return {EndCause::kTls, 0};
    }
}

int verifyPeer(gnutls_session_t session, bool isClient, const char* name, String_T<wchar_t>& fault, int* alert,
               EndCause::Rule* rule)
{
    const auto setRule = [rule](EndCause::Rule violated)
    {
        if (rule)
            *rule = violated;
    };
    if (alert)
        *alert = 0;
    unsigned int count = 0;
    const gnutls_datum_t* const chain = gnutls_certificate_get_peers(session, &count);
    if (!chain || count == 0)
    {
        if (!isClient)
            return 0;
        setRule(EndCause::kMissing);
        fault = L"The server has shown no certificate";
        return GNUTLS_E_CERTIFICATE_ERROR;
    }
    gnutls_typed_vdata_st wanted[] = {
        dataOf(GNUTLS_DT_KEY_PURPOSE_OID, isClient ? GNUTLS_KP_TLS_WWW_SERVER : GNUTLS_KP_TLS_WWW_CLIENT),
        dataOf(GNUTLS_DT_DNS_HOSTNAME, name)};
    unsigned int status = 0;
    const int code = gnutls_certificate_verify_peers(session, wanted, isClient ? 2 : 1, &status);
    if (code >= 0 && status == 0)
    {
        if (!isClient || namesHost(chain[0]))
            return 0;
        setRule(EndCause::kNoName);
        fault = L"The server's certificate names no host but in its subject";
        return GNUTLS_E_CERTIFICATE_ERROR;
    }
    if (alert && code >= 0)
        *alert = alertOf(status);
    setRule(code >= 0 ? ruleOf(status) : EndCause::kOtherRule);
    const int told = code < 0 ? code : GNUTLS_E_CERTIFICATE_VERIFICATION_ERROR;
    gnutls_datum_t text{nullptr, 0};
    if (code >= 0 && gnutls_certificate_verification_status_print(status, GNUTLS_CRT_X509, &text, 0) == 0)
        fault = StringHelper::utf8ToWide(reinterpret_cast<const char*>(text.data));
    else
        fault = StringHelper::utf8ToWide(gnutls_strerror(told));
    gnutls_free(text.data);
    return told;
}

} // namespace zet::inner

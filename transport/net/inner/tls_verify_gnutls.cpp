#include "transport/net/inner/tls_verify_gnutls.h"

#include "framework/string_helper.h"

#include <gnutls/x509.h>

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

} // namespace

void requestCertificate(gnutls_session_t session, TlsContext::ClientCertificate wanted)
{
    if (wanted != TlsContext::kNotAsked)
        gnutls_certificate_server_set_request(session, wanted == TlsContext::kRequired ? GNUTLS_CERT_REQUIRE
                                                                                       : GNUTLS_CERT_REQUEST);
}

int verifyPeer(gnutls_session_t session, bool isClient, const char* name, String_T<wchar_t>& fault)
{
    unsigned int count = 0;
    if (!gnutls_certificate_get_peers(session, &count) || count == 0)
    {
        if (!isClient)
            return 0;
        fault = L"The server has shown no certificate";
        return GNUTLS_E_CERTIFICATE_ERROR;
    }
    gnutls_typed_vdata_st wanted[] = {
        dataOf(GNUTLS_DT_KEY_PURPOSE_OID, isClient ? GNUTLS_KP_TLS_WWW_SERVER : GNUTLS_KP_TLS_WWW_CLIENT),
        dataOf(GNUTLS_DT_DNS_HOSTNAME, name)};
    unsigned int status = 0;
    const int code = gnutls_certificate_verify_peers(session, wanted, isClient ? 2 : 1, &status);
    if (code >= 0 && status == 0)
        return 0;
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

#include "transport/net/tls_context.h"

#include "framework/log.h"
#include "framework/platform/platform.h"
#include "framework/string_helper.h"
#include "transport/net/inner/tls_store.h"

#include <cstring>
#include <limits>
#include <string>

namespace zet
{

namespace
{

gnutls_datum_t datumOf(const char* text, size_t size)
{
    return {reinterpret_cast<unsigned char*>(const_cast<char*>(text)), static_cast<unsigned int>(size)};
}

String_T<wchar_t> faultText(int code)
{
    return StringHelper::utf8ToWide(gnutls_strerror(code));
}

bool readFile(const wchar_t* path, std::string& text)
{
    std::FILE* const file = path ? platform::openFile(path, "rb") : nullptr;
    if (file)
    {
        char piece[4096];
        for (size_t got; text.size() <= TlsContext::kFileLimit && (got = std::fread(piece, 1, sizeof piece, file)) > 0;)
            text.append(piece, got);
        const bool isWhole = !std::ferror(file) && text.size() <= TlsContext::kFileLimit;
        std::fclose(file);
        gnutls_memset(piece, 0, sizeof piece);
        if (isWhole)
            return true;
    }
    Log::error(L"File '%s' is not to be read for TLS", path ? path : L"");
    return false;
}

} // namespace

TlsContext::TlsContext() : m_Store(std::make_unique<inner::TlsStore>()) {}

TlsContext::~TlsContext() = default;

bool TlsContext::isAvailable()
{
    return true;
}

bool TlsContext::isOpen() const
{
    if (!m_Store->m_IsReady)
        Log::error(L"A TLS context without GnuTLS behind it takes nothing");
    else if (m_Store->m_IsFixed)
        Log::error(L"A TLS context in use is not changed");
    else
        return true;
    return false;
}

bool TlsContext::setCertificate(const char* certificates, const char* key)
{
    if (!isOpen())
        return false;
    const gnutls_datum_t chain = datumOf(certificates, certificates ? std::strlen(certificates) : 0);
    const gnutls_datum_t secret = datumOf(key, key ? std::strlen(key) : 0);
    const int code =
        gnutls_certificate_set_x509_key_mem2(m_Store->m_Credentials, &chain, &secret, GNUTLS_X509_FMT_PEM, nullptr, 0);
    if (code < 0)
    {
        Log::error(L"No TLS certificate: %s", faultText(code));
        return false;
    }
    m_Store->m_HasCertificate = true;
    return true;
}

bool TlsContext::setCertificateFiles(const wchar_t* certificates, const wchar_t* key)
{
    std::string chain;
    std::string secret;
    const bool isSet =
        readFile(certificates, chain) && readFile(key, secret) && setCertificate(chain.c_str(), secret.c_str());
    gnutls_memset(secret.data(), 0, secret.size());
    return isSet;
}

bool TlsContext::addTrust(const char* certificates)
{
    if (!isOpen())
        return false;
    const gnutls_datum_t trusted = datumOf(certificates, certificates ? std::strlen(certificates) : 0);
    const int count = gnutls_certificate_set_x509_trust_mem(m_Store->m_Credentials, &trusted, GNUTLS_X509_FMT_PEM);
    if (count <= 0)
    {
        Log::error(L"No TLS authorities: %s", count < 0 ? faultText(count) : String_T<wchar_t>(L"none found"));
        return false;
    }
    m_Store->m_HasTrust = true;
    return true;
}

bool TlsContext::addTrustFile(const wchar_t* certificates)
{
    std::string trusted;
    return readFile(certificates, trusted) && addTrust(trusted.c_str());
}

bool TlsContext::addSystemTrust()
{
    if (!isOpen())
        return false;
    const int count = gnutls_certificate_set_x509_system_trust(m_Store->m_Credentials);
    if (count <= 0)
    {
        Log::error(L"No TLS authorities of the system: %s",
                   count < 0 ? faultText(count) : String_T<wchar_t>(L"none found"));
        return false;
    }
    m_Store->m_HasTrust = true;
    return true;
}

bool TlsContext::setClientCertificate(ClientCertificate wanted)
{
    if (wanted < kNotAsked || wanted > kRequired || !isOpen())
        return false;
    m_ClientCertificate = wanted;
    return true;
}

bool TlsContext::setHandshakeTime(unsigned int milliseconds)
{
    if (milliseconds == 0 || milliseconds > static_cast<unsigned int>(std::numeric_limits<int>::max()) || !isOpen())
        return false;
    m_HandshakeTime = milliseconds;
    return true;
}

bool TlsContext::hasCertificate() const
{
    return m_Store->m_HasCertificate;
}

bool TlsContext::hasTrust() const
{
    return m_Store->m_HasTrust;
}

bool TlsContext::servesServer() const
{
    const wchar_t* lack = nullptr;
    if (!hasCertificate())
        lack = L"a certificate";
    else if (m_ClientCertificate != kNotAsked && !hasTrust())
        lack = L"authorities to hold the clients' certificates against";
    if (lack)
        Log::error(L"A TLS server needs %s", lack);
    return !lack;
}

bool TlsContext::servesClient() const
{
    if (!hasTrust())
        Log::error(L"A TLS client needs authorities to hold the server's certificate against");
    return hasTrust();
}

} // namespace zet

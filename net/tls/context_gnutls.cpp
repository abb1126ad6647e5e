#include "net/tls/context.h"

#include "framework/log.h"
#include "framework/platform/platform.h"
#include "framework/string_helper.h"
#include "net/tls/inner/store.h"

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

void wipe(std::string& text)
{
    gnutls_memset(text.data(), 0, text.size());
}

String_T<wchar_t> faultText(int code)
{
    return StringHelper::utf8ToWide(gnutls_strerror(code));
}

// The file may hold a key: no copy of it may remain in a buffer of the C library or in memory that the text has
// outgrown.
bool readFile(const wchar_t* path, std::string& text)
{
    std::FILE* const file = path ? platform::openFile(path, "rb") : nullptr;
    if (file)
    {
        std::setvbuf(file, nullptr, _IONBF, 0);
        size_t size = 0;
        text.resize(4096);
        for (size_t got; (got = std::fread(text.data() + size, 1, text.size() - size, file)) > 0;)
        {
            size += got;
            if (size < text.size())
                continue;
            if (size > TlsContext::kFileLimit)
                break;
            std::string grown(2 * size, 0);
            std::memcpy(grown.data(), text.data(), size);
            wipe(text);
            text.swap(grown);
        }
        const bool isWhole = !std::ferror(file) && size <= TlsContext::kFileLimit;
        std::fclose(file);
        text.resize(size);
        if (isWhole)
            return true;
        wipe(text);
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
    wipe(secret);
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

bool TlsContext::addRevocations(const char* lists)
{
    if (!isOpen())
        return false;
    const gnutls_datum_t revoked = datumOf(lists, lists ? std::strlen(lists) : 0);
    const int count = gnutls_certificate_set_x509_crl_mem(m_Store->m_Credentials, &revoked, GNUTLS_X509_FMT_PEM);
    if (count > 0)
        return true;
    Log::error(L"No lists of revoked TLS certificates: %s",
               count < 0 ? faultText(count) : String_T<wchar_t>(L"none found"));
    return false;
}

bool TlsContext::addRevocationFile(const wchar_t* lists)
{
    std::string revoked;
    return readFile(lists, revoked) && addRevocations(revoked.c_str());
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

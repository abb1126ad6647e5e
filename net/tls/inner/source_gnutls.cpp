#include "net/tls/inner/source_gnutls.h"

#include "framework/log.h"
#include "framework/platform/platform.h"
#include "framework/string_helper.h"
#include "net/tls/context.h"

#include <gnutls/x509.h>

#include <cstring>
#include <ctime>

namespace zet::inner
{

namespace
{

gnutls_datum_t datumOf(const std::string& text)
{
    return {reinterpret_cast<unsigned char*>(const_cast<char*>(text.c_str())),
            static_cast<unsigned int>(std::strlen(text.c_str()))};
}

// Also what the text held before it was moved from.
void wipe(std::string& text)
{
    text.resize(text.capacity());
    gnutls_memset(text.data(), 0, text.size());
}

String_T<wchar_t> faultText(int code)
{
    return StringHelper::utf8ToWide(gnutls_strerror(code));
}

// The file may hold a key: no copy of it may remain in a buffer of the C library or in memory that the text has
// outgrown.
bool readFile(const String_T<wchar_t>& path, std::string& text)
{
    std::FILE* const file = path.isEmpty() ? nullptr : platform::openFile(path.getBuffer(), "rb");
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
    Log::error(L"File '%s' cannot be read for TLS", path);
    return false;
}

// Reports a count or a code of GnuTLS. True if the count is above zero.
bool isFound(int count, const wchar_t* what)
{
    if (count <= 0)
        Log::error(L"%s: %s", what, count < 0 ? faultText(count) : String_T<wchar_t>(L"none found"));
    return count > 0;
}

} // namespace

TlsCredentials::TlsCredentials()
{
    m_Fault = gnutls_certificate_allocate_credentials(&m_Handle);
    if (m_Fault == GNUTLS_E_SUCCESS)
        m_Fault = gnutls_session_ticket_key_generate(&m_TicketKey);
}

TlsCredentials::~TlsCredentials()
{
    if (m_TicketKey.data)
        gnutls_memset(m_TicketKey.data, 0, m_TicketKey.size);
    gnutls_free(m_TicketKey.data);
    if (m_Handle)
        gnutls_certificate_free_credentials(m_Handle);
}

bool TlsCredentials::isCurrent() const
{
    const std::time_t now = std::time(nullptr);
    gnutls_datum_t der;
    for (unsigned int i = 0; gnutls_certificate_get_crt_raw(m_Handle, i, 0, &der) >= 0; ++i)
    {
        gnutls_x509_crt_t certificate = nullptr;
        int fault = gnutls_x509_crt_init(&certificate);
        if (fault == GNUTLS_E_SUCCESS)
            fault = gnutls_x509_crt_import(certificate, &der, GNUTLS_X509_FMT_DER);
        const wchar_t* reason = nullptr;
        if (fault != GNUTLS_E_SUCCESS)
            reason = L"it cannot be read";
        else if (gnutls_x509_crt_get_expiration_time(certificate) < now)
            reason = L"it has expired";
        else if (gnutls_x509_crt_get_activation_time(certificate) > now)
            reason = L"it is not valid yet";
        if (certificate)
            gnutls_x509_crt_deinit(certificate);
        if (reason)
        {
            Log::error(L"No TLS certificate: %s", reason);
            return false;
        }
    }
    return true;
}

TlsSource::TlsSource(Kind kind, const char* text, const char* key)
    : m_Kind(kind), m_IsFile(false), m_Text(text ? text : ""), m_Key(key ? key : "")
{
}

TlsSource::TlsSource(Kind kind, const wchar_t* file, const wchar_t* keyFile)
    : m_Kind(kind), m_IsFile(true), m_File(file ? file : L""), m_KeyFile(keyFile ? keyFile : L"")
{
}

TlsSource::~TlsSource()
{
    wipe(m_Key);
}

bool TlsSource::load(TlsCredentials& credentials) const
{
    if (!m_IsFile)
        return loadTexts(credentials, m_Text, m_Key);
    std::string text;
    std::string key;
    const bool isRead = readFile(m_File, text) && (m_Kind != TlsStore::kCertificate || readFile(m_KeyFile, key));
    const bool isLoaded = isRead && loadTexts(credentials, text, key);
    wipe(key);
    return isLoaded;
}

bool TlsSource::loadTexts(TlsCredentials& credentials, const std::string& text, const std::string& key) const
{
    const gnutls_certificate_credentials_t handle = credentials.m_Handle;
    const gnutls_datum_t given = datumOf(text);
    bool isLoaded = false;
    switch (m_Kind)
    {
    case TlsStore::kCertificate:
    {
        const gnutls_datum_t secret = datumOf(key);
        const int code = gnutls_certificate_set_x509_key_mem2(handle, &given, &secret, GNUTLS_X509_FMT_PEM, nullptr, 0);
        if (code < 0)
        {
            Log::error(L"No TLS certificate: %s", faultText(code));
            break;
        }
        credentials.m_HasCertificate = true;
        isLoaded = true;
        break;
    }
    case TlsStore::kTrust:
        isLoaded =
            isFound(gnutls_certificate_set_x509_trust_mem(handle, &given, GNUTLS_X509_FMT_PEM), L"No TLS authorities");
        break;
    case TlsStore::kSystemTrust:
        isLoaded = isFound(gnutls_certificate_set_x509_system_trust(handle), L"No TLS authorities of the system");
        break;
    case TlsStore::kRevocations:
        isLoaded = isFound(gnutls_certificate_set_x509_crl_mem(handle, &given, GNUTLS_X509_FMT_PEM),
                           L"No lists of revoked TLS certificates");
        break;
    }
    if (isLoaded && (m_Kind == TlsStore::kTrust || m_Kind == TlsStore::kSystemTrust))
        credentials.m_HasTrust = true;
    return isLoaded;
}

} // namespace zet::inner

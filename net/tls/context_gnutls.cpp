#include "net/tls/context.h"

#include "framework/log.h"
#include "net/tls/inner/store.h"

#include <limits>

namespace zet
{

using inner::TlsSource;

TlsContext::TlsContext() : m_Store(std::make_unique<inner::TlsStore>()) {}

TlsContext::~TlsContext() = default;

bool TlsContext::isAvailable()
{
    return true;
}

bool TlsContext::isUsable() const
{
    if (!m_Store->m_IsReady)
        Log::error(L"GnuTLS could not be started; this TLS context cannot be used");
    return m_Store->m_IsReady;
}

bool TlsContext::isOpen() const
{
    if (!isUsable())
        return false;
    if (m_Store->m_IsFixed)
        Log::error(L"A TLS context in use cannot be changed");
    return !m_Store->m_IsFixed;
}

bool TlsContext::setCertificate(const char* certificates, const char* key)
{
    return isOpen() && m_Store->add(TlsSource(TlsSource::kCertificate, certificates, key));
}

bool TlsContext::setCertificateFiles(const wchar_t* certificates, const wchar_t* key)
{
    return isOpen() && m_Store->add(TlsSource(TlsSource::kCertificate, certificates, key));
}

bool TlsContext::addTrust(const char* certificates)
{
    return isOpen() && m_Store->add(TlsSource(TlsSource::kTrust, certificates));
}

bool TlsContext::addTrustFile(const wchar_t* certificates)
{
    return isOpen() && m_Store->add(TlsSource(TlsSource::kTrust, certificates));
}

bool TlsContext::addSystemTrust()
{
    return isOpen() && m_Store->add(TlsSource(TlsSource::kSystemTrust, ""));
}

bool TlsContext::addRevocations(const char* lists)
{
    return isOpen() && m_Store->add(TlsSource(TlsSource::kRevocations, lists));
}

bool TlsContext::addRevocationFile(const wchar_t* lists)
{
    return isOpen() && m_Store->add(TlsSource(TlsSource::kRevocations, lists));
}

bool TlsContext::reload()
{
    return isUsable() && m_Store->reload(nullptr);
}

bool TlsContext::replaceCertificate(const char* certificates, const char* key)
{
    TlsSource pair(TlsSource::kCertificate, certificates, key);
    return isUsable() && m_Store->reload(&pair);
}

bool TlsContext::replaceCertificateFiles(const wchar_t* certificates, const wchar_t* key)
{
    TlsSource pair(TlsSource::kCertificate, certificates, key);
    return isUsable() && m_Store->reload(&pair);
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
    return m_Store->credentials()->m_HasCertificate;
}

bool TlsContext::hasTrust() const
{
    return m_Store->credentials()->m_HasTrust;
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

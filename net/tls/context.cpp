#include "net/tls/context.h"

#include "framework/log.h"
#include "net/inner/secure_module.h"
#include "net/tls/inner/store.h"

#include <limits>

namespace zet
{

using inner::TlsStore;

TlsContext::TlsContext()
{
    if (inner::SecureModule* const module = inner::SecureModule::get())
        m_Store = module->makeStore();
}

TlsContext::~TlsContext() = default;

bool TlsContext::isAvailable()
{
    return inner::SecureModule::get() != nullptr;
}

bool TlsContext::isUsable() const
{
    if (!m_Store)
        Log::error(L"This library has no TLS");
    else if (!m_Store->isReady())
        Log::error(L"GnuTLS could not be started; this TLS context cannot be used");
    return m_Store && m_Store->isReady();
}

bool TlsContext::isOpen() const
{
    if (!isUsable())
        return false;
    if (m_Store->isFixed())
        Log::error(L"A TLS context in use cannot be changed");
    return !m_Store->isFixed();
}

bool TlsContext::setCertificate(const char* certificates, const char* key)
{
    return isOpen() && m_Store->add(TlsStore::kCertificate, certificates, key);
}

bool TlsContext::setCertificateFiles(const wchar_t* certificates, const wchar_t* key)
{
    return isOpen() && m_Store->add(TlsStore::kCertificate, certificates, key);
}

bool TlsContext::addTrust(const char* certificates)
{
    return isOpen() && m_Store->add(TlsStore::kTrust, certificates, nullptr);
}

bool TlsContext::addTrustFile(const wchar_t* certificates)
{
    return isOpen() && m_Store->add(TlsStore::kTrust, certificates, nullptr);
}

bool TlsContext::addSystemTrust()
{
    return isOpen() && m_Store->add(TlsStore::kSystemTrust, "", nullptr);
}

bool TlsContext::addRevocations(const char* lists)
{
    return isOpen() && m_Store->add(TlsStore::kRevocations, lists, nullptr);
}

bool TlsContext::addRevocationFile(const wchar_t* lists)
{
    return isOpen() && m_Store->add(TlsStore::kRevocations, lists, nullptr);
}

bool TlsContext::reload()
{
    return isUsable() && m_Store->reload();
}

bool TlsContext::replaceCertificate(const char* certificates, const char* key)
{
    return isUsable() && m_Store->reload(certificates, key);
}

bool TlsContext::replaceCertificateFiles(const wchar_t* certificates, const wchar_t* key)
{
    return isUsable() && m_Store->reload(certificates, key);
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
    return m_Store && m_Store->hasCertificate();
}

bool TlsContext::hasTrust() const
{
    return m_Store && m_Store->hasTrust();
}

bool TlsContext::servesServer() const
{
    const wchar_t* lack = nullptr;
    if (!isUsable())
        return false;
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
    if (!isUsable())
        return false;
    if (!hasTrust())
        Log::error(L"A TLS client needs authorities to hold the server's certificate against");
    return hasTrust();
}

} // namespace zet

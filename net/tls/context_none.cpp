// The library without TLS: a context can be created, and every function of it fails.
#include "net/tls/context.h"

#include "framework/log.h"

namespace zet
{

namespace inner
{

struct TlsStore
{
};

} // namespace inner

TlsContext::TlsContext() = default;

TlsContext::~TlsContext() = default;

bool TlsContext::isAvailable()
{
    return false;
}

bool TlsContext::isUsable() const
{
    Log::error(L"This library was built without TLS");
    return false;
}

bool TlsContext::isOpen() const
{
    return isUsable();
}

bool TlsContext::setCertificate(const char*, const char*)
{
    return isOpen();
}

bool TlsContext::setCertificateFiles(const wchar_t*, const wchar_t*)
{
    return isOpen();
}

bool TlsContext::addTrust(const char*)
{
    return isOpen();
}

bool TlsContext::addTrustFile(const wchar_t*)
{
    return isOpen();
}

bool TlsContext::addSystemTrust()
{
    return isOpen();
}

bool TlsContext::addRevocations(const char*)
{
    return isOpen();
}

bool TlsContext::addRevocationFile(const wchar_t*)
{
    return isOpen();
}

bool TlsContext::reload()
{
    return isUsable();
}

bool TlsContext::replaceCertificate(const char*, const char*)
{
    return isUsable();
}

bool TlsContext::replaceCertificateFiles(const wchar_t*, const wchar_t*)
{
    return isUsable();
}

bool TlsContext::setClientCertificate(ClientCertificate)
{
    return isOpen();
}

bool TlsContext::setHandshakeTime(unsigned int)
{
    return isOpen();
}

bool TlsContext::hasCertificate() const
{
    return false;
}

bool TlsContext::hasTrust() const
{
    return false;
}

bool TlsContext::servesServer() const
{
    return isOpen();
}

bool TlsContext::servesClient() const
{
    return isOpen();
}

} // namespace zet

#include "net/tls/inner/store_gnutls.h"

#include "framework/log.h"
#include "framework/string_helper.h"

#include <utility>

namespace zet::inner
{

namespace
{

// TLS 1.3 and 1.2; forward-secret key exchanges only, AEAD ciphers only, no SHA-1. The profile refuses certificates
// with RSA keys below 2,048 bits and keys of like strength. A server uses its own order of preference.
constexpr const char* kPriority =
    "NORMAL:-VERS-ALL:+VERS-TLS1.3:+VERS-TLS1.2:-RSA:-CIPHER-ALL:+AES-256-GCM:+CHACHA20-POLY1305:+AES-128-GCM:"
    "-MAC-ALL:+AEAD:-SIGN-RSA-SHA1:-SIGN-ECDSA-SHA1:-SIGN-DSA-SHA1:%PROFILE_MEDIUM:%SERVER_PRECEDENCE";

} // namespace

void GnuTlsStore::wipe(Session& session)
{
    gnutls_memset(session.data(), 0, session.size());
}

GnuTlsStore::GnuTlsStore() : m_Credentials(std::make_shared<TlsCredentials>())
{
    int fault = m_Credentials->m_Fault;
    if (fault == GNUTLS_E_SUCCESS)
        fault = gnutls_priority_init(&m_Priority, kPriority, nullptr);
    m_IsReady = fault == GNUTLS_E_SUCCESS;
    if (!m_IsReady)
        Log::error(L"No TLS: %s", StringHelper::utf8ToWide(gnutls_strerror(fault)));
}

GnuTlsStore::~GnuTlsStore()
{
    for (auto& [peer, session] : m_Sessions)
        wipe(session);
    if (m_Priority)
        gnutls_priority_deinit(m_Priority);
}

std::shared_ptr<const TlsCredentials> GnuTlsStore::credentials() const
{
    const std::lock_guard lock(m_Mutex);
    return m_Credentials;
}

bool GnuTlsStore::load(TlsSource source)
{
    const std::lock_guard lock(m_SourceMutex);
    if (!source.load(*m_Credentials))
        return false;
    m_Sources.push_back(std::move(source));
    return true;
}

bool GnuTlsStore::reload(const char* certificates, const char* key)
{
    TlsSource pair(kCertificate, certificates, key);
    return loadAgain(&pair);
}

bool GnuTlsStore::reload(const wchar_t* certificates, const wchar_t* key)
{
    TlsSource pair(kCertificate, certificates, key);
    return loadAgain(&pair);
}

bool GnuTlsStore::loadAgain(TlsSource* pair)
{
    const std::lock_guard lock(m_SourceMutex);
    const auto isReplaced = [pair](const TlsSource& source) { return pair && source.m_Kind == pair->m_Kind; };
    const auto fresh = std::make_shared<TlsCredentials>();
    bool isLoaded = fresh->m_Fault == GNUTLS_E_SUCCESS && (!pair || pair->load(*fresh));
    for (const TlsSource& source : m_Sources)
        isLoaded = isLoaded && (isReplaced(source) || source.load(*fresh));
    if (!isLoaded || !fresh->isCurrent())
    {
        Log::error(L"A TLS context was not reloaded; it keeps its certificates");
        return false;
    }
    if (pair)
    {
        std::erase_if(m_Sources, isReplaced);
        m_Sources.push_back(std::move(*pair));
    }
    const std::lock_guard exchange(m_Mutex);
    m_Credentials = fresh;
    return true;
}

void GnuTlsStore::keep(const std::string& peer, Session session)
{
    const std::lock_guard lock(m_Mutex);
    if (m_Sessions.size() >= TlsContext::kKeptSessions && !m_Sessions.contains(peer))
    {
        wipe(m_Sessions.begin()->second);
        m_Sessions.erase(m_Sessions.begin());
    }
    Session& kept = m_Sessions[peer];
    wipe(kept);
    kept = std::move(session);
}

GnuTlsStore::Session GnuTlsStore::take(const std::string& peer)
{
    const std::lock_guard lock(m_Mutex);
    const auto found = m_Sessions.find(peer);
    if (found == m_Sessions.end())
        return {};
    Session session = std::move(found->second);
    m_Sessions.erase(found);
    return session;
}

} // namespace zet::inner

#include "net/tls/inner/store.h"

#include "framework/log.h"
#include "framework/string_helper.h"
#include "net/tls/context.h"

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

void TlsStore::wipe(Session& session)
{
    gnutls_memset(session.data(), 0, session.size());
}

TlsStore::TlsStore()
{
    const int fault = [this]
    {
        if (const int code = gnutls_certificate_allocate_credentials(&m_Credentials))
            return code;
        if (const int code = gnutls_priority_init(&m_Priority, kPriority, nullptr))
            return code;
        return gnutls_session_ticket_key_generate(&m_TicketKey);
    }();
    m_IsReady = fault == GNUTLS_E_SUCCESS;
    if (!m_IsReady)
        Log::error(L"No TLS: %s", StringHelper::utf8ToWide(gnutls_strerror(fault)));
}

TlsStore::~TlsStore()
{
    for (auto& [peer, session] : m_Sessions)
        wipe(session);
    if (m_TicketKey.data)
        gnutls_memset(m_TicketKey.data, 0, m_TicketKey.size);
    gnutls_free(m_TicketKey.data);
    if (m_Priority)
        gnutls_priority_deinit(m_Priority);
    if (m_Credentials)
        gnutls_certificate_free_credentials(m_Credentials);
}

void TlsStore::keep(const std::string& peer, Session session)
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

TlsStore::Session TlsStore::take(const std::string& peer)
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

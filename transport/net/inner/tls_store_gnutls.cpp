#include "transport/net/inner/tls_store.h"

#include "framework/log.h"
#include "framework/string_helper.h"
#include "transport/net/tls_context.h"

#include <utility>

namespace zet::inner
{

namespace
{

// Nothing below TLS 1.2, and no exchange whose recorded traffic a stolen key opens later.
constexpr const char* kPriority = "NORMAL:-VERS-ALL:+VERS-TLS1.3:+VERS-TLS1.2:-RSA";

} // namespace

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
        m_Sessions.erase(m_Sessions.begin());
    m_Sessions[peer] = std::move(session);
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

// What stands behind a TLS context: GnuTLS's credentials, and the sessions that can be resumed.
#pragma once

#include <gnutls/gnutls.h>

#include <atomic>
#include <map>
#include <mutex>
#include <string>
#include <vector>

namespace zet::inner
{

struct TlsStore
{
    using Session = std::vector<unsigned char>;

    TlsStore();
    ~TlsStore();
    TlsStore(const TlsStore&) = delete;
    TlsStore& operator=(const TlsStore&) = delete;

    // Overwrites a session's secrets with zeros.
    static void wipe(Session& session);

    void keep(const std::string& peer, Session session);
    // The session of a peer, which is used once: two connections with one ticket could be told to be of one client.
    Session take(const std::string& peer);

    gnutls_certificate_credentials_t m_Credentials = nullptr;
    gnutls_priority_t m_Priority = nullptr;
    // Seals the tickets of a server.
    gnutls_datum_t m_TicketKey{nullptr, 0};
    bool m_IsReady = false;
    bool m_HasCertificate = false;
    bool m_HasTrust = false;
    std::atomic<bool> m_IsFixed{false};

private:
    // Contexts are shared across threads.
    std::mutex m_Mutex;
    std::map<std::string, Session> m_Sessions;
};

} // namespace zet::inner

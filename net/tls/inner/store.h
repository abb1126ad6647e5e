// The private part of a TLS context: GnuTLS's credentials, and the sessions that can be resumed.
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
    // Removes and returns the session of a peer. Each is used once: an observer could link two connections with one
    // ticket.
    Session take(const std::string& peer);

    gnutls_certificate_credentials_t m_Credentials = nullptr;
    gnutls_priority_t m_Priority = nullptr;
    // Encrypts the tickets of a server.
    gnutls_datum_t m_TicketKey{nullptr, 0};
    bool m_IsReady = false;
    bool m_HasCertificate = false;
    bool m_HasTrust = false;
    // Set by the first user of the context; then it cannot be changed.
    std::atomic<bool> m_IsFixed{false};

private:
    // Contexts are shared between threads.
    std::mutex m_Mutex;
    std::map<std::string, Session> m_Sessions;
};

} // namespace zet::inner

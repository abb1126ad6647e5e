// The private part of a TLS context: what handshakes use, where it came from, and the sessions that can be resumed.
#pragma once

#include "net/tls/inner/source.h"

#include <atomic>
#include <map>
#include <memory>
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

    // What a handshake that begins now uses. Its session must not outlive it.
    std::shared_ptr<const TlsCredentials> credentials();
    // Loads one more source. False, with a log line and nothing changed, if it is not valid. Not while a session uses
    // the credentials.
    bool add(TlsSource source);
    // Loads all sources into new credentials, with another pair instead of all pairs unless it is null. False, with a
    // log line and nothing changed, if one of them is not valid.
    bool reload(TlsSource* pair);

    void keep(const std::string& peer, Session session);
    // Removes and returns the session of a peer. Each is used once: an observer could link two connections with one
    // ticket.
    Session take(const std::string& peer);

    gnutls_priority_t m_Priority = nullptr;
    bool m_IsReady = false;
    // Set by the first user of the context; from then on only a reload changes it.
    std::atomic<bool> m_IsFixed{false};

private:
    // Contexts are shared between threads. Nothing waits for a file while it holds this lock.
    std::mutex m_Mutex;
    std::shared_ptr<TlsCredentials> m_Credentials;
    std::map<std::string, Session> m_Sessions;

    std::mutex m_SourceMutex;
    std::vector<TlsSource> m_Sources;
};

} // namespace zet::inner

// The store of a TLS context: what handshakes use, where it came from, and the sessions that can be resumed.
#pragma once

#include "net/tls/context.h"
#include "net/tls/inner/source_gnutls.h"

#include <atomic>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace zet::inner
{

class GnuTlsStore final : public TlsStore
{
public:
    using Session = std::vector<unsigned char>;

    GnuTlsStore();
    ~GnuTlsStore() override;

    // Null if the context has none that is ready.
    static GnuTlsStore* of(const TlsContext& context)
    {
        return context.m_Store && context.m_Store->isReady() ? static_cast<GnuTlsStore*>(context.m_Store.get())
                                                             : nullptr;
    }
    // Overwrites a session's secrets with zeros.
    static void wipe(Session& session);

    // What a handshake that begins now uses. Its session must not outlive it.
    std::shared_ptr<const TlsCredentials> credentials() const;
    void keep(const std::string& peer, Session session);
    // Removes and returns the session of a peer. Each is used once: an observer could link two connections with one
    // ticket.
    Session take(const std::string& peer);

    bool isReady() const override { return m_IsReady; }
    bool isFixed() const override { return m_IsFixed; }
    // The first user of the context fixes it.
    void fix() { m_IsFixed = true; }
    gnutls_priority_t getPriority() const { return m_Priority; }
    bool hasCertificate() const override { return credentials()->m_HasCertificate; }
    bool hasTrust() const override { return credentials()->m_HasTrust; }

    bool add(Kind kind, const char* text, const char* key) override { return load({kind, text, key}); }
    bool add(Kind kind, const wchar_t* file, const wchar_t* keyFile) override { return load({kind, file, keyFile}); }
    bool reload() override { return loadAgain(nullptr); }
    bool reload(const char* certificates, const char* key) override;
    bool reload(const wchar_t* certificates, const wchar_t* key) override;

private:
    bool load(TlsSource source);
    // With another pair instead of all pairs unless it is null.
    bool loadAgain(TlsSource* pair);

    gnutls_priority_t m_Priority = nullptr;
    bool m_IsReady = false;
    std::atomic<bool> m_IsFixed{false};
    // Contexts are shared between threads. Nothing waits for a file while it holds this lock.
    mutable std::mutex m_Mutex;
    std::shared_ptr<TlsCredentials> m_Credentials;
    std::map<std::string, Session> m_Sessions;

    std::mutex m_SourceMutex;
    std::vector<TlsSource> m_Sources;
};

} // namespace zet::inner

// A TLS session of GnuTLS.
#pragma once

#include "net/tls/inner/layer.h"

#include <gnutls/gnutls.h>

#include <memory>
#include <string>
#include <vector>

namespace zet::inner
{

struct TlsCredentials;

class GnuTlsLayer final : public TlsLayer
{
public:
    GnuTlsLayer() = default;
    ~GnuTlsLayer() override { GnuTlsLayer::end(); }

    bool begin(const String_T<wchar_t>& peer) override;
    void end() override;
    Result shakeHands(Wire wire) override;
    int open(void* data, int size, Wire wire) override;
    bool seal(OutputQueue& plain, Wire wire) override;
    void sendCloseNotify(Wire wire) override;
    bool hasInput() const override;
    bool isResumed() const override;
    String_T<wchar_t> getPeerName() const override;
    String_T<wchar_t> getDescription() const override;

private:
    struct Calls;

    int alertOf(int code) const;
    Result fail(int code);
    Result finish();
    int verify();
    void keepSession();

    gnutls_session_t m_Session = nullptr;
    // Those of the session.
    std::shared_ptr<const TlsCredentials> m_Credentials;
    Wire* m_Wire = nullptr;
    std::string m_HostName;
    std::string m_SessionKey;
    // The session that a client offers to resume, until the handshake is done.
    std::vector<unsigned char> m_Offered;
    EndCause::Rule m_Rule = EndCause::kOtherRule;
    bool m_HasTicket = false;
    // The alert for a fault that verify() has found; 0 for the one that GnuTLS chooses.
    int m_VerifyAlert = 0;
};

} // namespace zet::inner

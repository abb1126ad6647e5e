// The TLS session of one connection: bytes in, bytes out, and no socket.
#pragma once

#include "net/end_cause.h"
#include "net/inner/blocks.h"
#include "net/tls/context.h"

#include <memory>
#include <string>
#include <vector>

struct gnutls_session_int;

namespace zet::inner
{

struct TlsCredentials;

// Records to send go to a queue of the caller; the caller puts received bytes into m_Input. Nothing here waits or calls
// the operating system. THREADS: the connection's.
class TlsLayer
{
public:
    enum Result
    {
        // More input is needed.
        kNothingYet = 0,
        // The peer has sent close_notify.
        kEnded = -1,
        // getFault() says why.
        kFailed = -2,
        kDone = 1
    };
    struct Wire
    {
        OutputQueue& m_Sealed;
        BlockPool& m_Pool;
    };

    TlsLayer() = default;
    ~TlsLayer() { end(); }
    TlsLayer(const TlsLayer&) = delete;
    TlsLayer& operator=(const TlsLayer&) = delete;

    // Starts a new session with m_Context, as client or server according to m_IsClient. The peer's address is a part of
    // the key of the session to resume.
    bool begin(const String_T<wchar_t>& peer);
    // Ends the session without close_notify, and drops the input.
    void end();
    bool isOn() const { return m_Session != nullptr; }
    bool isDone() const { return m_IsDone; }

    // Continues the handshake: kDone, kNothingYet, or kFailed, with an alert for the peer in the queue.
    Result shakeHands(Wire wire);
    // The number of decrypted bytes written to data, or a Result.
    int open(void* data, int size, Wire wire);
    // Encrypts at most one record from plain. False breaks the connection.
    bool seal(OutputQueue& plain, Wire wire);
    // Queues close_notify.
    void sendCloseNotify(Wire wire);
    // Whether open() can deliver bytes without more input.
    bool hasInput() const;

    bool isResumed() const;
    // The name in the peer's verified certificate; empty if the peer has shown none.
    String_T<wchar_t> getPeerName() const;
    // Such as "TLS1.3-X.509-...".
    String_T<wchar_t> getDescription() const;
    const String_T<wchar_t>& getFault() const { return m_Fault; }
    EndCause getCause() const { return m_Cause; }

    Unknown::Handle_T<TlsContext> m_Context;
    // The name or address that a server's certificate must contain: the one that the client connects to, unless the
    // host has set another.
    String_T<wchar_t> m_Host;
    String_T<wchar_t> m_SetHost;
    InputBuffer m_Input;
    // Encrypted output; it leaves before the link's own queue.
    OutputQueue m_Sealed;
    // The tick count when the handshake began, and the bytes that the peer has sent in it.
    unsigned int m_Begun = 0;
    int m_HandshakeInput = 0;
    bool m_IsClient = false;
    bool m_IsDelayed = false;

private:
    struct Calls;

    int alertOf(int code) const;
    Result fail(int code);
    Result finish();
    int verify();
    void keepSession();

    gnutls_session_int* m_Session = nullptr;
    // Those of the session.
    std::shared_ptr<const TlsCredentials> m_Credentials;
    Wire* m_Wire = nullptr;
    std::string m_HostName;
    std::string m_SessionKey;
    // The session that a client offers to resume, until the handshake is done.
    std::vector<unsigned char> m_Offered;
    String_T<wchar_t> m_Fault;
    EndCause m_Cause;
    EndCause::Rule m_Rule = EndCause::kOtherRule;
    bool m_IsDone = false;
    bool m_HasTicket = false;
    // The alert for a fault that verify() has found; 0 for the one that GnuTLS chooses.
    int m_VerifyAlert = 0;
};

} // namespace zet::inner

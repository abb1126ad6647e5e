// The TLS session of one connection: bytes in, bytes out, and no socket.
#pragma once

#include "net/end_cause.h"
#include "net/inner/blocks.h"
#include "net/tls/context.h"

namespace zet::inner
{

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
    virtual ~TlsLayer() = default;
    TlsLayer(const TlsLayer&) = delete;
    TlsLayer& operator=(const TlsLayer&) = delete;

    // Starts a new session with m_Context, as client or server according to m_IsClient. The peer's address is a part of
    // the key of the session to resume.
    virtual bool begin(const String_T<wchar_t>& peer) = 0;
    // Ends the session without close_notify, and drops the input.
    virtual void end() = 0;
    bool isOn() const { return m_IsOn; }
    bool isDone() const { return m_IsDone; }

    // Continues the handshake: kDone, kNothingYet, or kFailed, with an alert for the peer in the queue.
    virtual Result shakeHands(Wire wire) = 0;
    // The number of decrypted bytes written to data, or a Result.
    virtual int open(void* data, int size, Wire wire) = 0;
    // Encrypts at most one record from plain. False breaks the connection.
    virtual bool seal(OutputQueue& plain, Wire wire) = 0;
    // Queues close_notify.
    virtual void sendCloseNotify(Wire wire) = 0;
    // Whether open() can deliver bytes without more input.
    virtual bool hasInput() const = 0;

    virtual bool isResumed() const = 0;
    // The name in the peer's verified certificate; empty if the peer has shown none.
    virtual String_T<wchar_t> getPeerName() const = 0;
    // Such as "TLS1.3-X.509-...".
    virtual String_T<wchar_t> getDescription() const = 0;
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

protected:
    String_T<wchar_t> m_Fault;
    EndCause m_Cause;
    bool m_IsOn = false;
    bool m_IsDone = false;
};

} // namespace zet::inner

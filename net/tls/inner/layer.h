// The TLS session of one connection: bytes in, bytes out, and no socket.
#pragma once

#include "net/inner/blocks.h"
#include "net/tls/context.h"

#include <string>
#include <vector>

struct gnutls_session_int;

namespace zet::inner
{

// What is to leave goes to a queue of the caller's, what has come is put into m_Input by the caller; nothing here waits
// or asks the operating system. Belongs to the connection's thread.
class TlsLayer
{
public:
    enum Result
    {
        // More input is needed.
        kNothingYet = 0,
        // The peer has said goodbye.
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

    // A new session with m_Context as m_IsClient says. The peer, an address, names the session to resume.
    bool begin(const String_T<wchar_t>& peer);
    // Forgets the session.
    void end();
    bool isOn() const { return m_Session != nullptr; }
    bool isDone() const { return m_IsDone; }

    // One step of the handshake: kDone, kNothingYet or kFailed, which leaves an alert for the peer.
    Result shakeHands(Wire wire);
    // Bytes for the reader, or a Result.
    int open(void* data, int size, Wire wire);
    // One record of what waits in plain. False breaks the connection.
    bool seal(OutputQueue& plain, Wire wire);
    void sayGoodbye(Wire wire);
    // Whether open() would find something without more input.
    bool hasInput() const;

    bool isResumed() const;
    // The name in the peer's certificate, where there is one; it has been verified.
    String_T<wchar_t> getPeerName() const;
    // Such as "TLS1.3-X.509-...".
    String_T<wchar_t> getDescription() const;
    const String_T<wchar_t>& getFault() const { return m_Fault; }

    Unknown::Handle_T<TlsContext> m_Context;
    // What a client wants to find in the server's certificate: the name or address that it connects to, unless the
    // host has set another.
    String_T<wchar_t> m_Host;
    String_T<wchar_t> m_SetHost;
    InputBuffer m_Input;
    // When the handshake began, and the bytes that it has taken.
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
    Wire* m_Wire = nullptr;
    std::string m_HostName;
    std::string m_SessionKey;
    // The session that a client hopes to resume, until the handshake is done.
    std::vector<unsigned char> m_Offered;
    String_T<wchar_t> m_Fault;
    bool m_IsDone = false;
    bool m_HasTicket = false;
    // What verify() has found is told to the peer by this alert; 0 for the usual one.
    int m_VerifyAlert = 0;
};

} // namespace zet::inner

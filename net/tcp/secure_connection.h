// The layer between connection and stream that encrypts what the stream sends and receives.
#pragma once

#include "net/tcp/connection.h"

#include <memory>

namespace zet
{

namespace inner
{
class TlsLayer;
}

// Passes bytes unchanged until it has a TLS context; then they go through TLS. The connection is connecting until the
// handshake is done, and output waits. A handshake that fails, or exceeds the time of the context, ends an outgoing
// connection as kConnectFailed and an accepted one as kBroken, and the log has the reason. An end without close_notify
// is kBroken.
class COMMONGROUND_API TcpSecureConnection : public TcpConnection
{
public:
    // Without a connection and without a TLS context.
    TcpSecureConnection();
    ~TcpSecureConnection() override;

    // After connect() this side is the TLS client, otherwise the TLS server. An accepting server with a context
    // replaces this one. Null turns TLS off. False while a connection is held, and in a library without TLS.
    bool setTlsContext(TlsContext* context);
    // The argument of the last setTlsContext(), or the context of the accepting server; null without TLS.
    TlsContext* getTlsContext() const;
    // The name or address that the server's certificate must contain, instead of the one passed to connect(); empty for
    // that one again.
    void setTlsHostName(const wchar_t* name);
    // Keeps the next connections plain until startTls(), for example to talk to a proxy first.
    void delayTls(bool isDelayed);
    // Starts the handshake on an established connection that was kept plain, with no unread input and no queued output.
    // The host replaces the one passed to connect(). True if it has started; isSecure(), or the end of the connection,
    // shows its result. False changes nothing.
    bool startTls(const wchar_t* host = nullptr);

    // Whether output is encrypted now: the handshake is done.
    bool isSecure() const;
    // Whether the session resumes an earlier one with the same peer.
    bool isResumed() const;
    // The common name in the peer's verified certificate, or its first host name; empty without a certificate.
    String_T<wchar_t> getVerifiedName() const;
    // Version and algorithms in use, for logs.
    String_T<wchar_t> getTlsDescription() const;

    void onTick(unsigned int tick) override;
    bool attach(unsigned int handle) override;
    unsigned int detach() override;
    // Sends close_notify if all output has left.
    void close() override;
    int receive(void* data, int size) override;

private:
    friend class inner::Crowd;
    friend class inner::PacketTick;
    friend class TcpStream;

    // onTick() without the events.
    void tickSecure(unsigned int tick);
    bool expect(const wchar_t* host, TlsContext* context) override;
    void flush() override;
    // Made when first used; null in a library without TLS.
    inner::TlsLayer* layer();
    bool beginTls();
    void secure();
    void shakeHands();
    // Called by the port for an accepted connection.
    void stepHandshake();
    void endLateHandshake();
    void endSecuring(bool isDone);
    unsigned int getHandshakeTime() const;
    void failHandshake(const String_T<wchar_t>& reason, EndCause cause);
    int fillInput(ConnectionState& end);
    void noteSecureInput();
    int breakTls(const String_T<wchar_t>& reason, EndCause cause);

    // Null if TLS was never used.
    std::unique_ptr<inner::TlsLayer> m_Tls;
};

} // namespace zet

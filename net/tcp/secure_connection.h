// The layer between the bare connection and the stream: what the stream sends and receives goes through it.
#pragma once

#include "net/tcp/connection.h"

#include <memory>

namespace zet
{

namespace inner
{
class TlsLayer;
}

// Passes bytes as they are until it has a TLS context; then they go through TLS. The connection is on its way up until
// the handshake is done, what is sent before waits. A handshake that fails, or takes longer than the context says, ends
// an outgoing connection with kConnectFailed and an accepted one with kBroken, and a log line says why. A peer that
// ends without a goodbye has been cut off: kBroken.
class COMMONGROUND_API TcpSecureConnection : public TcpConnection
{
public:
    TcpSecureConnection();
    ~TcpSecureConnection() override;

    // A connection made by connect() is TLS's client, any other one its server; a server that accepts it gives it its
    // own context, if it has one. Null takes TLS off. False while a connection is held, and in a library without TLS.
    bool setTlsContext(TlsContext* context);
    TlsContext* getTlsContext() const;
    // The name or address that the server's certificate must hold, in place of the one given to connect(); empty for
    // that again.
    void setTlsHostName(const wchar_t* name);
    // Keeps the next connections plain until startTls(): for who has to talk to a proxy first.
    void delayTls(bool isDelayed);
    // Begins the handshake on an established connection that was kept plain; nothing may wait to be read or sent. The
    // host takes the place of what connect() was given. True says that it has begun; isSecure(), or the connection's
    // end, says how it went. False changes nothing.
    bool startTls(const wchar_t* host = nullptr);

    // Whether what is sent now goes through TLS.
    bool isSecure() const;
    // Whether the present session goes on from an earlier one with the same peer.
    bool isResumed() const;
    // The common name in the peer's certificate, or its first host name; empty where the peer has shown none. What is
    // given here has been verified.
    String_T<wchar_t> getVerifiedName() const;
    // Version and algorithms in use, for logs.
    String_T<wchar_t> getTlsDescription() const;

    void onTick(unsigned int tick) override;
    bool attach(unsigned int handle) override;
    unsigned int detach() override;
    // Says goodbye to the peer where all that was sent has left.
    void close() override;
    int receive(void* data, int size) override;

protected:
    bool expect(const wchar_t* host, TlsContext* context) override;
    void flush() override;

private:
    friend class inner::Crowd;

    inner::TlsLayer& layer();
    bool beginTls();
    void secure();
    void shakeHands();
    // What the port does for an accepted connection, in its turn.
    void stepHandshake();
    void endLateHandshake();
    void endSecuring();
    void failHandshake(const String_T<wchar_t>& reason);
    int fillInput();
    int breakTls(const String_T<wchar_t>& reason);

    // Null where TLS was never asked for.
    std::unique_ptr<inner::TlsLayer> m_Tls;
};

} // namespace zet

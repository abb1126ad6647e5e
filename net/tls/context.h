// What this side of TLS connections shows to its peers, and whom it believes.
#pragma once

#include "framework/string.h"
#include "framework/unknown.h"

#include <memory>

namespace zet
{

namespace inner
{
class QuicTls;
class TlsLayer;
struct TlsStore;
} // namespace inner

// Shared by any number of servers and connections, of any threads. It is set up first, by one thread: the first
// connection that uses it fixes it, and what would change it then returns false. A renewed certificate comes with a new
// context, which new connections take; old ones keep theirs alive. Certificates and keys are PEM. Over TCP TLS is 1.3,
// or 1.2 where the peer knows no better.
//
// What a peer must bring: a cipher with authentication of its own (AEAD), no SHA-1 anywhere, a certificate with a key
// of 2,048 bits of RSA, or 256 of an elliptic curve, or more. A server's certificate names the host, or its address, in
// the subject alternative name; the common name does not count. An OCSP response that it staples is checked.
//
// Over UDP it is 1.3 alone, no session is resumed, and the port's own time for a connection to come up counts in place
// of the handshake's. A port by a context without a certificate makes one of its own, so that it can be a client.
class COMMONGROUND_API TlsContext : public virtual Unknown
{
public:
    // What a server wants of its clients.
    enum ClientCertificate
    {
        kNotAsked = 0,
        // A client without one is let in, one with a bad one is not.
        kAsked = 1,
        kRequired = 2
    };

    // Milliseconds from the standing connection to the end of the handshake, over TCP.
    static constexpr unsigned int kDefaultHandshakeTime = 10000;
    // Bytes that a peer may send for its handshake.
    static constexpr int kHandshakeInput = 128 * 1024;
    // Bytes of a file that is read here.
    static constexpr int kFileLimit = 16 * 1024 * 1024;
    // Peers whose last session is kept for the next connection.
    static constexpr int kKeptSessions = 1024;

    TlsContext();
    ~TlsContext() override;

    // False where the library was built without TLS; then nothing below succeeds.
    static bool isAvailable();

    // The certificate of this side, with those of its issuers behind it, and its private key without a password. A
    // server needs one; a client shows it where the server asks. One certificate a kind of key. False, with a log line
    // and nothing changed, where they are not to be read or do not belong together.
    bool setCertificate(const char* certificates, const char* key);
    bool setCertificateFiles(const wchar_t* certificates, const wchar_t* key);
    // Authorities whose word counts, beside those there are. A client needs some. False, with a log line, where none
    // was found.
    bool addTrust(const char* certificates);
    bool addTrustFile(const wchar_t* certificates);
    // The authorities that the operating system believes.
    bool addSystemTrust();
    // Lists of revoked certificates (CRL) of those authorities, beside those there are. A peer whose certificate is on
    // one is refused; where an authority's list is out of date, so are all its certificates. False, with a log line,
    // where none was found.
    bool addRevocations(const char* lists);
    bool addRevocationFile(const wchar_t* lists);
    // For servers. What is asked for is held against the authorities above, so there must be some.
    bool setClientCertificate(ClientCertificate wanted);
    // 1 to 2,147,483,647; for connections over TCP.
    bool setHandshakeTime(unsigned int milliseconds);

    bool hasCertificate() const;
    bool hasTrust() const;
    ClientCertificate getClientCertificate() const { return m_ClientCertificate; }
    unsigned int getHandshakeTime() const { return m_HandshakeTime; }
    // Whether it has what a server, or a client, needs; the log is told what it lacks.
    bool servesServer() const;
    bool servesClient() const;

    const wchar_t* getClassName() const override { return L"zet::TlsContext"; }

private:
    friend class inner::QuicTls;
    friend class inner::TlsLayer;

    bool isOpen() const;

    std::unique_ptr<inner::TlsStore> m_Store;
    ClientCertificate m_ClientCertificate = kNotAsked;
    unsigned int m_HandshakeTime = kDefaultHandshakeTime;
};

} // namespace zet

// What this side of TLS connections shows its peers, and which peers it trusts.
#pragma once

#include "framework/string.h"
#include "framework/unknown.h"

#include <memory>

namespace zet
{

namespace inner
{
class GnuTlsStore;
class TlsStore;
} // namespace inner

// Shared by any number of servers and connections. Certificates and keys are PEM. Over TCP the version is TLS 1.3, or
// 1.2 if the peer does not know 1.3.
//
// THREADS: one thread sets a context up; then any threads may use it. The first connection over TCP, or the first UDP
// port, that uses it fixes it: from then on each setter returns false, with a log line. Only reload() and the two
// functions after it change a context in use; any thread may call them.
//
// What a peer must have: a cipher with authentication of its own (AEAD), no SHA-1 anywhere, and a certificate with a
// key of at least 2,048 bits (RSA) or 256 bits (elliptic curves). A server's certificate must contain the host's name,
// or its address, in the subject alternative name; the common name does not count. A stapled OCSP response is checked.
//
// Over UDP the version is TLS 1.3 only, no session is resumed, and the port's own time limit for a connection replaces
// the handshake time. If the context of a port has no certificate, the port makes one, so that it can connect as a
// client.
class COMMONGROUND_API TlsContext : public virtual Unknown
{
public:
    // Whether a server requests certificates of its clients.
    enum ClientCertificate
    {
        kNotAsked = 0,
        // A client without a certificate is accepted, one with an invalid certificate is refused.
        kAsked = 1,
        kRequired = 2
    };

    // Milliseconds from the established TCP connection to the end of the handshake.
    static constexpr unsigned int kDefaultHandshakeTime = 10000;
    // Bytes that a peer may send in its handshake over TCP.
    static constexpr int kHandshakeInput = 128 * 1024;
    // Bytes of the largest file that the functions below read.
    static constexpr int kFileLimit = 16 * 1024 * 1024;
    // Servers of which a context keeps the last session, to resume it. Over TCP.
    static constexpr int kKeptSessions = 1024;

    // Without certificate and authorities. The first context, or UDP port, of a process loads the module zet_Secure
    // from the library's folder. If that or GnuTLS cannot be started, every operation fails, with a log line.
    TlsContext();
    ~TlsContext() override;

    // False if the library was built without TLS, or if its module cannot be loaded, which this tries; then every
    // function below fails.
    static bool isAvailable();

    // The certificate of this side, followed by those of its issuers, and its private key without a password. A server
    // needs one; a client shows it if the server requests it. A context holds one certificate per kind of key. False,
    // with a log line and nothing changed, if the texts or files are not valid or do not belong together. Texts end
    // with a zero.
    bool setCertificate(const char* certificates, const char* key);
    bool setCertificateFiles(const wchar_t* certificates, const wchar_t* key);
    // Adds certificates of trusted authorities. A client needs at least one. False, with a log line, if none was found.
    bool addTrust(const char* certificates);
    bool addTrustFile(const wchar_t* certificates);
    // Adds the authorities that the operating system trusts. False, with a log line, if there are none.
    bool addSystemTrust();
    // Adds lists of revoked certificates (CRL) of those authorities. A peer whose certificate is on a list is refused;
    // if the list of an authority is out of date, all peers with its certificates are refused. False, with a log line,
    // if none was found.
    bool addRevocations(const char* lists);
    bool addRevocationFile(const wchar_t* lists);
    // Loads everything again that the functions above were given: reads the files and the system's authorities anew.
    // Handshakes that begin later use it; existing connections keep what they have, and sessions from before are not
    // resumed by a server. False, with log lines that say why, and nothing changed, if a file cannot be read or is not
    // valid, or if a certificate of this side has expired or is not valid yet. Reads files on the calling thread.
    bool reload();
    // The same as reload(), with this pair instead of all pairs that the context has.
    bool replaceCertificate(const char* certificates, const char* key);
    bool replaceCertificateFiles(const wchar_t* certificates, const wchar_t* key);
    // For servers; the default is kNotAsked. Clients' certificates are verified against the authorities above: with
    // kAsked and kRequired a server needs some.
    bool setClientCertificate(ClientCertificate wanted);
    // Milliseconds, 1 to 2,147,483,647. Over TCP.
    bool setHandshakeTime(unsigned int milliseconds);

    // Whether a certificate, or an authority, was added.
    bool hasCertificate() const;
    bool hasTrust() const;
    // What setClientCertificate() was given.
    ClientCertificate getClientCertificate() const { return m_ClientCertificate; }
    // Milliseconds; kDefaultHandshakeTime at first.
    unsigned int getHandshakeTime() const { return m_HandshakeTime; }
    // Whether the context has what a server, or a client, needs. If not, a log line says what is missing.
    bool servesServer() const;
    bool servesClient() const;

    const wchar_t* getClassName() const override { return L"zet::TlsContext"; }

private:
    friend class inner::GnuTlsStore;

    // Whether TLS is available, and whether the setters may change the context. False with a log line.
    bool isUsable() const;
    bool isOpen() const;

    std::unique_ptr<inner::TlsStore> m_Store;
    ClientCertificate m_ClientCertificate = kNotAsked;
    unsigned int m_HandshakeTime = kDefaultHandshakeTime;
};

} // namespace zet

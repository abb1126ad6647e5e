// A TLS peer of another make: GnuTLS by itself over the bytes of a plain stream, with settings that ours never has.
#pragma once

#include "net/tcp/server.h"
#include "net/tcp/stream.h"
#include "tests/support/tls_certificates.h"

struct gnutls_session_int;
struct gnutls_certificate_credentials_st;

namespace test
{

struct TlsPeerWish
{
    bool m_IsClient = true;
    // Versions and algorithms, in GnuTLS's words.
    std::string m_Priority = "NORMAL";
    // Bytes that a record may have, both ways; 0 for the usual number.
    size_t m_RecordSize = 0;
    // What it shows; none where the chain is empty.
    Certificate m_Certificate;
    // A server: whether it asks for a certificate.
    bool m_Asks = false;
};

// It believes any certificate. The stream outlives it; who ticks the stream moves the peer by its operations.
class TlsPeer
{
public:
    TlsPeer(zet::TcpStream& stream, const TlsPeerWish& wish);
    ~TlsPeer();
    TlsPeer(const TlsPeer&) = delete;
    TlsPeer& operator=(const TlsPeer&) = delete;

    // One step; true once the handshake is done.
    bool shakeHands();
    bool isDone() const { return m_IsDone; }
    // Sends the bytes, as records of so many. False where the stream does not take them.
    bool send(const std::vector<unsigned char>& bytes, size_t recordSize = 16384);
    // Takes what has come. The bytes so far:
    const std::vector<unsigned char>& receive();
    // Number of the alert that ended the session; -1 for none.
    int alert() const { return m_Alert; }
    // Such as "AES-256-GCM".
    std::string cipher() const;
    // Bytes of the largest record that has come.
    size_t largestRecord() const { return m_LargestRecord; }

private:
    struct Calls;

    void note(long code);

    zet::TcpStream& m_Stream;
    gnutls_session_int* m_Session = nullptr;
    gnutls_certificate_credentials_st* m_Credentials = nullptr;
    std::vector<unsigned char> m_Received;
    size_t m_LargestRecord = 0;
    int m_Alert = -1;
    bool m_IsDone = false;
};

// Takes plain streams, for peers that are TLS's server.
class StreamServer : public zet::TcpServer
{
public:
    void onAccept() override
    {
        const zet::Unknown::Handle_T<zet::TcpStream> stream = new zet::TcpStream;
        if (accept(stream))
            m_Streams.push_back(stream);
    }
    void onTick(unsigned int tick) override
    {
        zet::TcpServer::onTick(tick);
        for (const auto& stream : m_Streams)
            stream->onTick(tick);
    }
    std::vector<zet::Unknown::Handle_T<zet::TcpStream>> m_Streams;
};

} // namespace test

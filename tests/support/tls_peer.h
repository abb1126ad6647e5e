// A TLS peer that uses GnuTLS directly over the bytes of a plain stream, with settings that the library never uses.
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
    // A GnuTLS priority string: versions and algorithms.
    std::string m_Priority = "NORMAL";
    // The maximum size of a record, both ways; 0 for the default.
    size_t m_RecordSize = 0;
    // Its certificate; none if the chain is empty.
    Certificate m_Certificate;
    // A server: whether it requests a certificate.
    bool m_Asks = false;
};

// Accepts any certificate. The stream must outlive it; ticking the stream does not run the peer, only its operations
// do.
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
    // Sends the bytes, in records of the given size. False if the stream refuses them.
    bool send(const std::vector<unsigned char>& bytes, size_t recordSize = 16384);
    // Receives available input. The bytes so far:
    const std::vector<unsigned char>& receive();
    // The alert that ended the session; -1 for none.
    int alert() const { return m_Alert; }
    // Such as "AES-256-GCM".
    std::string cipher() const;
    // The size of the largest record received.
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

// Accepts plain streams, for peers that are TLS servers.
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

// The client's end of a connection over UDP, by ngtcp2 alone: a peer of another make, who does what ours never do.
#pragma once

#include "tests/support/udp_road.h"

#include <gnutls/gnutls.h>
#include <ngtcp2/ngtcp2.h>
#include <ngtcp2/ngtcp2_crypto.h>

#include <deque>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace test
{

// By the test clock; it believes any certificate.
class QuicPeer
{
public:
    // Begins a connection to a port of the loopback.
    explicit QuicPeer(unsigned short server);
    ~QuicPeer();
    QuicPeer(const QuicPeer&) = delete;
    QuicPeer& operator=(const QuicPeer&) = delete;

    // Takes what has come and sends what is due.
    void step();
    // Both ends know that the handshake is over.
    bool isUp() const { return m_IsUp && !m_IsOver; }
    // Something has gone wrong, or the server has ended it.
    bool isOver() const { return m_IsOver; }
    // Goes on the connection's stream, whole.
    void send(const std::string& bytes) { m_Output.push_back(bytes); }
    // What has come on it and was not taken.
    const std::string& received() const { return m_Received; }
    std::string takeReceived() { return std::exchange(m_Received, std::string()); }

    // Leaves for another port, and there for another of the server's ids; the one of before is retired. False where
    // the server has given no other, or the last move is not done.
    bool move();
    // Has another port from now on without knowing it, as behind a router that forgot.
    void rebind();
    unsigned short getPort() const { return m_Places.back().m_Socket->getPort(); }

    // The server's id that packets name now, and those that were retired, the oldest first. Room for this many is taken
    // beforehand, so that a test can watch the memory that the rest takes.
    static constexpr size_t kRetiredIds = 1024;
    std::string getId() const;
    std::vector<std::string> getRetiredIds() const;
    // Ids of this end that the server has retired.
    int getReturnedIds() const { return m_ReturnedIds; }

private:
    struct Calls;
    // A socket, and the port that ngtcp2 takes it for.
    struct Place
    {
        std::unique_ptr<BareUdp> m_Socket;
        unsigned short m_Told;
    };

    Place& addPlace();
    void read(const Place& place);
    void write();
    void confirm(size_t size);
    void note(int result) { m_IsOver = m_IsOver || result != 0; }

    unsigned short m_Server;
    // The last one is in use; packets may still be under way to those before.
    std::deque<Place> m_Places;
    gnutls_certificate_credentials_t m_Credentials = nullptr;
    gnutls_session_t m_Session = nullptr;
    ngtcp2_conn* m_Connection = nullptr;
    ngtcp2_crypto_conn_ref m_Ref{};
    int64_t m_Stream = -1;
    // Until it is confirmed, as ngtcp2 may have to send it again; and where it goes on that is not under way yet.
    std::deque<std::string> m_Output;
    size_t m_NextPiece = 0;
    size_t m_NextByte = 0;
    // Bytes of the first piece, or more, that the server has confirmed.
    size_t m_Confirmed = 0;
    std::string m_Received;
    std::vector<ngtcp2_cid> m_RetiredIds;
    int m_ReturnedIds = 0;
    bool m_IsUp = false;
    bool m_IsOver = false;
};

} // namespace test

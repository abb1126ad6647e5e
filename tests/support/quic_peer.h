// One end of a connection over UDP, by ngtcp2 alone: a peer of another make, which does what ours never do.
#pragma once

#include "tests/support/udp_road.h"

#include <gnutls/gnutls.h>
#include <ngtcp2/ngtcp2.h>
#include <ngtcp2/ngtcp2_crypto.h>

#include <deque>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace test
{

struct Certificate;

// What a peer does differently.
struct QuicWish
{
    // Whether its TLS hello carries transport parameters; and a change of their bytes.
    bool m_HasParams = true;
    std::function<void(std::string& params)> m_ChangeParams;
    // Sees the first byte of each packet and its plain payload before that is sealed, and may change it; the size
    // stays, short of which the rest is padding.
    std::function<void(unsigned char first, std::string& payload)> m_ChangePayload;
    // Bytes that go as more of its TLS handshake, behind the last message.
    std::string m_BehindFinished;
    // A client's: does not wait for the server's word that the handshake is over before it sends.
    bool m_IsEager = false;
    // The datagrams of one step leave as one.
    bool m_IsJoining = false;
    // A server's: bytes of a token that it sends with its first answer, in a packet with a short head.
    size_t m_TokenSize = 0;
    // Where it sends from, an address of the loopback.
    unsigned int m_Address = 0x7F000001;
    // Of the ids that it gives itself.
    size_t m_IdSize = 16;
    std::string m_Priority = "NORMAL:-VERS-ALL:+VERS-TLS1.3:%DISABLE_TLS13_COMPAT_MODE";
};

// By the test clock; it believes any certificate.
class QuicPeer
{
public:
    // A client that begins a connection to a port of the loopback.
    explicit QuicPeer(unsigned short server, QuicWish wish = {});
    // A server for one connection, on a port of its own.
    explicit QuicPeer(const Certificate& certificate, QuicWish wish = {});
    ~QuicPeer();
    QuicPeer(const QuicPeer&) = delete;
    QuicPeer& operator=(const QuicPeer&) = delete;

    // Takes what has come and sends what is due.
    void step();
    // Both ends know that the handshake is over.
    bool isUp() const { return m_IsUp && !m_IsOver; }
    // Something has gone wrong, or the other end has ended it.
    bool isOver() const { return m_IsOver; }
    // The code with which the other end closed the connection; 0 where it did not.
    uint64_t getCloseCode() const;
    // That a client asked a server for; empty without one.
    const std::string& getServerName() const { return m_ServerName; }
    // Goes on the connection's stream, whole.
    void send(const std::string& bytes) { m_Output.push_back(bytes); }
    // Ends the stream behind what is sent.
    void finish() { m_IsFinishing = true; }
    // RESET_STREAM and STOP_SENDING.
    void reset();
    void stop();
    // What has come on it and was not taken.
    const std::string& received() const { return m_Received; }
    std::string takeReceived() { return std::exchange(m_Received, std::string()); }

    // Leaves for another port, and there for another of the server's ids; the one of before is retired. False where
    // the server has given no other, or the last move is not done.
    bool move();
    // Has another port from now on without knowing it, as behind a router that forgot; and the one of before again, if
    // there was one.
    void rebind();
    void rebindBack();
    unsigned short getPort() const { return m_Places.back().m_Socket->getPort(); }

    // The other end's id that packets name now, and those that were retired, the oldest first. Room for this many is
    // taken beforehand, so that a test can watch the memory that the rest takes.
    static constexpr size_t kRetiredIds = 1024;
    std::string getId() const;
    std::vector<std::string> getRetiredIds() const;
    // Ids of this end that the other one has retired.
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
    void openClient();
    bool openServer(const std::string& datagram, unsigned short client);
    void openSession(unsigned int flags);
    void read(const Place& place);
    void write();
    // The bytes of one datagram; none where nothing is due.
    std::string writeDatagram(unsigned short& from);
    void confirm(size_t size);
    void note(int result) { m_IsOver = m_IsOver || result != 0; }

    QuicWish m_Wish;
    bool m_IsServer = false;
    unsigned short m_Server;
    // The last one is in use; packets may still be under way to those before.
    std::deque<Place> m_Places;
    std::unique_ptr<BareUdp> m_PlaceBefore;
    gnutls_certificate_credentials_t m_Credentials = nullptr;
    gnutls_session_t m_Session = nullptr;
    ngtcp2_conn* m_Connection = nullptr;
    ngtcp2_crypto_conn_ref m_Ref{};
    int64_t m_Stream = -1;
    // Until it is confirmed, as ngtcp2 may have to send it again; and where it goes on that is not under way yet.
    std::deque<std::string> m_Output;
    size_t m_NextPiece = 0;
    size_t m_NextByte = 0;
    // Bytes of the first piece, or more, that the other end has confirmed.
    size_t m_Confirmed = 0;
    std::string m_Received;
    std::string m_ServerName;
    std::vector<ngtcp2_cid> m_RetiredIds;
    int m_ReturnedIds = 0;
    bool m_IsFinishing = false;
    bool m_IsDatagramFull = false;
    bool m_IsUp = false;
    bool m_IsOver = false;
};

} // namespace test

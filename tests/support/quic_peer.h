// One end of a connection over UDP that uses ngtcp2 directly: a peer that does what the library never does.
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

// How a peer differs.
struct QuicWish
{
    // Whether its TLS hello has transport parameters; and a change of their bytes.
    bool m_HasParams = true;
    std::function<void(std::string& params)> m_ChangeParams;
    // Gets the first byte of each packet and its payload before encryption, and may change it; the size stays, and the
    // rest is padding.
    std::function<void(unsigned char first, std::string& payload)> m_ChangePayload;
    // Bytes sent as more TLS handshake data, after the last message.
    std::string m_BehindFinished;
    // A client: sends before the server has confirmed the handshake.
    bool m_IsEager = false;
    // The datagrams of one step are sent as one.
    bool m_IsJoining = false;
    // A server: bytes of a token that it sends with its first reply, in a packet with a short header.
    size_t m_TokenSize = 0;
    // Its own address, on the loopback.
    unsigned int m_Address = 0x7F000001;
    // The length of its own ids.
    size_t m_IdSize = 16;
    std::string m_Priority = "NORMAL:-VERS-ALL:+VERS-TLS1.3:%DISABLE_TLS13_COMPAT_MODE";
};

// Uses the test clock and accepts any certificate.
class QuicPeer
{
public:
    // A client that connects to a port of the loopback.
    explicit QuicPeer(unsigned short server, QuicWish wish = {});
    // A server for one connection, on its own port.
    explicit QuicPeer(const Certificate& certificate, QuicWish wish = {});
    ~QuicPeer();
    QuicPeer(const QuicPeer&) = delete;
    QuicPeer& operator=(const QuicPeer&) = delete;

    // Receives and sends what is due.
    void step();
    // Whether the handshake is confirmed.
    bool isUp() const { return m_IsUp && !m_IsOver; }
    // Whether it failed, or the other end has closed it.
    bool isOver() const { return m_IsOver; }
    // The code with which the other end closed the connection, else 0.
    uint64_t getCloseCode() const;
    // The server name in a client's hello; empty without one.
    const std::string& getServerName() const { return m_ServerName; }
    // Sends the bytes on the connection's stream.
    void send(const std::string& bytes) { m_Output.push_back(bytes); }
    // Ends the stream after the sent data.
    void finish() { m_IsFinishing = true; }
    // RESET_STREAM and STOP_SENDING.
    void reset();
    void stop();
    // Received bytes not yet read.
    const std::string& received() const { return m_Received; }
    std::string takeReceived() { return std::exchange(m_Received, std::string()); }

    // Moves to another port and to another of the server's ids, and retires the previous id. False if the server has
    // announced no other, or the last move is not complete.
    bool move();
    // Changes the port without its knowledge, as by a NAT rebinding; and back to the previous port, if any.
    void rebind();
    void rebindBack();
    unsigned short getPort() const { return m_Places.back().m_Socket->getPort(); }

    // The other end's current id, and the retired ones, oldest first. Their space is reserved in advance, so that a
    // test can measure other memory.
    static constexpr size_t kRetiredIds = 1024;
    std::string getId() const;
    std::vector<std::string> getRetiredIds() const;
    // Ids of this end that the other end has retired.
    int getReturnedIds() const { return m_ReturnedIds; }

private:
    struct Calls;
    // A socket, and the port that ngtcp2 assumes for it.
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
    // The bytes of one datagram; empty if nothing is due.
    std::string writeDatagram(unsigned short& from);
    void confirm(size_t size);
    void note(int result) { m_IsOver = m_IsOver || result != 0; }

    QuicWish m_Wish;
    bool m_IsServer = false;
    unsigned short m_Server;
    // The last one is in use; packets to the earlier ones may still be in flight.
    std::deque<Place> m_Places;
    std::unique_ptr<BareUdp> m_PlaceBefore;
    gnutls_certificate_credentials_t m_Credentials = nullptr;
    gnutls_session_t m_Session = nullptr;
    ngtcp2_conn* m_Connection = nullptr;
    ngtcp2_crypto_conn_ref m_Ref{};
    int64_t m_Stream = -1;
    // Kept until acknowledged, as ngtcp2 may have to send it again; and the position of the first unsent byte.
    std::deque<std::string> m_Output;
    size_t m_NextPiece = 0;
    size_t m_NextByte = 0;
    // Bytes that the other end has acknowledged.
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

// One QUIC connection.
#pragma once

#include "net/quic/inner/frames.h"
#include "net/quic/inner/udp_port.h"
#include "net/quic/inner/udp_router.h"

#include <gnutls/gnutls.h>
#include <ngtcp2/ngtcp2.h>
#include <ngtcp2/ngtcp2_crypto.h>

#include <cstdint>
#include <limits>
#include <memory>
#include <vector>

namespace zet::inner
{

class QuicRouter;
struct TlsCredentials;

// Nanoseconds of a clock that starts with the port.
using QuicTime = ngtcp2_tstamp;
constexpr QuicTime kNever = std::numeric_limits<QuicTime>::max();

// A connection id of this side: random, so that others cannot guess it.
struct QuicId
{
    static constexpr size_t kSize = 16;

    explicit QuicId(const unsigned char* bytes) { std::memcpy(m_Words, bytes, kSize); }
    explicit QuicId(const ngtcp2_cid& id) : QuicId(id.data) {}
    friend bool operator==(const QuicId& a, const QuicId& b) { return std::memcmp(&a, &b, kSize) == 0; }

    struct Hash
    {
        size_t operator()(const QuicId& id) const { return static_cast<size_t>(id.m_Words[0]); }
    };

    uint64_t m_Words[2];
};

// The client opens stream 0, sends the 16 bytes of the id given to connect(), then what its object sends. The side that
// closes waits until everything is confirmed and then closes the connection, so the stream itself is never ended. A
// closed link remains for some time to repeat its close frame for late packets of a peer that has not received it.
class QuicLink final : public UdpLink
{
public:
    // Why this side closes; the code in the close frame.
    enum Code : uint64_t
    {
        kClosed = 0,
        // Not everything that was sent has arrived.
        kCutOff = 1
    };
    // What the next turn has to do.
    enum Pending : unsigned char
    {
        kTickOwner = 1,
        kWrite = 2
    };

    explicit QuicLink(QuicRouter& router) : m_Router(router) {}
    ~QuicLink() override;

    // The client's side: first beginClient(); then openClient(), or lookUp() if the name is not an address. After
    // lookUp() the link opens when the address is known.
    bool beginClient(const char* name, const Uuid& id);
    bool openClient(const Endpoint& peer);
    bool lookUp(Reactor& reactor, unsigned short port);
    // The router has moved to another reactor, which repeats the lookup.
    void lookUpAgain(Reactor& reactor);
    // For the first packet of a peer with a valid token. origin is the connection id that the peer's very first packet
    // named.
    bool openServer(const Endpoint& peer, const ngtcp2_pkt_hd& head, const ngtcp2_cid& origin);

    void consume(int size) override;
    bool send(const void* data, int size) override;
    void close() override;
    unsigned long long roundTripTime() const override;
    bool isAccepted() const override { return m_IsServer; }
    unsigned short ownPort() const override;
    // Packets with bytes of its stream that were declared lost; 0 once it has ended.
    unsigned long long lostPackets() const;
    void breakOff(EndCause cause) override { finish(UdpServer::UdpConnection::kBroken, kCutOff, cause); }

    void read(const UdpPort::Datagram& datagram);
    // Writes packets as far as congestion control, pacing and the port allow.
    void write();
    // The time of getExpiry() has been reached.
    void onExpiry();
    QuicTime getExpiry() const;
    // Ends the connection now: sends a close frame with the code, and keeps what the object has not read.
    void finish(UdpServer::UdpConnection::ConnectionState state, Code code, EndCause cause);
    // The pending connection has an object: the time limit for that ends.
    void onAccepted();
    void settle();

    bool isServer() const { return m_IsServer; }
    bool isOver() const { return !m_Connection && !m_Lookup; }
    // Over, released by its object, and its time to answer late packets has passed.
    bool isForgettable(QuicTime now) const { return isOver() && !m_Owner && m_Deadline <= now; }
    // The peer has sent its id: the connection is pending and may be accepted.
    bool isAnnounced() const { return m_IdRead == sizeof(Uuid); }
    bool isStanding() const { return m_IsStanding; }
    const Uuid& getId() const { return m_Id; }
    // The name given to connect().
    const String_T<char>& getName() const { return m_Name; }
    // The alert that a failed handshake sends to the peer; 0 for the one that GnuTLS chooses.
    void setAlert(uint8_t alert) { m_Alert = alert; }
    const Endpoint& getPeer() const { return m_Peer; }
    // The address that the peer's first packet came from.
    const Endpoint& getOrigin() const { return m_Origin; }
    void addId(const ngtcp2_cid& id) { m_Ids.emplace_back(id); }
    void removeId(const QuicId& id) { std::erase(m_Ids, id); }
    const std::vector<QuicId>& getIds() const { return m_Ids; }

    // The router's fields: work for the next turn, and the positions in its lists and its heap of timers.
    unsigned char m_Pending = 0;
    bool m_IsListed = false;
    size_t m_Place = 0;
    size_t m_TimerPlace = std::numeric_limits<size_t>::max();
    QuicTime m_Expiry = kNever;

private:
    friend struct QuicCalls;

    static Endpoint peerOf(const ngtcp2_path& path);
    bool open(gnutls_session_t session);
    void onFound(std::vector<Endpoint>&& found);
    void openNamed();
    void feed(const UdpPort::Datagram& datagram, size_t from, size_t size);
    void endRead(int result);
    void endByFault(int fault);
    void keepClosePacket(const ngtcp2_connection_close_error& reason);
    void drop(UdpServer::UdpConnection::ConnectionState state, EndCause cause);
    void dropSession();
    void wake(unsigned char pending);
    bool prepareStream();
    void endTurn(QuicTime now);
    size_t gather(ngtcp2_vec* pieces, size_t most);
    void advance(size_t size);

    // Called by QuicCalls. onStreamData() returns 0 or an error of ngtcp2.
    int onStreamData(const unsigned char* data, size_t size, bool isLast);
    void onConfirmed(size_t size);

    QuicRouter& m_Router;
    ngtcp2_conn* m_Connection = nullptr;
    // Set while the address is looked up, before there is a connection.
    std::shared_ptr<Lookup> m_Lookup;
    Endpoint m_Found;
    bool m_IsFound = false;
    // The TLS session; null after the handshake.
    gnutls_session_t m_Session = nullptr;
    // Those of the session.
    std::shared_ptr<const TlsCredentials> m_Credentials;
    ngtcp2_crypto_conn_ref m_Ref{};
    String_T<char> m_Name;
    Endpoint m_Peer;
    Endpoint m_Origin;
    // The local address that the peer sends to. On the client's side the operating system chooses it, also anew.
    Endpoint m_Local;
    Uuid m_Id;
    size_t m_IdRead = 0;
    std::vector<QuicId> m_Ids;
    QuicFrames m_Frames;
    std::vector<unsigned char> m_ClosePacket;
    unsigned int m_LatePackets = 0;
    int64_t m_Stream = -1;
    // Where the unsent output begins: block and offset; null for the start of the queue.
    Block* m_NextBlock = nullptr;
    int m_NextByte = 0;
    size_t m_UnderWay = 0;
    QuicTime m_Deadline = kNever;
    uint8_t m_Alert = 0;
    bool m_IsServer = false;
    bool m_IsStanding = false;
    bool m_IsLingering = false;
    bool m_IsFull = false;
    // The peer has ended the stream, or has reset it.
    bool m_IsPeerDone = false;
    bool m_IsCut = false;
    // On a client: the last packet of its handshake has been sent.
    bool m_IsHandshakeSent = false;
};

} // namespace zet::inner

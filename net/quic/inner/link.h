// One connection by QUIC.
#pragma once

#include "net/quic/inner/frames.h"
#include "net/quic/inner/udp_port.h"
#include "net/quic/inner/udp_router.h"

#include <gnutls/gnutls.h>
#include <ngtcp2/ngtcp2.h>
#include <ngtcp2/ngtcp2_crypto.h>

#include <cstdint>
#include <limits>
#include <vector>

namespace zet::inner
{

class QuicRouter;

// Nanoseconds of a clock that starts with the port.
using QuicTime = ngtcp2_tstamp;
constexpr QuicTime kNever = std::numeric_limits<QuicTime>::max();

// A connection id of ours: random, so that nobody else can name a connection.
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

// The client opens stream 0 and sends the id that connect() was given, 16 bytes, and then what its object sends. The
// side that closes waits until all that it sent is confirmed and then closes the connection, so the stream itself has
// no end. Of a connection that is over there remains what answers the peer's late packets, for as long as he may
// believe in it.
class QuicLink final : public UdpLink
{
public:
    // Why this side closes, as the peer is told.
    enum Code : uint64_t
    {
        kClosed = 0,
        // Not all that was sent has arrived.
        kCutOff = 1
    };
    // What its next turn has to do.
    enum Pending : unsigned char
    {
        kTickOwner = 1,
        kWrite = 2
    };

    explicit QuicLink(QuicRouter& router) : m_Router(router) {}
    ~QuicLink() override;

    // The client's side: first beginClient(), then openClient(), or lookUp() where the name is not an address. Then the
    // link opens when the address is there.
    bool beginClient(const char* name, const Uuid& id);
    bool openClient(const Endpoint& peer);
    bool lookUp(Reactor& reactor, unsigned short port);
    // The router has another reactor now, which gives the answer.
    void lookUpAgain(Reactor& reactor);
    // By the first packet of a visitor whose token was good; origin is the id that his very first one named.
    bool openServer(const Endpoint& peer, const ngtcp2_pkt_hd& head, const ngtcp2_cid& origin);

    void consume(int size) override;
    bool send(const void* data, int size) override;
    void close() override;
    void breakOff() override { finish(UdpServer::UdpConnection::kBroken, kCutOff); }

    void read(const UdpPort::Datagram& datagram);
    // Fills packets with what waits, as far as congestion, pacing and the port allow.
    void write();
    // Something is due.
    void onExpiry();
    QuicTime getExpiry() const;
    // Ends it now: tells the peer, where a code is given, and keeps what the object has not read yet.
    void finish(UdpServer::UdpConnection::ConnectionState state, Code code);
    // A visitor has an object now, and all the time he wants.
    void onAccepted();
    void settle();

    bool isServer() const { return m_IsServer; }
    bool isOver() const { return !m_Connection && !m_Lookup; }
    // Over, and nobody needs what remains.
    bool isForgettable(QuicTime now) const { return isOver() && !m_Owner && m_Deadline <= now; }
    // A visitor has told his id and may be accepted.
    bool isAnnounced() const { return m_IdRead == sizeof(Uuid); }
    bool isStanding() const { return m_IsStanding; }
    const Uuid& getId() const { return m_Id; }
    // That connect() was given.
    const String_T<char>& getName() const { return m_Name; }
    // A failed handshake tells the peer this alert; 0 for the one that GnuTLS chooses.
    void setAlert(uint8_t alert) { m_Alert = alert; }
    const Endpoint& getPeer() const { return m_Peer; }
    // Where the peer was when it came.
    const Endpoint& getOrigin() const { return m_Origin; }
    void addId(const ngtcp2_cid& id) { m_Ids.emplace_back(id); }
    void removeId(const QuicId& id) { std::erase(m_Ids, id); }
    const std::vector<QuicId>& getIds() const { return m_Ids; }

    // The router's notes: its place among those with a turn, among all, and among the timers.
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
    void keepFarewell(const ngtcp2_connection_close_error& reason);
    void drop(UdpServer::UdpConnection::ConnectionState state);
    void dropSession();
    void wake(unsigned char pending);
    bool prepareStream();
    size_t gather(ngtcp2_vec* pieces, size_t most);
    void advance(size_t size);

    // What ngtcp2 calls; 0, or a fault.
    int onStreamData(const unsigned char* data, size_t size, bool isLast);
    void onConfirmed(size_t size);

    QuicRouter& m_Router;
    ngtcp2_conn* m_Connection = nullptr;
    // While the address is looked up, before there is a connection.
    std::shared_ptr<Lookup> m_Lookup;
    Endpoint m_Found;
    bool m_IsFound = false;
    // The TLS session, as long as the handshake lasts.
    gnutls_session_t m_Session = nullptr;
    ngtcp2_crypto_conn_ref m_Ref{};
    String_T<char> m_Name;
    Endpoint m_Peer;
    Endpoint m_Origin;
    // The address of ours that the peer speaks to; for the client's side the system chooses, also anew.
    Endpoint m_Local;
    Uuid m_Id;
    size_t m_IdRead = 0;
    std::vector<QuicId> m_Ids;
    QuicFrames m_Frames;
    std::vector<unsigned char> m_Farewell;
    unsigned int m_LatePackets = 0;
    int64_t m_Stream = -1;
    // Where the output goes on that is not under way yet; null for the front of the queue.
    Block* m_NextBlock = nullptr;
    int m_NextByte = 0;
    size_t m_UnderWay = 0;
    QuicTime m_Deadline = kNever;
    uint8_t m_Alert = 0;
    bool m_IsServer = false;
    bool m_IsStanding = false;
    bool m_IsLingering = false;
    bool m_IsFull = false;
    // The peer has ended the stream; or has cut it off.
    bool m_IsPeerDone = false;
    bool m_IsCut = false;
    // A client's: all that it has to say in the handshake has left.
    bool m_IsHandshakeSent = false;
};

} // namespace zet::inner

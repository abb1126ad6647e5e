// A UDP port with QUIC connections.
#pragma once

#include "net/inner/address_counts.h"
#include "net/quic/inner/link.h"
#include "net/quic/inner/tls.h"

#include <deque>
#include <unordered_map>

namespace zet::inner
{

// Finds the connection of each packet, manages the timers, and runs a turn of each connection that has something to do.
// Idle connections take no time.
class QuicRouter final : public UdpRouter, public std::enable_shared_from_this<QuicRouter>
{
public:
    QuicRouter(UdpServer& server, const std::shared_ptr<Reactor>& reactor, const Ref<UdpPort>& port);
    ~QuicRouter() override;

    bool init();

    unsigned short getPort() const override;
    unsigned int getHandle() const override { return m_Port->getHandle(); }
    int getConnectionCount() const override { return m_Count; }
    const UdpServer::Traffic& getTraffic() const override { return m_Traffic; }
    unsigned long long getLostPackets() const override;
    bool join(const std::shared_ptr<Reactor>& reactor) override;
    void tick() override;
    void endTick() override;
    EndCause connect(UdpServer::UdpConnection& connection, const wchar_t* ip, unsigned short port,
                     const Uuid& id) override;
    bool hasVisitor() const override { return !m_Visitors.empty(); }
    Uuid getVisitorId() const override { return m_Visitors.empty() ? Uuid() : m_Visitors.front()->getId(); }
    Endpoint getVisitorAddress() const override { return m_Visitors.front()->getPeer(); }
    bool give(UdpServer::UdpConnection& connection) override;
    bool sendUserData(const Endpoint& peer, const void* data, int size) override;
    void deliver(const Endpoint& peer, const void* data, int size) override;
    void noteDropped() override { ++m_Traffic.m_DatagramsDropped; }
    void close() override;
    unsigned int detach() override;

    // For its links.
    QuicTime now();
    QuicTls& tls() { return m_Tls; }
    BlockPool& pool() { return m_Reactor->pool(); }
    // REQUIRES: isOpen().
    const UdpServer::Settings& settings() const { return m_Server->getSettings(); }
    const NetLimits& limits() const { return m_Server->getLimits(); }
    const Endpoint& getAddress() const { return m_Port->getAddress(); }
    // False once close() or detach() has begun.
    bool isOpen() const { return m_Server != nullptr; }
    // Schedules a turn of the link, in this tick or the next.
    void wake(QuicLink& link, unsigned char pending);
    void schedule(QuicLink& link);
    // Makes a new id by which packets find the link. False if no random bytes are available.
    bool makeId(QuicLink& link, ngtcp2_cid& id);
    void addId(QuicLink& link, const ngtcp2_cid& id);
    void removeId(QuicLink& link, const ngtcp2_cid& id);
    // announce(): the peer's id is known, so the connection is pending. onOver(): the connection has ended.
    void announce(QuicLink& link) { m_Visitors.push_back(&link); }
    void onOver(QuicLink& link);
    // A peer has completed its handshake.
    void countHandshake() { ++m_Server->m_Accepts.m_Handshakes; }
    // The connection, which ends, has lost this number of packets.
    void addLost(unsigned long long packets) { m_Lost += packets; }
    // Whether one more ended link may remain to answer late packets: at most m_ConnectionLimit or, if greater, kRemains
    // do.
    bool hasSpaceForClosed() const;
    // Space for a packet; null if the port is blocked. post() sends the bytes written there.
    unsigned char* room() { return m_Port->room(); }
    void post(const Endpoint& peer, size_t size, const Endpoint& local);

private:
    // Calls code that a host has written. False if it threw; the exception is logged and not passed on.
    template <class Call>
    static bool guard(Call call);
    // Opens a new link by this call. A link whose call fails or runs out of memory is destroyed.
    template <class Call>
    bool open(QuicLink& link, Call call)
    {
        try
        {
            if (call())
                return true;
        }
        catch (const std::bad_alloc&)
        {
        }
        forget(link);
        return false;
    }
    void giveUserData(const UdpPort::Datagram& datagram);
    void receive();
    void count(const UdpPort::Datagram& datagram);
    // These three return false if a packet with a valid token would start a handshake and this tick may start no
    // further one. Nothing has changed then, and the datagram can be routed again.
    bool route(const UdpPort::Datagram& datagram);
    bool routeLong(const UdpPort::Datagram& datagram);
    bool greet(const UdpPort::Datagram& datagram);
    void sendRetry(const UdpPort::Datagram& datagram, const ngtcp2_pkt_hd& head);
    void refuse(const UdpPort::Datagram& datagram, const ngtcp2_pkt_hd& head);
    void admit(const UdpPort::Datagram& datagram, const ngtcp2_pkt_hd& head, const ngtcp2_cid& origin);
    void sendVersions(const UdpPort::Datagram& datagram);
    // Whether this tick may start one more handshake.
    bool mayAdmit() const;
    // Whether the limits allow one more connection from this address.
    bool hasRoomFor(const Endpoint& from) const;
    void runTimers();
    void callVisitors();
    void takeTurns();
    void turn(QuicLink& link);
    void list(QuicLink& link);
    void writeListed();
    void hurry();
    void hurryForTimers();
    QuicLink* find(const unsigned char* id) const;
    QuicLink& keep(std::unique_ptr<QuicLink> link);
    void forget(QuicLink& link);
    void finishAll();
    void tellOwners(UdpServer& server);
    void sift(size_t place);
    void put(size_t place, QuicLink* link);
    void removeTimer(QuicLink& link);

    UdpServer* m_Server;
    // Declared before the port, which refers to it: destroyed after it.
    std::shared_ptr<Reactor> m_Reactor;
    Ref<UdpPort> m_Port;
    QuicTls m_Tls;
    unsigned char m_Secret[32];
    UdpServer::Traffic m_Traffic;
    // Packets that ended connections have lost.
    unsigned long long m_Lost = 0;
    QuicTime m_Now;
    // The value of getNanoseconds() at the last call of now().
    unsigned long long m_LastTime;
    // The value of m_Now up to which the timers have run.
    QuicTime m_TimersRun = 0;
    std::vector<std::unique_ptr<QuicLink>> m_Links;
    // The links after close() or detach(), since one of them may be in its turn.
    std::vector<std::unique_ptr<QuicLink>> m_Closed;
    std::unordered_map<QuicId, QuicLink*, QuicId::Hash> m_ByName;
    // A heap, the earliest first.
    std::vector<QuicLink*> m_Timers;
    // m_Round: the links that have a turn in this round; those from m_TurnAt on have not had it yet. m_Listed: the
    // links of the next round. The entry of a destroyed link is null.
    std::vector<QuicLink*> m_Round;
    size_t m_TurnAt = 0;
    std::vector<QuicLink*> m_Listed;
    // The part of m_Listed that writeListed() is processing.
    std::vector<QuicLink*> m_Writing;
    std::deque<QuicLink*> m_Visitors;
    int m_Count = 0;
    int m_VisitorCount = 0;
    // Connections from peers, by their address and subnet.
    AddressCounts m_Addresses;
    // Counts of the work of this tick for new peers; receive() and its helpers bound each one.
    int m_Greetings = 0;
    int m_TokenChecks = 0;
    int m_VersionAnswers = 0;
    int m_Admissions = 0;
    unsigned int m_ReceiveBegin = 0;
    bool m_IsTicking = false;
    bool m_IsLate = false;
};

} // namespace zet::inner

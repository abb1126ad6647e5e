// A UDP port whose connections are QUIC.
#pragma once

#include "net/inner/address_counts.h"
#include "net/quic/inner/link.h"
#include "net/quic/inner/tls.h"

#include <deque>
#include <unordered_map>

namespace zet::inner
{

// Finds the connection of each packet, keeps the timers, and gives those connections their turn that have something
// to do. A connection with nothing to do is not looked at.
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
    bool join(const std::shared_ptr<Reactor>& reactor) override;
    void tick() override;
    void endTick() override;
    bool connect(UdpServer::UdpConnection& connection, const wchar_t* ip, unsigned short port, const Uuid& id) override;
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
    // Only while it is open.
    const UdpServer::Settings& settings() const { return m_Server->getSettings(); }
    const NetLimits& limits() const { return m_Server->getLimits(); }
    const Endpoint& getAddress() const { return m_Port->getAddress(); }
    // False once close() has begun.
    bool isOpen() const { return m_Server != nullptr; }
    // Gives the link a turn, in this tick or the next.
    void wake(QuicLink& link, unsigned char pending);
    void schedule(QuicLink& link);
    // A new id of ours by which packets find the link. False where there are no random bytes.
    bool makeId(QuicLink& link, ngtcp2_cid& id);
    void addId(QuicLink& link, const ngtcp2_cid& id);
    void removeId(QuicLink& link, const ngtcp2_cid& id);
    // A visitor's id is known; a connection is over.
    void announce(QuicLink& link) { m_Visitors.push_back(&link); }
    void onOver(QuicLink& link);
    // Whether one more that is over may stay for long: no more of those than visitors may be, or kRemains.
    bool hasRoomForRemains() const;
    // Room for a packet, and its way out.
    unsigned char* room() { return m_Port->room(); }
    void post(const Endpoint& peer, size_t size, const Endpoint& local);

private:
    // Calls what a host has written; what it throws is logged and goes no further. False where it has thrown.
    template <class Call>
    static bool guard(Call call);
    // Whether a new link opens by this call. One that does not, or has no memory to, is forgotten.
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
    // These three are false for a first packet with a good token when this tick begins no further handshake. It has
    // changed nothing then, and can be routed again.
    bool route(const UdpPort::Datagram& datagram);
    bool routeLong(const UdpPort::Datagram& datagram);
    bool greet(const UdpPort::Datagram& datagram);
    void sendRetry(const UdpPort::Datagram& datagram, const ngtcp2_pkt_hd& head);
    void refuse(const UdpPort::Datagram& datagram, const ngtcp2_pkt_hd& head);
    void admit(const UdpPort::Datagram& datagram, const ngtcp2_pkt_hd& head, const ngtcp2_cid& origin);
    void sendVersions(const UdpPort::Datagram& datagram);
    // Whether this tick begins one more handshake.
    bool mayAdmit() const;
    // Whether one more visitor may come from there.
    bool hasRoomFor(const Endpoint& from) const;
    void runTimers();
    void callVisitors();
    void takeTurns();
    void turn(QuicLink& link);
    void list(QuicLink& link);
    void writeListed();
    void hurry();
    QuicLink* find(const unsigned char* id) const;
    QuicLink& keep(std::unique_ptr<QuicLink> link);
    void forget(QuicLink& link);
    void finishAll();
    void tellOwners(UdpServer& server);
    void sift(size_t place);
    void put(size_t place, QuicLink* link);
    void removeTimer(QuicLink& link);

    UdpServer* m_Server;
    // Before the port: the socket lies in the reactor.
    std::shared_ptr<Reactor> m_Reactor;
    Ref<UdpPort> m_Port;
    QuicTls m_Tls;
    unsigned char m_Secret[32];
    UdpServer::Traffic m_Traffic;
    QuicTime m_Now;
    unsigned int m_LastTick;
    std::vector<std::unique_ptr<QuicLink>> m_Links;
    // After close(): a link may be in the middle of its turn.
    std::vector<std::unique_ptr<QuicLink>> m_Closed;
    std::unordered_map<QuicId, QuicLink*, QuicId::Hash> m_ByName;
    // A heap, the earliest first.
    std::vector<QuicLink*> m_Timers;
    // Those with a turn in this round, from m_TurnAt on, and those of the next one. Who is forgotten leaves null.
    std::vector<QuicLink*> m_Round;
    size_t m_TurnAt = 0;
    std::vector<QuicLink*> m_Listed;
    // Those of m_Listed that writeListed() is at.
    std::vector<QuicLink*> m_Writing;
    std::deque<QuicLink*> m_Visitors;
    int m_Count = 0;
    int m_VisitorCount = 0;
    // Visitors that there are, by the addresses and the subnets that they came from.
    AddressCounts m_Addresses;
    // What this tick has done for visitors.
    int m_Greetings = 0;
    int m_TokenChecks = 0;
    int m_VersionAnswers = 0;
    int m_Admissions = 0;
    unsigned int m_ReceiveBegin = 0;
    bool m_IsTicking = false;
    bool m_IsLate = false;
};

} // namespace zet::inner

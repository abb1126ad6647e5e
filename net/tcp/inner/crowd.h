// The connections of one listening port together: their number, their addresses, the bytes they hold, the order of
// their handshakes and their deadlines.
#pragma once

#include "net/accept_counts.h"
#include "net/inner/address_counts.h"
#include "net/inner/counted.h"
#include "net/inner/end_counts.h"
#include "net/limits.h"

#include <deque>
#include <memory>
#include <vector>

namespace zet
{
class TcpConnection;
class TcpSecureConnection;
} // namespace zet

namespace zet::inner
{

class Crowd;
struct TcpLink;

// The crowd and its limits at one time, for the connections that were accepted at that time.
struct Terms final : Counted<Terms>
{
    Terms(std::shared_ptr<Crowd> crowd, const NetLimits& limits) : m_Crowd(std::move(crowd)), m_Limits(limits) {}
    ~Terms();

    const std::shared_ptr<Crowd> m_Crowd;
    const NetLimits m_Limits;
};

// The entry of one connection in the crowd: a base of its link, which the lists of the crowd hold. While the connection
// is in the crowd it holds the crowd, and the limits that applied when it was accepted. The operations, except isIn(),
// require that it is.
class Seat
{
public:
    bool isIn() const { return static_cast<bool>(m_Terms); }
    const NetLimits& limits() const { return m_Terms->m_Limits; }
    // Removes the connection from the crowd, which admitted it with this peer: it has ended, or belongs to the host
    // alone from now on.
    void leave(const Endpoint& peer);
    // The same place in the crowd for another link of the connection, which is in no crowd.
    void moveTo(TcpLink& link);

    // Sets the bytes that the connection holds. False if the sum of the port is above its limit and this connection
    // holds more than an equal share of the limit.
    bool holdInput(size_t bytes);
    bool holdOutput(size_t bytes);

    // Starts the deadline of a handshake of the owner, a TcpSecureConnection: this time in milliseconds from now.
    void beginHandshake(unsigned int time);
    // Queues a step of the handshake, which has input. False if one is queued already. REQUIRES: isTimed().
    bool waitForStep();
    // Counts it as completed or as failed. Does nothing if none is under way.
    void endHandshake(bool isDone);
    // Whether the port keeps the deadlines of this connection and runs its handshake.
    bool isTimed() const { return m_IsTimed; }
    // The connection was accepted, or input was received from its peer.
    void noteInput();
    // The connection has ended by this cause.
    void countEnd(EndCause cause);
    // A packet above the connection's rate was refused.
    void countRefused();

protected:
    Seat() = default;
    ~Seat() = default;
    Seat(const Seat&) = default;
    Seat& operator=(const Seat&) = default;

private:
    friend class Crowd;

    Crowd& crowd() const { return *m_Terms->m_Crowd; }
    TcpLink& link();
    const TcpLink& link() const { return const_cast<Seat*>(this)->link(); }
    // The next deadline of the connection; false if it has none.
    bool getDeadline(unsigned int& moment) const;
    // The connection whose handshake is under way, or null.
    TcpSecureConnection* getSecuring() const;

    Ref<Terms> m_Terms;
    size_t m_Output = 0;
    // The capacity of an input buffer.
    unsigned int m_Input = 0;
    unsigned int m_HandshakeBy = 0;
    unsigned int m_LastInput = 0;
    bool m_IsWaiting = false;
    bool m_IsTimed = false;
    bool m_IsSecuring = false;
};

// Belongs to the server's thread, as do its seats.
class Crowd final : public std::enable_shared_from_this<Crowd>
{
public:
    Crowd();
    ~Crowd();
    Crowd(const Crowd&) = delete;
    Crowd& operator=(const Crowd&) = delete;

    void setLimits(const NetLimits& limits);
    const NetLimits& limits() const { return m_Limits; }

    // Whether the limits allow one more connection from this address.
    bool hasSpace(const Endpoint& peer) const;
    // Throws std::bad_alloc and changes nothing then.
    void admit(TcpLink& link, const Endpoint& peer);
    // Counts a connection that the limits refused, by limit. The first is logged at once, then their numbers once a
    // minute at most.
    void noteRefused(const Endpoint& peer);

    // The ends of the port's connections, and the connections that it refused, by cause.
    EndCounts& ends() { return m_Ends; }
    // The connections that it accepted, and their handshakes.
    AcceptCounts& accepts() { return m_Accepts; }
    unsigned long long getRefusedPackets() const { return m_RefusedPackets; }

    // Sets whether the port calls serve().
    void setServed(bool isServed);
    // Runs steps of handshakes within the limits, and ends the connections whose deadline has passed. True if steps are
    // left.
    bool serve();
    bool hasDeadlines() const { return !m_Deadlines.empty(); }
    // The time of the next one. REQUIRES: hasDeadlines().
    unsigned int getNextDeadline() const;

private:
    friend class Seat;
    friend struct Terms;

    struct Deadline;
    // By the limit that was reached.
    struct Refused
    {
        unsigned int m_InAll = 0;
        unsigned int m_OfAddress = 0;
        unsigned int m_OfSubnet = 0;
    };

    bool hasSpaceInAll() const;
    static Seat& seatOf(const Ref<TcpLink>& link);
    static bool isLater(const Deadline& a, const Deadline& b);
    void replace(TcpLink& link, TcpLink& by);
    bool isFair(size_t bytes, size_t sum, size_t limit) const;
    void remove(Seat& seat, const Endpoint& peer);
    void watch(Seat& seat);
    void takeSteps();
    void endLate();

    NetLimits m_Limits;
    // Those of the present limits; null while no seat has them.
    Terms* m_Terms = nullptr;
    EndCounts m_Ends;
    AcceptCounts m_Accepts;
    unsigned long long m_RefusedPackets = 0;
    AddressCounts m_Addresses;
    int m_Count = 0;
    size_t m_Input = 0;
    size_t m_Output = 0;
    std::deque<Ref<TcpLink>> m_Steps;
    // A heap, the earliest first. Entries of ended connections stay until there are many of them or their time is
    // reached.
    std::vector<Deadline> m_Deadlines;
    size_t m_Stale = 0;
    bool m_IsServed = false;
    // Refused connections since the last log line, and its time.
    Refused m_Refused;
    unsigned int m_RefusedLogged = 0;
    bool m_HasLogged = false;
};

} // namespace zet::inner

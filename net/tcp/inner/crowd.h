// The connections of one listening port together: their number, their addresses, the bytes they hold, the order of
// their handshakes and their deadlines.
#pragma once

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

// The entry of one connection in the crowd. Its link holds it, and so do the lists of the crowd that contain it. It
// holds the crowd, and the limits that applied when the connection was accepted.
class Seat final : public Counted<Seat>
{
public:
    Seat(std::shared_ptr<Crowd> crowd, const Endpoint& peer);

    const NetLimits& limits() const { return m_Limits; }
    // The connection has been accepted, and its time without input begins.
    void setOwner(TcpConnection* owner);
    // Removes the connection from the crowd: it has ended, or belongs to the host alone from now on.
    void leave();

    // Sets the bytes that the connection holds. False if the sum of the port is above its limit and this connection
    // holds more than an equal share of the limit.
    bool holdInput(size_t bytes);
    bool holdOutput(size_t bytes);

    // Starts the deadline of a handshake: this time in milliseconds from now.
    void beginHandshake(TcpSecureConnection& connection, unsigned int time);
    // Queues a step of the handshake, which has input. False if one is queued already. REQUIRES: isTimed().
    bool waitForStep();
    void endHandshake();
    // Whether the port keeps the deadlines of this connection and runs its handshake.
    bool isTimed() const { return m_IsTimed; }
    // Input was received from the peer.
    void noteInput();
    // The connection has ended by this cause.
    void countEnd(EndCause cause);

private:
    friend class Crowd;

    // The next deadline of the connection; false if it has none.
    bool getDeadline(unsigned int& moment) const;

    const std::shared_ptr<Crowd> m_Crowd;
    const NetLimits m_Limits;
    const Endpoint m_Peer;
    TcpConnection* m_Owner = nullptr;
    TcpSecureConnection* m_Securing = nullptr;
    size_t m_Input = 0;
    size_t m_Output = 0;
    unsigned int m_HandshakeBy = 0;
    unsigned int m_LastInput = 0;
    bool m_IsIn = true;
    bool m_IsWaiting = false;
    bool m_IsTimed = false;
};

// Belongs to the server's thread, as do its seats.
class Crowd final : public std::enable_shared_from_this<Crowd>
{
public:
    void setLimits(const NetLimits& limits);
    const NetLimits& limits() const { return m_Limits; }

    // Whether the limits allow one more connection from this address.
    bool hasSpace(const Endpoint& peer) const;
    Ref<Seat> admit(const Endpoint& peer);
    // Counts a connection that the limits refused. The first is logged at once, then their number once a minute at
    // most.
    void noteRefused();

    // The ends of the port's connections, and the connections that it refused, by cause.
    EndCounts& ends() { return m_Ends; }

    // Sets whether the port calls serve().
    void setServed(bool isServed);
    // Runs steps of handshakes within the limits, and ends the connections whose deadline has passed. True if steps are
    // left.
    bool serve();

private:
    friend class Seat;

    struct Deadline
    {
        unsigned int m_Moment;
        Ref<Seat> m_Seat;
    };

    static bool isLater(const Deadline& a, const Deadline& b);
    bool isFair(size_t bytes, size_t sum, size_t limit) const;
    void remove(Seat& seat);
    void watch(Seat& seat);
    void takeSteps();
    void endLate();

    NetLimits m_Limits;
    EndCounts m_Ends;
    AddressCounts m_Addresses;
    int m_Count = 0;
    size_t m_Input = 0;
    size_t m_Output = 0;
    std::deque<Ref<Seat>> m_Steps;
    // A heap, the earliest first. Entries of ended connections stay until there are many of them or their time is
    // reached.
    std::vector<Deadline> m_Deadlines;
    size_t m_Stale = 0;
    bool m_IsServed = false;
    unsigned int m_Refused = 0;
    // The time of the last log line on refused connections.
    unsigned int m_RefusedLogged = 0;
    bool m_HasLogged = false;
};

} // namespace zet::inner

// The connections of one listening port together: how many there are, from where, what they hold, whose handshake is
// next and whose time is up.
#pragma once

#include "net/inner/address_counts.h"
#include "net/inner/counted.h"
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

// One connection's place among the others. Its link holds it, and the crowd's lists while it stands in them. It keeps
// the crowd, and the limits that were in force when it came.
class Seat final : public Counted<Seat>
{
public:
    Seat(std::shared_ptr<Crowd> crowd, const Endpoint& peer);

    const NetLimits& limits() const { return m_Limits; }
    // The connection is taken on, and its time without input begins.
    void setOwner(TcpConnection* owner);
    // The connection has ended, or is the host's own from now on.
    void leave();

    // What the connection holds now, in bytes. False where that is too much for the port.
    bool holdInput(size_t bytes);
    bool holdOutput(size_t bytes);

    // A handshake of the connection begins, and may take so many milliseconds.
    void beginHandshake(TcpSecureConnection& connection, unsigned int time);
    // There is input for it. False where it waits already. Only where isTimed().
    bool waitForStep();
    void endHandshake();
    // The port watches the time of this connection and serves its handshake.
    bool isTimed() const { return m_IsTimed; }
    // Something has come from the peer.
    void noteInput();

private:
    friend class Crowd;

    // The moment at which its time is up, of what runs now; false where nothing runs.
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

// Belongs to the server's thread, as all its seats.
class Crowd final : public std::enable_shared_from_this<Crowd>
{
public:
    void setLimits(const NetLimits& limits);
    const NetLimits& limits() const { return m_Limits; }

    // Whether one more may come from there.
    bool hasRoom(const Endpoint& peer) const;
    Ref<Seat> admit(const Endpoint& peer);
    // One was closed for want of room. The log is told at once, and then once a minute at most.
    void noteTurnedAway();

    // The port is there, or no longer there, to call serve().
    void setServed(bool isServed);
    // Takes steps of handshakes within the limits, and ends the connections whose time is up. True where steps are
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
    void endLate();

    NetLimits m_Limits;
    AddressCounts m_Addresses;
    int m_Count = 0;
    size_t m_Input = 0;
    size_t m_Output = 0;
    std::deque<Ref<Seat>> m_Steps;
    // A heap by time; those of connections that are gone lie in it until they are many or their time comes.
    std::vector<Deadline> m_Deadlines;
    size_t m_Stale = 0;
    bool m_IsServed = false;
    unsigned int m_TurnedAway = 0;
    // When that was logged last.
    unsigned int m_ToldTurnedAway = 0;
    bool m_HasTold = false;
};

} // namespace zet::inner

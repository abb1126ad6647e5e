// What happens to a connection, as calls of virtual functions, and why it ended.
#pragma once

#include "net/end_cause.h"

namespace zet
{

namespace inner
{
class EndWatcher;
}

// A base of the connections over TCP and UDP and of the net sessions; a base of its own, so that their other virtual
// functions keep their order. The functions are empty here. They are called on the thread of the connection and from
// its ticks, onEnd() also from close(), closeFor() and detach(). An override may send, close the connection, connect it
// anew, or release its last handle. An exception from an override is logged.
class COMMONGROUND_API ConnectionEvents
{
public:
    ConnectionEvents(const ConnectionEvents&) = delete;
    ConnectionEvents& operator=(const ConnectionEvents&) = delete;

    // The connection is established, with TLS after the handshake, and through a proxy once that has replied. Called
    // before anything received is handled; not from within connect() or accept().
    virtual void onEstablished();
    // The connection has ended. Called exactly once for each connect() that returned true and for each accepted
    // connection, also if it was never established; but not by a destructor. A command socket, a connection over UDP
    // and a net session have closed already. A plain TcpConnection or TcpStream keeps its state and its unread bytes
    // until close().
    virtual void onEnd(const EndCause& cause);
    // The output had reached its mark (setOutputMark()) and has fallen to half of it.
    virtual void onWritable();

    // Why the last connection ended, or why the last connect() returned false; kNone before, and while a connection is
    // connecting or established.
    EndCause getEndCause() const;

protected:
    ConnectionEvents() = default;
    virtual ~ConnectionEvents() = default;

    // Proposes the cause of the coming end. The first cause that was noted counts; a later one replaces it only after
    // forgetCause().
    void noteCause(EndCause cause);
    void forgetCause();

    // For the classes of the library. beginAttempt(): the same for a connect().
    void beginEvents();
    void beginAttempt();
    // Whether the last connection is one of connect() for which onEstablished() was not called.
    bool isAttempt() const { return (m_Flags & kAttempt) != 0; }
    // Makes the noted cause, or the given one, the final one. True the first time after beginEvents().
    bool settleCause(EndCause otherwise);
    // The same for a connection whose end another object counts. False if there is no end to be reported.
    bool endSilently();
    // The cause that was noted, also while the connection has not ended.
    EndCause getNotedCause() const { return {m_Code, m_Detail}; }
    // Ends the events of the connection. False if there is no connection whose end is to be reported.
    bool takeEnd();
    // The line of the end was logged already.
    void setEndLogged() { m_Flags |= kEndLogged; }
    bool isEndLogged() const { return (m_Flags & kEndLogged) != 0; }
    // A connection was not begun: the noted cause, or this one, counts, and no event follows.
    void setFailure(EndCause cause);
    void setOutputHigh(bool isHigh)
    {
        m_Flags = static_cast<unsigned char>(isHigh ? m_Flags | kHigh : m_Flags & ~kHigh);
    }
    bool isOutputHigh() const { return (m_Flags & kHigh) != 0; }
    // Calls an override; its exceptions are logged.
    void callEstablished();
    void callEnd(EndCause cause);
    void callWritable();

private:
    friend class inner::EndWatcher;

    enum Flags : unsigned char
    {
        // A connection has begun, and its end has not been reported.
        kBegun = 1,
        // It has ended, and its cause is final.
        kSettled = 2,
        kEndLogged = 4,
        // The output has reached its mark.
        kHigh = 8,
        // An EndWatcher waits for the end.
        kWatched = 16,
        // A connect() has begun the connection, and onEstablished() was not called.
        kAttempt = 32
    };

    EndCause::Code m_Code = EndCause::kNone;
    unsigned char m_Flags = 0;
    unsigned short m_Detail = 0;
};

} // namespace zet

// The interfaces of a UDP port and of its connections, for any protocol that carries them.
#pragma once

#include "net/inner/reactor.h"
#include "net/quic/connection.h"

#include <memory>

namespace zet::inner
{

// One connection as its UdpConnection object uses it: input, output and the end. The router owns it. An object that
// closes drops its pointer, and no pointer is used after the router is destroyed.
class COMMONGROUND_API UdpLink
{
public:
    virtual ~UdpLink() = default;

    UdpServer::UdpConnection* getOwner() const { return m_Owner; }
    // Whether an object has no connection.
    static bool isFree(const UdpServer::UdpConnection& connection) { return !connection.m_Link; }
    // Null without a connection.
    static const UdpLink* of(const UdpServer::UdpConnection& connection) { return connection.m_Link; }
    // Connects the object to this link and sets its state, id and peer address.
    void setOwner(UdpServer::UdpConnection& owner, UdpServer::UdpConnection::ConnectionState state, const Uuid& id,
                  const Endpoint& peer);
    // Stores the peer's address in the object once it is known.
    void setPeer(const Endpoint& peer);
    // Separates the object from this link and sets the state of the object.
    void leaveOwner(UdpServer::UdpConnection::ConnectionState state);
    // The same for a broken connection; also calls onClose() and onEnd() of the object, unless they were called before.
    // The caller holds the object.
    void breakOwner();

    int available() const { return m_Input.size(); }
    const unsigned char* input() const { return m_Input.data(); }
    size_t outputSize() const { return m_Output.size(); }
    // kEstablished while it is established or connecting; then how it ended.
    UdpServer::UdpConnection::ConnectionState end() const { return m_End; }
    // Whether, since the last call, the connection was established, input was received, or output was acknowledged.
    bool takeStanding() { return std::exchange(m_HasStood, false); }
    bool takeReceived() { return std::exchange(m_HasReceived, false); }
    bool takeConfirmed() { return std::exchange(m_HasConfirmed, false); }

    virtual void consume(int size) = 0;
    virtual bool send(const void* data, int size) = 0;
    // Called when the object drops the connection. The link then ends by itself.
    virtual void close() = 0;
    // Microseconds from a packet to its acknowledgement, smoothed; 0 before the first one.
    virtual unsigned long long roundTripTime() const = 0;
    // Whether the peer opened the connection.
    virtual bool isAccepted() const = 0;
    // The port that has it.
    virtual unsigned short ownPort() const = 0;
    // Ends the connection as broken, which the object's next tick reports. Does nothing if the connection has ended.
    virtual void breakOff(EndCause cause) = 0;
    // The first cause counts.
    void noteCause(EndCause cause)
    {
        if (!m_Cause)
            m_Cause = cause;
    }
    EndCause getCause() const { return m_Cause; }
    // The log has the cause already.
    void setEndLogged() { m_IsEndLogged = true; }

protected:
    UdpServer::UdpConnection* m_Owner = nullptr;
    UdpServer::UdpConnection::ConnectionState m_End = UdpServer::UdpConnection::kEstablished;
    EndCause m_Cause;
    bool m_IsEndLogged = false;
    bool m_HasStood = false;
    bool m_HasReceived = false;
    bool m_HasConfirmed = false;
    InputBuffer m_Input;
    OutputQueue m_Output;
};

// The port of one server.
class UdpRouter
{
public:
    virtual ~UdpRouter() = default;

    // This and make() belong to the module zet_Secure: whether it was built with connections over UDP.
    static bool isAvailable();
    // As SecureModule::makeRouter().
    static std::shared_ptr<UdpRouter> make(UdpServer& server, const std::shared_ptr<Reactor>& reactor,
                                           DoorHandle& handle);

    virtual unsigned short getPort() const = 0;
    virtual unsigned int getHandle() const = 0;
    virtual int getConnectionCount() const = 0;
    virtual const UdpServer::Traffic& getTraffic() const = 0;
    virtual unsigned long long getLostPackets() const = 0;
    // Moves the port to another reactor; on failure the port is closed.
    virtual bool join(const std::shared_ptr<Reactor>& reactor) = 0;
    virtual void tick() = 0;
    // Called at the end of a System's tick: sends the output that was queued after the server's own tick.
    virtual void endTick() = 0;
    // kNone if the connection has begun.
    virtual EndCause connect(UdpServer::UdpConnection& connection, const wchar_t* ip, unsigned short port,
                             const Uuid& id) = 0;
    // hasVisitor(): whether a connection is pending. The next two return the id and the address of the first one, the
    // address only while there is one; give() accepts it.
    virtual bool hasVisitor() const = 0;
    virtual Uuid getVisitorId() const = 0;
    virtual Endpoint getVisitorAddress() const = 0;
    virtual bool give(UdpServer::UdpConnection& connection) = 0;
    virtual bool sendUserData(const Endpoint& peer, const void* data, int size) = 0;
    virtual void deliver(const Endpoint& peer, const void* data, int size) = 0;
    // Counts a datagram of user data that no override handled.
    virtual void noteDropped() = 0;
    // Ends all connections and closes the port. Afterwards the server is not called.
    virtual void close() = 0;
    // The same, but returns the handle, open; the caller owns it.
    virtual unsigned int detach() = 0;
};

} // namespace zet::inner

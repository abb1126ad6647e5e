// What a UDP port and its connections call, whatever protocol carries them.
#pragma once

#include "net/inner/reactor.h"
#include "net/quic/connection.h"

#include <memory>

namespace zet::inner
{

// One connection as its object sees it: bytes in, bytes out, an end. The router owns it. No object points here longer
// than the router lives; an object that closes drops its pointer.
class UdpLink
{
public:
    virtual ~UdpLink() = default;

    UdpServer::UdpConnection* getOwner() const { return m_Owner; }
    // Whether an object has no connection.
    static bool isFree(const UdpServer::UdpConnection& connection) { return !connection.m_Link; }
    // Gives the object this connection and the peer's address.
    void setOwner(UdpServer::UdpConnection& owner, UdpServer::UdpConnection::ConnectionState state, const Uuid& id,
                  const Endpoint& peer);
    // The address of the peer becomes known.
    void setPeer(const Endpoint& peer);
    // Takes the connection from its object, whose state becomes this.
    void leaveOwner(UdpServer::UdpConnection::ConnectionState state);
    // The same when the connection breaks, and calls the object's onClose(). The caller holds the object.
    void breakOwner();

    int available() const { return m_Input.size(); }
    const unsigned char* input() const { return m_Input.data(); }
    size_t outputSize() const { return m_Output.size(); }
    // kEstablished while it is established or connecting; then how it ended.
    UdpServer::UdpConnection::ConnectionState end() const { return m_End; }
    // Whether it has happened since the last call.
    bool takeStanding() { return std::exchange(m_HasStood, false); }
    bool takeReceived() { return std::exchange(m_HasReceived, false); }
    bool takeConfirmed() { return std::exchange(m_HasConfirmed, false); }

    virtual void consume(int size) = 0;
    virtual bool send(const void* data, int size) = 0;
    // The object has dropped it. The link ends by itself.
    virtual void close() = 0;
    // Ends it as broken, which the object's next tick reports. Nothing if it has ended.
    virtual void breakOff() = 0;

protected:
    UdpServer::UdpConnection* m_Owner = nullptr;
    UdpServer::UdpConnection::ConnectionState m_End = UdpServer::UdpConnection::kEstablished;
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

    // Whether this build has one.
    static bool isAvailable();
    // A router on a bound socket. Null, and the handle stays the caller's, if the router cannot start; the build
    // without one logs it.
    static std::shared_ptr<UdpRouter> make(UdpServer& server, const std::shared_ptr<Reactor>& reactor,
                                           DoorHandle& handle);

    virtual unsigned short getPort() const = 0;
    virtual unsigned int getHandle() const = 0;
    virtual int getConnectionCount() const = 0;
    virtual const UdpServer::Traffic& getTraffic() const = 0;
    // Moves the port to another reactor; on failure the port is closed.
    virtual bool join(const std::shared_ptr<Reactor>& reactor) = 0;
    virtual void tick() = 0;
    // The end of a System's tick: sends what was queued after the server's own tick.
    virtual void endTick() = 0;
    virtual bool connect(UdpServer::UdpConnection& connection, const wchar_t* ip, unsigned short port,
                         const Uuid& id) = 0;
    // Whether a connection is pending; the id and the address of the first one, while there is one; and its acceptance.
    virtual bool hasVisitor() const = 0;
    virtual Uuid getVisitorId() const = 0;
    virtual Endpoint getVisitorAddress() const = 0;
    virtual bool give(UdpServer::UdpConnection& connection) = 0;
    virtual bool sendUserData(const Endpoint& peer, const void* data, int size) = 0;
    virtual void deliver(const Endpoint& peer, const void* data, int size) = 0;
    // User data that no override has taken.
    virtual void noteDropped() = 0;
    // Ends all connections and the port. The server is not called after that.
    virtual void close() = 0;
    // The same, but the handle goes to the caller, open.
    virtual unsigned int detach() = 0;
};

} // namespace zet::inner

// What stands behind a UDP port and behind each of its connections, whatever carries them.
#pragma once

#include "net/inner/reactor.h"
#include "net/quic/connection.h"

#include <memory>

namespace zet::inner
{

// One connection as its object sees it: bytes in, bytes out, an end. The router owns it and outlives no object that
// points here; an object that closes lets go of it.
class UdpLink
{
public:
    virtual ~UdpLink() = default;

    UdpServer::UdpConnection* getOwner() const { return m_Owner; }
    // Whether an object has no connection.
    static bool isFree(const UdpServer::UdpConnection& connection) { return !connection.m_Link; }
    // Gives the object this connection, and takes note of the peer.
    void setOwner(UdpServer::UdpConnection& owner, UdpServer::UdpConnection::ConnectionState state, const Uuid& id,
                  unsigned int address, unsigned short port);
    // The address of the peer becomes known.
    void setPeer(unsigned int address, unsigned short port);
    // Takes the connection from its object, whose state becomes this.
    void leaveOwner(UdpServer::UdpConnection::ConnectionState state);
    // The same where the connection breaks, and the object is told. The caller holds it.
    void breakOwner();

    int available() const { return m_Input.size(); }
    const unsigned char* input() const { return m_Input.data(); }
    size_t outputSize() const { return m_Output.size(); }
    // kEstablished while it is established or connecting; then how it ended.
    UdpServer::UdpConnection::ConnectionState end() const { return m_End; }
    // What has happened since the last call; they are taken by asking.
    bool takeStanding() { return std::exchange(m_HasStood, false); }
    bool takeReceived() { return std::exchange(m_HasReceived, false); }
    bool takeConfirmed() { return std::exchange(m_HasConfirmed, false); }

    virtual void consume(int size) = 0;
    virtual bool send(const void* data, int size) = 0;
    // The object has let go. The link ends by itself.
    virtual void close() = 0;
    // Ends it as broken; the object is told with its next tick. Nothing where it has ended.
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
    // A router with a port: by its number, or a bound handle that stays the caller's until this has succeeded. Null,
    // with the log told, where there is none.
    static std::shared_ptr<UdpRouter> make(UdpServer& server, const std::shared_ptr<Reactor>& reactor,
                                           unsigned short port, unsigned int handle);

    virtual unsigned short getPort() const = 0;
    virtual unsigned int getHandle() const = 0;
    virtual int getConnectionCount() const = 0;
    virtual const UdpServer::Traffic& getTraffic() const = 0;
    // Moves the port to another reactor; false has lost it.
    virtual bool join(const std::shared_ptr<Reactor>& reactor) = 0;
    virtual void tick() = 0;
    // The end of a System's tick: sends what came up behind the server's own tick.
    virtual void endTick() = 0;
    virtual bool connect(UdpServer::UdpConnection& connection, const wchar_t* ip, unsigned short port,
                         const Uuid& id) = 0;
    // Whether somebody waits, who he is, and his connection's way to an object.
    virtual bool hasVisitor() const = 0;
    virtual Uuid getVisitorId() const = 0;
    virtual void getVisitorAddress(sockaddr_in& address) const = 0;
    virtual bool give(UdpServer::UdpConnection& connection) = 0;
    virtual bool sendUserData(const sockaddr_in& address, const void* data, int size) = 0;
    virtual void deliver(const sockaddr_in& address, const void* data, int size) = 0;
    // Ends all connections and the port. The server is not called any more.
    virtual void close() = 0;
    // The same, but the handle goes to the caller, open.
    virtual unsigned int detach() = 0;
};

} // namespace zet::inner

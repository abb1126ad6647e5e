// The interface to the operating system's network: sockets, their readiness and host names. The library calls the
// network only through it.
#pragma once

#include "framework/export.h"
#include "net/door/endpoint.h"
#include "net/door/poller.h"

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <vector>

struct hostent;

namespace zet
{
struct NetLimits;
class System;
} // namespace zet

namespace zet::inner
{

// No call waits, except getHostByName(). Sockets do not block. Programs that this process starts do not inherit them,
// if the system can prevent it. All threads share the real door; any other door belongs to the thread of its System.
class COMMONGROUND_API Door
{
public:
    using Handle = unsigned int;
    static constexpr Handle kNoHandle = 0xFFFFFFFF;

    enum Kind : unsigned char
    {
        kStream,
        kDatagrams
    };
    enum Family : unsigned char
    {
        kIPv4,
        kIPv6,
        // IPv6, and IPv4 by mapped addresses.
        kBoth
    };
    // An option that the system does not have is ignored.
    enum Option : unsigned char
    {
        kNoDelay,
        kKeepAlive,
        // A restarted server gets its port back while old connections linger.
        kRebind,
        // Several sockets may be bound to one port, each with this option: see canSharePorts().
        kSharedPort,
        // The bytes of input, and of output, that the system may hold.
        kReceiveBuffer,
        kSendBuffer,
        // Received datagrams report the address of this machine at which they arrived.
        kLocalAddress,
        // One receive may return several datagrams as one: see Datagram::m_Segment.
        kCoalesce
    };

    // Why a call did nothing.
    struct Fault
    {
        enum Reason : unsigned char
        {
            kNone,
            // The call would block.
            kNotNow,
            // The process or the system has no handle or no memory left.
            kExhausted,
            // The system has no such address, or none of that family.
            kNoAddress,
            // The system does not cut a buffer into datagrams on this socket.
            kNotSegmented,
            // Nothing listens at the address.
            kRefused,
            kReset,
            // The peer did not answer or confirm.
            kTimedOut,
            // No route leads to the address.
            kUnreachable,
            // Another socket has the port.
            kInUse,
            kNotPermitted,
            kOther
        };

        explicit operator bool() const { return m_Reason != kNone; }
        // The system's text for m_Code.
        std::string getText() const;

        Reason m_Reason = kNone;
        // The system's error number.
        int m_Code = 0;
    };

    // One of the buffers of a gathered send.
    struct Piece
    {
        const void* m_Data;
        size_t m_Size;
    };
    // The maximum pieces of one send, and the maximum datagrams of one batch.
    static constexpr int kMostPieces = 64;
    static constexpr int kMostDatagrams = 32;
    // The maximum bytes of coalesced datagrams in one receive.
    static constexpr int kMostCoalesced = 65535;

    struct Datagram
    {
        Endpoint m_Peer;
        // The address of this machine at which it arrived, or from which it is sent. 0.0.0.0 or :: if the system does
        // not report it, or is to choose it.
        Endpoint m_Local;
        unsigned char* m_Data = nullptr;
        // Before a receive, the space at m_Data. After it the bytes received, or -1 if the datagram was longer or its
        // sender has an address of another family. In a send, the bytes to send.
        int m_Size = 0;
        // After a receive with kCoalesce: above 0, m_Data holds several datagrams of this size, the last one possibly
        // shorter. A send ignores it.
        int m_Segment = 0;
    };

    virtual ~Door() = default;

    virtual Handle open(Kind kind, Family family, Fault& fault) = 0;
    virtual void close(Handle handle) = 0;
    // Makes a socket non-blocking, as open() does.
    virtual Fault unblock(Handle handle) = 0;
    virtual Fault bind(Handle handle, const Endpoint& own) = 0;
    // A backlog of 0 or less means the largest one of the system.
    virtual Fault listen(Handle handle, int backlog) = 0;
    virtual Handle accept(Handle listener, Endpoint& peer, Fault& fault) = 0;
    // Begins a connection.
    virtual Fault connect(Handle handle, const Endpoint& peer) = 0;
    // The result of connect(). Call it once, when the socket is ready for output.
    virtual Fault endConnect(Handle handle) = 0;

    // The number of bytes received; 0 without a fault at the end of the connection.
    virtual size_t receive(Handle handle, void* data, size_t size, Fault& fault) = 0;
    // The number of bytes that the system accepted.
    virtual size_t send(Handle handle, const Piece* pieces, int count, Fault& fault) = 0;
    // The number of datagrams received or sent. A fault of a receive may concern an earlier datagram.
    virtual int receiveBatch(Handle handle, Datagram* datagrams, int count, Fault& fault) = 0;
    virtual int sendBatch(Handle handle, const Datagram* datagrams, int count, Fault& fault) = 0;
    // Whether sendSegmented() can save the system work.
    virtual bool canSegment(Handle) { return false; }
    // Sends like sendBatch(). Consecutive datagrams with the same peer, local address and size (the last one may be
    // shorter) are passed to the system as one buffer, which it cuts as late as it can. After a fault other than
    // kNotNow and kExhausted, sendBatch() may still send the rest.
    virtual int sendSegmented(Handle handle, const Datagram* datagrams, int count, Fault& fault)
    {
        return sendBatch(handle, datagrams, count, fault);
    }

    virtual bool getOwnEndpoint(Handle handle, Endpoint& own) = 0;
    virtual bool getPeerEndpoint(Handle handle, Endpoint& peer) = 0;
    virtual void setOption(Handle handle, Option option, int value) = 0;
    // Makes the system detect a peer that vanished, within the times of the limits.
    virtual void watchPeer(Handle handle, const NetLimits& limits) = 0;
    // Gives a listening socket kNoDelay and the options of watchPeer(), in place of those that it has. True if each
    // connection that arrives afterwards inherits them; otherwise they are set on each accepted one.
    virtual bool prepareListener(Handle, const NetLimits&) { return false; }
    // Whether the system divides the connections, or the datagrams, of a port among its sockets with kSharedPort.
    virtual bool canSharePorts() const { return false; }

    // Throws std::runtime_error, or an exception derived from it, if the system has no poller left.
    virtual std::unique_ptr<Poller> makePoller() = 0;

    // Calls answer with the addresses of a host name, in the order in which they are to be tried, or with an empty list
    // if the name has no address. It is called on any thread, possibly before resolve() returns, and must not throw.
    // Once the asker is destroyed, the lookup may be skipped without a call. If resolve() throws (no memory), answer is
    // not called.
    using Answer = std::function<void(std::vector<Endpoint> found)>;
    using Asker = std::weak_ptr<const void>;
    virtual void resolve(const char* name, Answer answer, const Asker& asker) = 0;

    // The door to the operating system.
    static const std::shared_ptr<Door>& getReal();
    // Reads a numeric address: four numbers with points, or IPv6, also in brackets and with an interface
    // ("fe80::1%eth0"). False, and the endpoint unchanged, for any other text.
    static bool parse(const char* text, unsigned short port, Endpoint& endpoint);
    // The address without the port and without brackets, in a form that parse() reads. A mapped address is printed as
    // the IPv4 one.
    static std::string print(const Endpoint& endpoint);
    static Family familyOf(const Endpoint& endpoint) { return endpoint.isV4() ? kIPv4 : kIPv6; }
    // These three are the system's own calls of that name; the first one waits for the resolver.
    static hostent* getHostByName(const char* name);
    static unsigned int getAddress(const char* text);
    static std::string getHostName();
};

// Replaces the real door for all sockets of a System. Call it on the run thread of the System before its first socket
// is started or used; false after that.
COMMONGROUND_API bool setDoor(System& system, const std::shared_ptr<Door>& door);

// Owns a handle and closes it.
class DoorHandle
{
public:
    explicit DoorHandle(const std::shared_ptr<Door>& door, Door::Handle handle = Door::kNoHandle)
        : m_Door(door), m_Handle(handle)
    {
    }
    ~DoorHandle() { close(); }
    DoorHandle(DoorHandle&& other) noexcept : m_Door(other.m_Door), m_Handle(other.release()) {}
    DoorHandle(const DoorHandle&) = delete;
    DoorHandle& operator=(const DoorHandle&) = delete;

    Door& door() const { return *m_Door; }
    Door::Handle get() const { return m_Handle; }
    bool isOpen() const { return m_Handle != Door::kNoHandle; }
    // Closes the present handle and owns this one.
    void set(Door::Handle handle)
    {
        close();
        m_Handle = handle;
    }
    // Returns the handle, open; the caller owns it.
    Door::Handle release()
    {
        const Door::Handle handle = m_Handle;
        m_Handle = Door::kNoHandle;
        return handle;
    }
    void close()
    {
        if (isOpen())
            m_Door->close(release());
    }

private:
    const std::shared_ptr<Door> m_Door;
    Door::Handle m_Handle;
};

// Opens a socket and binds it to a port, on one address or on several of this machine: 0.0.0.0 means all of IPv4, ::
// all of both families. A system without IPv6 treats :: as 0.0.0.0. If the port cannot be bound, there is a fault and
// no handle is open. A shared port may be bound by other sockets, too.
COMMONGROUND_API DoorHandle openPort(const std::shared_ptr<Door>& door, Door::Kind kind, const Endpoint& own,
                                     Door::Fault& fault, bool isShared = false);
// Whether a port can be shared; if not, the log says so.
bool canSharePort(const Door& door, unsigned short port);

} // namespace zet::inner

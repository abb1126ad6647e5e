// The one door to the operating system's network: sockets, their readiness, names. Nothing else in the library calls
// it.
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

// No call waits, except getHostByName(). Sockets do not block, and no program that this process starts inherits them,
// where the system can do so. The real one is shared by all threads; another one belongs to the thread of its System.
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
    // Options that a system does not have are left out.
    enum Option : unsigned char
    {
        kNoDelay,
        kKeepAlive,
        // A restarted server gets its port back while old connections linger.
        kRebind,
        // Bytes that the system may hold of input, and of output.
        kReceiveBuffer,
        kSendBuffer,
        // Received datagrams report at which address of this machine they arrived.
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
            // Nothing can be done yet.
            kNotNow,
            // The process or the system has no handle or no memory left.
            kExhausted,
            // The system has no such address, or none of that family.
            kNoAddress,
            // The system does not cut a buffer into datagrams on this socket.
            kNotSegmented,
            kOther
        };

        explicit operator bool() const { return m_Reason != kNone; }
        // The system's words.
        std::string getText() const;

        Reason m_Reason = kNone;
        // The system's number.
        int m_Code = 0;
    };

    // Bytes of a gathered send.
    struct Piece
    {
        const void* m_Data;
        size_t m_Size;
    };
    // The pieces that one send takes at most, and the datagrams of one batch.
    static constexpr int kMostPieces = 64;
    static constexpr int kMostDatagrams = 32;
    // Bytes of coalesced datagrams that a receive gives at most.
    static constexpr int kMostCoalesced = 65535;

    struct Datagram
    {
        Endpoint m_Peer;
        // The address of this machine that it arrived at, or is to leave from; 0.0.0.0 or :: where the system does not
        // report it, and where the system chooses.
        Endpoint m_Local;
        unsigned char* m_Data = nullptr;
        // In a receive, the space at m_Data before it, and the bytes after it, -1 for a datagram that was longer.
        int m_Size = 0;
        // After a receive with kCoalesce: above 0, m_Data holds several datagrams of this size, the last one possibly
        // shorter. A send ignores it.
        int m_Segment = 0;
    };

    virtual ~Door() = default;

    virtual Handle open(Kind kind, Family family, Fault& fault) = 0;
    virtual void close(Handle handle) = 0;
    // What open() does for its own handles.
    virtual Fault unblock(Handle handle) = 0;
    virtual Fault bind(Handle handle, const Endpoint& own) = 0;
    // A backlog of 0 or less is the system's largest.
    virtual Fault listen(Handle handle, int backlog) = 0;
    virtual Handle accept(Handle listener, Endpoint& peer, Fault& fault) = 0;
    // Begins a connection.
    virtual Fault connect(Handle handle, const Endpoint& peer) = 0;
    // To be called once, when the socket is ready for output: the result of connect().
    virtual Fault endConnect(Handle handle) = 0;

    // The bytes that were received; 0 without a fault at the end of the connection.
    virtual size_t receive(Handle handle, void* data, size_t size, Fault& fault) = 0;
    // The bytes that were taken.
    virtual size_t send(Handle handle, const Piece* pieces, int count, Fault& fault) = 0;
    // The number of datagrams received or sent. A fault of a receive may be that of an earlier datagram.
    virtual int receiveBatch(Handle handle, Datagram* datagrams, int count, Fault& fault) = 0;
    virtual int sendBatch(Handle handle, const Datagram* datagrams, int count, Fault& fault) = 0;
    // Whether sendSegmented() can save the system work.
    virtual bool canSegment(Handle) { return false; }
    // Sends like sendBatch(). Datagrams in a row with the same peer, local address and size (the last one may be
    // shorter) are one buffer to the system, which cuts it as late as it can. After a fault other than kNotNow and
    // kExhausted, sendBatch() may still send what is left.
    virtual int sendSegmented(Handle handle, const Datagram* datagrams, int count, Fault& fault)
    {
        return sendBatch(handle, datagrams, count, fault);
    }

    virtual bool getOwnEndpoint(Handle handle, Endpoint& own) = 0;
    virtual bool getPeerEndpoint(Handle handle, Endpoint& peer) = 0;
    virtual void setOption(Handle handle, Option option, int value) = 0;
    // Makes the system detect a peer that vanished, as the limits say.
    virtual void watchPeer(Handle handle, const NetLimits& limits) = 0;

    // Throws std::system_error where the system has none to give.
    virtual std::unique_ptr<Poller> makePoller() = 0;

    // Calls answer with the addresses of a host name, in the order in which they are to be tried, or with an empty list
    // if the name has no address. The call comes on any thread, possibly before resolve() returns, and must not throw.
    // Once the asker is gone, the lookup may be left out and answer not called. If resolve() throws (no memory), answer
    // is not called.
    using Answer = std::function<void(std::vector<Endpoint> found)>;
    using Asker = std::weak_ptr<const void>;
    virtual void resolve(const char* name, Answer answer, const Asker& asker) = 0;

    // The operating system's own.
    static const std::shared_ptr<Door>& getReal();
    // A numeric address: four numbers with points, or IPv6, also in brackets and with an interface ("fe80::1%eth0").
    // False, and the endpoint unchanged, for any other text.
    static bool parse(const char* text, unsigned short port, Endpoint& endpoint);
    // The address alone, as parse() takes it, without brackets. A mapped address is printed as the IPv4 one.
    static std::string print(const Endpoint& endpoint);
    static Family familyOf(const Endpoint& endpoint) { return endpoint.isV4() ? kIPv4 : kIPv6; }
    // These three are the system's own calls of that name; the first one waits for the resolver.
    static hostent* getHostByName(const char* name);
    static unsigned int getAddress(const char* text);
    static std::string getHostName();
};

// Puts another door in the place of the real one, for all sockets of a System. On its run thread, before its first
// socket is started or used; false after that.
COMMONGROUND_API bool setDoor(System& system, const std::shared_ptr<Door>& door);

// Owns a handle, and closes it.
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
    // Takes a handle over.
    void set(Door::Handle handle)
    {
        close();
        m_Handle = handle;
    }
    // Gives it away, open.
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

// A socket bound to a port: on one address, or on all addresses of this machine, where 0.0.0.0 stands for those of IPv4
// and :: for those of both families. A system without IPv6 takes :: as 0.0.0.0. No handle, and a fault, where the port
// cannot be bound.
COMMONGROUND_API DoorHandle openPort(const std::shared_ptr<Door>& door, Door::Kind kind, const Endpoint& own,
                                     Door::Fault& fault);

} // namespace zet::inner

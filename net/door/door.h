// The one door to the operating system's network: sockets, their readiness, names. Nothing else in the library calls
// it.
#pragma once

#include "framework/platform/export.h"
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
    // Options that a system does not have are left out.
    enum Option : unsigned char
    {
        kNoDelay,
        kKeepAlive,
        // A restarted server gets its port back while old connections linger.
        kRebind,
        // Bytes that the system may hold of what comes, and of what leaves.
        kReceiveBuffer,
        kSendBuffer,
        // Datagrams that come say which address of this machine they came to.
        kLocalAddress,
        // One receive may give several datagrams as one: see Datagram::m_Segment.
        kCoalesce
    };

    // Why a call did nothing.
    struct Fault
    {
        enum Reason : unsigned char
        {
            kNone,
            // There is nothing to do yet.
            kNotNow,
            // The process or the system has no handle or no memory left.
            kExhausted,
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
        // The address of this machine that it came to, or leaves from, in network order; 0 where the system does not
        // say, and where the system chooses.
        unsigned int m_Local = 0;
        unsigned char* m_Data = nullptr;
        // In a receive, the space at m_Data before it, and the bytes after it, -1 for a datagram that was longer.
        int m_Size = 0;
        // After a receive with kCoalesce: above 0, m_Data holds several datagrams of this size, the last one possibly
        // shorter. A send ignores it.
        int m_Segment = 0;
    };

    virtual ~Door() = default;

    virtual Handle open(Kind kind, Fault& fault) = 0;
    virtual void close(Handle handle) = 0;
    // What open() does for its own handles.
    virtual Fault unblock(Handle handle) = 0;
    virtual Fault bind(Handle handle, const Endpoint& own) = 0;
    // A backlog of 0 or less is the system's largest.
    virtual Fault listen(Handle handle, int backlog) = 0;
    virtual Handle accept(Handle listener, Endpoint& peer, Fault& fault) = 0;
    // Begins a connection.
    virtual Fault connect(Handle handle, const Endpoint& peer) = 0;
    // Once the socket is ready for output, and only once: how that ended.
    virtual Fault endConnect(Handle handle) = 0;

    // The bytes that were received; 0 without a fault at the end of the connection.
    virtual size_t receive(Handle handle, void* data, size_t size, Fault& fault) = 0;
    // The bytes that were taken.
    virtual size_t send(Handle handle, const Piece* pieces, int count, Fault& fault) = 0;
    // The datagrams that came and went. A fault of a receive may be that of an earlier datagram.
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
    // Lets the system notice a peer that vanished, as the limits say.
    virtual void watchPeer(Handle handle, const NetLimits& limits) = 0;

    // Throws std::system_error where the system has none to give.
    virtual std::unique_ptr<Poller> makePoller() = 0;

    // Calls answer with the addresses of a host name, or with an empty list if the name has no address. The call comes
    // on any thread, possibly before resolve() returns, and must not throw. If resolve() throws (no memory), answer is
    // not called.
    using Answer = std::function<void(std::vector<Endpoint> found)>;
    virtual void resolve(const char* name, Answer answer) = 0;

    // The operating system's own.
    static const std::shared_ptr<Door>& getReal();
    // A numeric address; false, and the endpoint unchanged, for any other text.
    static bool parse(const char* text, unsigned short port, Endpoint& endpoint);
    // These three are the system's own calls of that name; the first one waits for the resolver.
    static hostent* getHostByName(const char* name);
    static unsigned int getAddress(const char* text);
    static std::string getHostName();
};

// Puts another door in the place of the real one, for all sockets of a System. On its run thread, before its first
// socket is started or used; false after that.
COMMONGROUND_API bool setDoor(System& system, const std::shared_ptr<Door>& door);

// A handle that is closed with it.
class DoorHandle
{
public:
    explicit DoorHandle(const std::shared_ptr<Door>& door, Door::Handle handle = Door::kNoHandle)
        : m_Door(door), m_Handle(handle)
    {
    }
    ~DoorHandle() { close(); }
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

} // namespace zet::inner

// The socket of a UDP port. It receives and sends datagrams in batches.
#pragma once

#include "framework/inner/fast_paths.h"
#include "net/inner/counted.h"
#include "net/inner/watched.h"
#include "net/socket.h"

#include <memory>

namespace zet::inner
{

// Reference-counted: its router holds it, and so do callers while they use it. The memory of both batches is one block,
// which exists as long as the port.
class UdpPort final : public Counted<UdpPort>, public Watched
{
public:
    // The maximum bytes of a datagram that is received, and of one that is sent.
    static constexpr int kMostBytes = 2048;
    // Datagrams per system call, if fast paths are taken.
    static constexpr int kBatch = Door::kMostDatagrams;

    struct Datagram
    {
        const Endpoint* m_Peer;
        // The address of this machine that it arrived at; 0.0.0.0 or :: if the system does not report it.
        Endpoint m_Local;
        const unsigned char* m_Data;
        int m_Size;
    };

    // Makes a port on a bound socket and takes over the handle. Null if the system does not watch the socket; throws
    // std::bad_alloc. In both cases the caller keeps the handle.
    static Ref<UdpPort> open(const std::shared_ptr<Reactor>& reactor, DoorHandle& handle);

    ~UdpPort();

    // The address and the port number that it is bound to.
    const Endpoint& getAddress() const { return m_Address; }

    // Whether there may be a next datagram. Makes no system call.
    bool isReadable() const { return m_IsReadable || m_Next.m_Index < m_Received; }
    // Receives the next datagram; false if none is left. The size of one that was too long is -1. The bytes stay valid
    // until the next call.
    bool receive(Datagram& datagram);
    // Makes the next receive() return the last datagram again.
    void putBack() { m_Next = m_Last; }

    // Space for a datagram of kMostBytes, or null while the operating system accepts no output; isBlocked() is then
    // true until it does.
    unsigned char* room();
    // Adds the datagram written there to the batch, for this peer. It is sent from this local address; the system
    // chooses one if it is 0.0.0.0 or ::.
    void commit(const Endpoint& peer, int size, const Endpoint& local);
    // Sends the committed datagrams.
    void flush();
    bool isBlocked() const { return m_IsBlocked; }
    // Returns the handle, open and without kCoalesce; the caller owns it.
    Door::Handle giveAway();

    void onReady(unsigned char ready) override;

private:
    struct Batches;

    static constexpr int kPerCall = kHasFastPaths ? kBatch : 1;

    // The position of a datagram in the last batch: the index of its receive, and its first byte there.
    struct Place
    {
        int m_Index = 0;
        int m_Byte = 0;
    };

    explicit UdpPort(Reactor& reactor);
    bool start();
    bool receiveBatch();
    Datagram takeDatagram();
    void waitForOutput();

    std::unique_ptr<Batches> m_Batches;
    Endpoint m_Address;
    // The number of receives in the last batch, the datagram that receive() returns next, and the one that it returned
    // last.
    int m_Received = 0;
    Place m_Next;
    Place m_Last;
    int m_Unsent = 0;
    // Whether the system cuts a buffer into datagrams; false once it has refused to.
    bool m_CanSegment = false;
    bool m_IsReadable = false;
    bool m_IsBlocked = false;
};

} // namespace zet::inner

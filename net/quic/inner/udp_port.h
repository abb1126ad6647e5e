// The socket of a UDP port: datagrams in by the batch, datagrams out by the batch.
#pragma once

#include "net/inner/counted.h"
#include "net/inner/watched.h"
#include "net/socket.h"

#include <memory>

namespace zet::inner
{

// The router and who opens it share a port by its count. Both batches are one block, for as long as the port is open.
class UdpPort final : public Counted<UdpPort>, public Watched
{
public:
    // The longest datagram that is taken, and the longest that is sent.
    static constexpr int kMostBytes = 2048;
    // Datagrams of one system call.
    static constexpr int kBatch = Door::kMostDatagrams;

    struct Datagram
    {
        const Endpoint* m_Peer;
        // The address of this machine that it arrived at; 0.0.0.0 or :: if the system does not report it.
        Endpoint m_Local;
        const unsigned char* m_Data;
        int m_Size;
    };

    // A port on a bound socket, which it takes over. Null, and the handle stays the caller's, if the system does not
    // watch it. Throws std::bad_alloc, and the handle stays too.
    static Ref<UdpPort> open(const std::shared_ptr<Reactor>& reactor, DoorHandle& handle);

    ~UdpPort();

    // The address and the port that it is bound to.
    const Endpoint& getAddress() const { return m_Address; }

    // Whether there may be a next datagram. It costs no system call.
    bool isReadable() const { return m_IsReadable || m_Next.m_Index < m_Received; }
    // The next datagram, false when nothing is left. One that was too long has the size -1. The bytes stay until the
    // next call.
    bool receive(Datagram& datagram);
    // The next receive() gives the datagram of the last one again.
    void putBack() { m_Next = m_Last; }

    // Space for a datagram of kMostBytes, or null while the operating system takes none; then isBlocked() is true until
    // it does again.
    unsigned char* room();
    // Sends what was written there to an address, with its batch; from this address of ours, or from one that the
    // system chooses if it is 0.0.0.0 or ::.
    void commit(const Endpoint& peer, int size, const Endpoint& local);
    // Sends what was committed.
    void flush();
    bool isBlocked() const { return m_IsBlocked; }
    // Gives the handle away, open, with the options of a new one.
    Door::Handle giveAway();

    void onReady(unsigned char ready) override;

private:
    struct Batches;
    // A datagram of the last batch: its receive, and its first byte there.
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
    // The receives of the last batch, and in them the first datagram that receive() has not returned, and the last one
    // that it has.
    int m_Received = 0;
    Place m_Next;
    Place m_Last;
    int m_Unsent = 0;
    // False once the system has refused to cut a buffer.
    bool m_CanSegment = false;
    bool m_IsReadable = false;
    bool m_IsBlocked = false;
};

} // namespace zet::inner

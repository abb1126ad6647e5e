// The socket of a UDP port: datagrams in by the batch, datagrams out by the batch.
#pragma once

#include "net/inner/counted.h"
#include "net/inner/watched.h"
#include "net/socket.h"

#include <netinet/in.h>

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
        const sockaddr_in* m_Address;
        // The address of this machine that it came to, in network order; 0 where the system does not tell.
        unsigned int m_Local;
        const unsigned char* m_Data;
        int m_Size;
    };

    // A socket on a port of all addresses, or one that is there already. Null where there is none; a handle that was
    // given stays the caller's then.
    static Ref<UdpPort> open(const std::shared_ptr<Reactor>& reactor, unsigned short port, unsigned int handle);

    ~UdpPort();

    const sockaddr_in& getAddress() const { return m_Address; }

    // Whether there may be a next datagram. It costs no system call.
    bool isReadable() const { return m_IsReadable || m_Next.m_Index < m_Received; }
    // The next datagram, false when nothing is left. One that was too long has the size -1. The bytes stay until the
    // next call.
    bool receive(Datagram& datagram);
    // The next receive() gives the datagram of the last one again.
    void putBack() { m_Next = m_Last; }

    // Room for a datagram of kMostBytes, or null while the operating system takes none; then isBlocked() is true until
    // it does again.
    unsigned char* room();
    // What was written there goes to an address, with its batch; from this address of ours, or from one of the system's
    // choice where it is 0.
    void commit(const sockaddr_in& address, int size, unsigned int local);
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

    UdpPort(Reactor& reactor, Door::Handle handle);
    bool prepare();
    bool receiveBatch();
    Datagram takeDatagram();
    void waitForOutput();

    std::unique_ptr<Batches> m_Batches;
    sockaddr_in m_Address{};
    // The receives of the last batch, and in them the first datagram that receive() has not given, and the last one
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

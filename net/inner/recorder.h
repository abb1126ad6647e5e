// Where connections report what they carry, if a recording runs on their thread.
#pragma once

#include "net/connection_events.h"

#include <atomic>
#include <span>

namespace zet::inner
{

// A recorder receives what the connections of one thread carry, after TLS and after a proxy's replies. A thread has one
// at most. While no thread has one, a packet costs a load and a test.
class Recorder
{
public:
    Recorder(const Recorder&) = delete;
    Recorder& operator=(const Recorder&) = delete;

    enum Direction : unsigned char
    {
        kReceived,
        kSent
    };

    static bool isOn() { return s_Count.load(std::memory_order_relaxed) > 0; }
    // Whether this thread has one.
    static bool isHere() noexcept;

    // These do nothing on a thread without a recorder. A packet is without its length word, in one piece; one that was
    // received is reported before it is handled, one that was sent after it was queued.
    static void reportEstablished(ConnectionEvents& connection) noexcept;
    static void reportPacket(ConnectionEvents& connection, Direction direction,
                             std::span<const unsigned char> packet) noexcept;

protected:
    Recorder() = default;
    ~Recorder() { stopReports(); }

    // The thread that calls this one is recorded until stopReports(), which it calls too. False if it has a recorder.
    bool startReports();
    void stopReports();

private:
    virtual void onEstablished(ConnectionEvents& connection) noexcept = 0;
    virtual void onPacket(ConnectionEvents& connection, Direction direction,
                          std::span<const unsigned char> packet) noexcept = 0;

    static std::atomic<int> s_Count;
};

} // namespace zet::inner

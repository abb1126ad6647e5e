// What only a connection with limits on its rate, or with limits of its own, has.
#pragma once

#include "net/inner/token_bucket.h"
#include "net/limits.h"

#include <optional>

namespace zet::inner
{

// The packets and bytes that the peer may send per second. Belongs to the connection's thread.
class InputRate
{
public:
    // Starts anew by these limits; null for no rate.
    void start(const NetLimits* limits);
    bool isOn() const { return m_Packets.hasRate() || m_Bytes.hasRate(); }
    // Called once per tick before isOpen().
    void refill();
    // Whether the peer may send one more packet now. Asks the clock only if it may not by the time of refill().
    bool isOpen() { return hasTokens() || isOpenNow(); }
    // The peer has sent these packets, with their length words.
    void take(long long packets, long long bytes)
    {
        m_Packets.take(packets);
        m_Bytes.take(bytes);
    }
    // Milliseconds until it is open.
    unsigned int getWait() const;
    NetLimits::OverRate getOverRate() const { return m_OverRate; }

private:
    bool hasTokens() const { return m_Packets.isOpen() && m_Bytes.isOpen(); }
    bool isOpenNow();

    TokenBucket m_Packets;
    TokenBucket m_Bytes;
    NetLimits::OverRate m_OverRate = NetLimits::kDelay;
};

struct TcpBounds
{
    // Of setLimits().
    std::optional<NetLimits> m_Own;
    InputRate m_Rate;
    // Packets refused since the connection was established.
    unsigned long long m_Refused = 0;
    // Times of getTimeTick(): of connect(), and of the last input.
    unsigned int m_Begun = 0;
    unsigned int m_LastInput = 0;
    // An established connection still belongs to the time of connect().
    bool m_IsConnectHeld = false;
};

} // namespace zet::inner

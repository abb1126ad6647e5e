// The bytes that one side of a TCP connection sends, in order, from captured segments in any order.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>

namespace tools
{

// Takes the bytes of a direction.
class ByteSink
{
public:
    virtual ~ByteSink() = default;
    virtual void onBytes(std::string_view bytes) = 0;
    // Bytes that were sent but are not in the capture.
    virtual void onGap(uint64_t size) = 0;
};

// Where segments overlap, the bytes that arrived first are kept. Bytes after a missing segment are held until it
// arrives, or until it is clear that the capture lacks it: the peer acknowledged it and kPatience segments came since,
// or kMostAhead bytes are held.
class TcpDirection
{
public:
    static constexpr size_t kMostAhead = 0x100000;
    static constexpr int kPatience = 16;

    bool isStarted() const { return m_IsStarted; }
    // Whether it started with the sender's SYN, and with which number.
    bool hasSyn() const { return m_HasSyn; }
    uint32_t syn() const { return m_Syn; }
    // The FIN or a reset was reached.
    bool isOver() const { return m_IsOver; }
    size_t held() const { return m_AheadSize; }

    // The first byte has this number. Forgets what was before.
    void start(uint32_t sequence);
    void startBySyn(uint32_t syn);
    // A SYN that arrived after data: the number is kept to recognise it.
    void setSyn(uint32_t syn);
    // Whether the expected byte has a number of at most most after the given one.
    bool isSoonAfter(uint32_t sequence, uint32_t most) const
    {
        return static_cast<uint32_t>(m_Next) - sequence <= most;
    }
    // Whether the number is so far from the expected one that it belongs to another connection.
    bool isFar(uint32_t sequence) const;
    // A started direction. missing is how many bytes after the payload were not captured.
    void add(uint32_t sequence, std::string_view payload, size_t missing, bool isFin, ByteSink& sink);
    // The other side has received all bytes before this number.
    void acknowledge(uint32_t sequence);
    // Nothing more follows: what is held is given, with the gaps.
    void finish(ByteSink& sink);

private:
    uint64_t placeOf(uint32_t sequence) const;
    void give(uint64_t place, std::string_view bytes, ByteSink& sink);
    void giveHeld(ByteSink& sink);
    void skipTo(uint64_t place, ByteSink& sink);

    bool m_IsStarted = false;
    bool m_HasSyn = false;
    bool m_IsOver = false;
    uint32_t m_Syn = 0;
    // Places are sequence numbers that do not wrap around.
    uint64_t m_Next = 0;
    uint64_t m_Acknowledged = 0;
    // The place after the last byte; 0 if unknown.
    uint64_t m_End = 0;
    std::map<uint64_t, std::string> m_Ahead;
    // The bytes that m_Ahead takes, with what each entry needs.
    size_t m_AheadSize = 0;
    // Segments since the first byte ahead.
    int m_Waits = 0;
};

} // namespace tools

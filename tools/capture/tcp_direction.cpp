#include "tools/capture/tcp_direction.h"

#include <algorithm>

namespace tools
{

namespace
{

// A window has at most 2^30 bytes.
constexpr int32_t kFar = 0x40000000;
// What a held segment takes besides its bytes, about.
constexpr size_t kEntry = 128;

} // namespace

void TcpDirection::start(uint32_t sequence)
{
    *this = TcpDirection();
    m_IsStarted = true;
    // The first places are free for numbers before the start.
    m_Next = (uint64_t{1} << 32) + sequence;
    m_Acknowledged = m_Next;
}

void TcpDirection::startBySyn(uint32_t syn)
{
    start(syn + 1);
    setSyn(syn);
}

void TcpDirection::setSyn(uint32_t syn)
{
    m_HasSyn = true;
    m_Syn = syn;
}

uint64_t TcpDirection::placeOf(uint32_t sequence) const
{
    const auto distance = static_cast<int32_t>(sequence - static_cast<uint32_t>(m_Next));
    return m_Next + static_cast<uint64_t>(int64_t{distance});
}

bool TcpDirection::isFar(uint32_t sequence) const
{
    const auto distance = static_cast<int32_t>(sequence - static_cast<uint32_t>(m_Next));
    return distance > kFar || distance < -kFar;
}

void TcpDirection::acknowledge(uint32_t sequence)
{
    if (m_IsStarted && !isFar(sequence))
        m_Acknowledged = std::max(m_Acknowledged, placeOf(sequence));
}

// Gives the part of the bytes that is not before the next place.
void TcpDirection::give(uint64_t place, std::string_view bytes, ByteSink& sink)
{
    const uint64_t known = m_Next - place;
    if (known >= bytes.size())
        return;
    bytes.remove_prefix(static_cast<size_t>(known));
    m_Next += bytes.size();
    sink.onBytes(bytes);
}

void TcpDirection::giveHeld(ByteSink& sink)
{
    while (!m_Ahead.empty() && m_Ahead.begin()->first <= m_Next)
    {
        const auto node = m_Ahead.extract(m_Ahead.begin());
        m_AheadSize -= node.mapped().size() + kEntry;
        m_Waits = 0;
        give(node.key(), node.mapped(), sink);
    }
}

void TcpDirection::skipTo(uint64_t place, ByteSink& sink)
{
    if (place <= m_Next)
        return;
    sink.onGap(place - m_Next);
    m_Next = place;
    giveHeld(sink);
}

void TcpDirection::add(uint32_t sequence, std::string_view payload, size_t missing, bool isFin, ByteSink& sink)
{
    if (m_IsOver)
        return;
    const uint64_t place = placeOf(sequence);
    if (isFin)
        m_End = place + payload.size() + missing;
    if (place <= m_Next)
    {
        give(place, payload, sink);
        giveHeld(sink);
    }
    else if (!payload.empty())
    {
        std::string& held = m_Ahead[place];
        if (held.empty())
            m_AheadSize += kEntry;
        if (held.size() < payload.size())
        {
            // The bytes that arrived first stay.
            const std::string_view more = payload.substr(held.size());
            m_AheadSize += more.size();
            held.append(more);
        }
    }
    if (!m_Ahead.empty())
        ++m_Waits;
    while (!m_Ahead.empty() &&
           (m_AheadSize > kMostAhead || (m_Waits > kPatience && m_Acknowledged > m_Ahead.begin()->first)))
        skipTo(m_Ahead.begin()->first, sink);
    m_IsOver = m_End != 0 && m_Next >= m_End;
}

void TcpDirection::finish(ByteSink& sink)
{
    if (!m_IsStarted || m_IsOver)
        return;
    while (!m_Ahead.empty())
        skipTo(m_Ahead.begin()->first, sink);
    // A FIN that was not captured has a number of its own, which the other side acknowledges too.
    if (m_End != 0)
        skipTo(m_End, sink);
    else if (m_Acknowledged > m_Next + 1)
        skipTo(m_Acknowledged, sink);
    m_IsOver = true;
}

} // namespace tools

// A token bucket: an average rate with a burst.
#pragma once

#include <algorithm>

namespace zet::inner
{

// Integers in thousandths of a token, so that each millisecond adds a whole number. A caller may take more tokens than
// there are: the debt is paid before the bucket opens again. Without a rate it is always open.
class TokenBucket
{
public:
    // The bucket is full then. 0 or less tokens per second for no rate; a burst of 0 or less for the tokens of a
    // second.
    void start(int perSecond, int burst, unsigned int now)
    {
        m_PerSecond = std::max(perSecond, 0);
        m_Most = kToken * (burst > 0 ? burst : m_PerSecond);
        m_Balance = m_Most;
        m_Then = now;
    }
    bool hasRate() const { return m_PerSecond > 0; }
    // Adds the tokens of the time since the last call. now is a time of getTimeTick().
    void refill(unsigned int now)
    {
        const long long passed = std::min(now - m_Then, kLongest);
        m_Then = now;
        m_Balance = std::min(m_Most, m_Balance + passed * m_PerSecond);
    }
    // Whether it has a whole token.
    bool isOpen() const { return !hasRate() || m_Balance >= kToken; }
    void take(long long tokens) { m_Balance -= hasRate() ? tokens * kToken : 0; }
    // Milliseconds after the last refill() at which it will be open; 0 if it is.
    unsigned int getWait() const
    {
        if (isOpen())
            return 0;
        return static_cast<unsigned int>(
            std::min<long long>((kToken - m_Balance + m_PerSecond - 1) / m_PerSecond, kLongest));
    }

private:
    static constexpr long long kToken = 1000;
    // Keeps the products within 64 bits and the waits below half a turn of the clock.
    static constexpr unsigned int kLongest = 0x3FFFFFFF;

    long long m_Balance = 0;
    long long m_Most = 0;
    int m_PerSecond = 0;
    unsigned int m_Then = 0;
};

} // namespace zet::inner

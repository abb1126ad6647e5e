// When the frames of a camera are due.
#pragma once

namespace arena::device
{

// 30 frames a second by the times of ticks, in milliseconds, which wrap. Without a sum of rounded intervals: the frame
// n is due n * 1000 / 30 ms after the start. Frames that a late tick has missed are left out, but for the last one.
class FrameClock
{
public:
    static constexpr unsigned int kRate = 30;

    // Frame 0 is due at once.
    void start(unsigned int tick)
    {
        m_Start = tick;
        m_Next = 0;
        m_Before = 0;
    }
    // Whether a frame is due; then its number.
    bool take(unsigned int tick, unsigned int& number)
    {
        // Starts anew after each hour, long before the difference of two times wraps.
        if (m_Next >= kHour)
        {
            m_Start += timeOf(kHour);
            m_Next -= kHour;
            m_Before += kHour;
        }
        const unsigned long long due = static_cast<unsigned long long>(tick - m_Start) * kRate / 1000;
        if (due < m_Next)
            return false;
        number = static_cast<unsigned int>(m_Before + due);
        m_Next = due + 1;
        return true;
    }
    // Milliseconds from the start to the moment at which a frame is due, and from a tick to the next frame.
    static unsigned int timeOf(unsigned long long number)
    {
        return static_cast<unsigned int>((number * 1000 + kRate - 1) / kRate);
    }
    unsigned int timeToNext(unsigned int tick) const
    {
        const unsigned int passed = tick - m_Start;
        const unsigned int moment = timeOf(m_Next);
        return moment > passed ? moment - passed : 0;
    }

private:
    // Frames.
    static constexpr unsigned long long kHour = 3600 * kRate;

    unsigned int m_Start = 0;
    unsigned long long m_Next = 0;
    // The frames before m_Start.
    unsigned long long m_Before = 0;
};

} // namespace arena::device

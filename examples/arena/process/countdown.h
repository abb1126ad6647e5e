// The remaining time of a wait in several parts.
#pragma once

#include <chrono>

namespace arena
{

class Countdown
{
public:
    explicit Countdown(int milliseconds) : m_End(Clock::now() + std::chrono::milliseconds(milliseconds)) {}
    // Milliseconds, at least 0.
    int getLeft() const
    {
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(m_End - Clock::now()).count();
        return left > 0 ? static_cast<int>(left) : 0;
    }

private:
    using Clock = std::chrono::steady_clock;
    Clock::time_point m_End;
};

} // namespace arena
